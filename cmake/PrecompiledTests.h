#pragma once
#include "PrecompiledWidgets.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#pragma once
#include "PrecompiledCore.h"
#include <QtWidgets>

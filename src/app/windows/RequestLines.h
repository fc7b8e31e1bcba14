#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"

#include <vector>

namespace kelvo {

class Console;

/// The window of the audience's requests.
[[nodiscard]] std::vector<WindowLine> RequestLines(Console& desk, const WindowHost& host);

}  // namespace kelvo

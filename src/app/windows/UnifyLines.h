#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"

#include <vector>

namespace kelvo {

class Console;

/// The windows "Unify Volume" and "Count Beats".
[[nodiscard]] std::vector<WindowLine> UnifyLines(Console& desk, const WindowHost& host);

}  // namespace kelvo

#pragma once

#include "app/WindowLine.h"

#include <vector>

namespace kelvo {

class Console;
class ConsoleWindow;

/// The table of windows: one line for each window beside the console, in the order of the menus. What joins a
/// window to the desk is in its line. Both must outlive the table that is made of them.
[[nodiscard]] std::vector<WindowLine> WindowLines(Console& desk, ConsoleWindow& console,
                                                  const std::function<void(const QString& id)>& open);

}  // namespace kelvo

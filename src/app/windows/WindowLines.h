#pragma once

#include "app/WindowLine.h"

#include <vector>

class QWidget;

namespace kelvo {

class Console;

/// The table of windows: one line for each window beside the console, in the order of the menus. What joins a
/// window to the desk is in its line. Both must outlive the table that is made of them.
[[nodiscard]] std::vector<WindowLine> WindowLines(Console& desk, QWidget& console,
                                                  const std::function<void(const QString& id)>& open);

}  // namespace kelvo

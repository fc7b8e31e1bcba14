#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;

/// The window of the quiz. A quiz that an earlier run of the program has left is offered when the catalogue
/// is loaded; `open` opens a window by its id.
[[nodiscard]] std::vector<WindowLine> QuizLines(Console& desk, const WindowHost& host,
                                                const std::function<void(const QString& id)>& open);

}  // namespace kelvo

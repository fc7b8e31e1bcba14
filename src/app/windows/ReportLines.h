#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;

/// The window of the reports, and the viewer that shows what they write, which has no entry in a menu.
/// `open` opens a window by its id for some files.
[[nodiscard]] std::vector<WindowLine> ReportLines(
    Console& desk, const WindowHost& host,
    const std::function<void(const QString& id, const QString& file)>& open);

}  // namespace kelvo

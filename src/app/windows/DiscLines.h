#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;

/// The windows of discs: the ripper and the CD player, over one shelf of drives and images. `open` opens a
/// window by its id.
[[nodiscard]] std::vector<WindowLine> DiscLines(Console& desk, const WindowHost& host,
                                                const std::function<void(const QString& id)>& open);

namespace WindowId {
inline const QString kCdRipper = QStringLiteral("CdRipper");
}  // namespace WindowId

}  // namespace kelvo

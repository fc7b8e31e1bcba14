#pragma once

#include "app/WindowLine.h"
#include "app/windows/HostedWindow.h"

#include <functional>
#include <vector>

namespace kelvo {

class Console;
class EncodeList;

/// The windows of the encoder and of the burner.
[[nodiscard]] std::vector<WindowLine> EncodingLines(Console& desk, const WindowHost& host);

namespace WindowId {
inline const QString kEncoder = QStringLiteral("Encoder");
inline const QString kBurner = QStringLiteral("Burner");
}  // namespace WindowId

}  // namespace kelvo

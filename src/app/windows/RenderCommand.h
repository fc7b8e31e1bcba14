#pragma once

#include <QString>

namespace kelvo {

/// `kelvo --render LIST --to FILE`: without a window, without a display, beside a desk that may be running.
/// Words go to stderr, with the progress where that is a terminal. Needs a QCoreApplication. The exit code.
[[nodiscard]] int RenderFromCommandLine(const QString& list, const QString& file);

}  // namespace kelvo

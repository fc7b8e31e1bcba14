#pragma once

#include <QString>

namespace kelvo {

/// The words of a row's requests with those of another behind them, on the other side of a dashed line.
[[nodiscard]] QString JoinRequests(const QString& words, const QString& more);

}  // namespace kelvo

#pragma once

#include "platform/Job.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>

namespace kelvo {

class EventLoop;

struct CopyOrder {
  QString from;
  QString to;
  bool replace = false;  ///< whether a file at `to` may be replaced
};

enum class CopyResult {
  Copied,
  Stopped,  ///< by the operator; nothing new is left at `to`
  Existed,  ///< a file is at `to`, and it may not be replaced
};

/// The two ends of a running copy: the logic's thread asks it to stop and reads how far it is.
struct CopyControl {
  std::atomic<bool> stop{false};
  std::atomic<std::int64_t> done{0};   ///< bytes
  std::atomic<std::int64_t> total{0};  ///< bytes; 0 until the source is open
};

/// Copies a file under its final name whole or not at all: written beside it, flushed, renamed. After a
/// crash, a full disk or a kill at any instant `to` holds what it held before or the whole copy, and the
/// source is untouched; a left-over beside it is removed by the next copy to that name. The time of the last
/// change is kept. A source that changes its size or cannot be read to its end is a Failure, as is everything
/// else that the system refuses. Blocks; any thread.
[[nodiscard]] CopyResult CopyFile(const CopyOrder& order, CopyControl& control);

/// The same in Lane::Apart. Dropping the job stops the copy.
[[nodiscard]] Job<CopyResult> CopyFileLater(EventLoop& loop, CopyOrder order,
                                            std::shared_ptr<CopyControl> control);

/// What a disk must have left beside the file that goes onto it, in bytes.
inline constexpr std::int64_t kSpareBytes = std::int64_t{10} * 1000 * 1000;

/// Room on the file system that holds the folder `to`, which need not exist yet, against `bytes`: true when
/// they fit with kSpareBytes to spare, or when the room can't be known. Blocks; any thread.
[[nodiscard]] bool HasRoomFor(const QString& folder, std::int64_t bytes);

}  // namespace kelvo

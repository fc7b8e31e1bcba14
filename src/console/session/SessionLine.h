#pragma once

#include "console/session/SessionRows.h"

#include <QByteArray>
#include <QDateTime>

#include <optional>

namespace kelvo {

/// What the day's file of sessions keeps of an event: the start of its session in front, fields parted by
/// tabs, "." at the end, by which a line that was broken off is known. UTF-8. A value; any thread.
struct SessionLine {
  QDateTime sessionStart;  ///< with its offset from UTC
  SessionEvent event;      ///< its Time is the session clock; its track is known by the Path alone

  /// None for a line that is broken or of another kind.
  [[nodiscard]] static std::optional<SessionLine> Parse(const QByteArray& line);
  /// With its line end.
  [[nodiscard]] QByteArray Print() const;
};

}  // namespace kelvo

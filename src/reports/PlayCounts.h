#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kelvo {

/// A line of the session log: what went on air, and when.
struct LoggedPlay {
  bool automatic = false;
  QTime at;      ///< to the minute
  QString text;  ///< the title, as the deck had it

  /// "Manual Play : 21 : 05 ~ Artist - Title"; none for any other line.
  [[nodiscard]] static std::optional<LoggedPlay> Parse(const QString& line);
};

/// Where the log of a day may be.
struct LogDay {
  QDate day;
  QStringList files;
};

/// How often a title went on air, and when first and last.
struct PlayCount {
  QString text;
  int times = 0;
  QDateTime first;
  QDateTime last;
};

struct PlayCounts {
  std::vector<PlayCount> titles;  ///< each once, whatever its case
  int total = 0;                  ///< the plays that the logs tell of
  int days = 0;                   ///< with a log
  QStringList unreadable;         ///< files that could not be read
};

/// Counts what the logs of these days tell. Blocks; any thread.
[[nodiscard]] PlayCounts CountPlays(const std::vector<LogDay>& days);

}  // namespace kelvo

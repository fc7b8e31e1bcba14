#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace kelvo {

/// A playlist as other players keep it (".m3u8", ".m3u"): paths, one a line, with titles and lengths in
/// comments. A value; any thread.
struct M3uList {
  struct Entry {
    QString path;      ///< absolute; as it was written where it is one of another system or a stream
    QString title;     ///< empty: none
    int seconds = -1;  ///< below 0: unknown
    bool operator==(const Entry&) const = default;
  };
  static constexpr int kMostEntries = 10'000;

  std::vector<Entry> entries;

  /// Reads any bytes. Relative paths count from `folder`; "\" separates names where a path has no "/". The
  /// text is UTF-8, or Windows-1252 where it is no valid UTF-8. What is behind kMostEntries is left out.
  [[nodiscard]] static M3uList FromBytes(const QByteArray& bytes, const QString& folder);
  /// UTF-8 without a mark. A path below `folder` is written relative to it, so that both can move together;
  /// any other as it is.
  [[nodiscard]] QByteArray ToBytes(const QString& folder) const;
};

}  // namespace kelvo

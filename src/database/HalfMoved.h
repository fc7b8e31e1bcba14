#pragma once

#include <QHash>
#include <QString>

#include <optional>

namespace kelvo {

/// The files whose move from the utility folder into the database has begun and is not finished, kept on
/// disk, so that the next run finishes what a crash left half way. A value; its calls that reach the disk
/// block.
class HalfMoved {
 public:
  struct Move {
    QString fileName;       ///< in the music folder
    bool replaces = false;  ///< the place of a track that was there
  };
  /// What the last run left in `utilityFolder`, less what waits no more. Nothing where it cannot be read. Any
  /// thread.
  [[nodiscard]] static HalfMoved Read(const QString& utilityFolder);
  /// Puts it where Read finds it. Throws Failure. Any thread.
  void Write(const QString& utilityFolder) const;

  [[nodiscard]] bool IsEmpty() const { return moves_.isEmpty(); }
  /// The move of this waiting file.
  [[nodiscard]] std::optional<Move> Find(const QString& path) const;
  void Add(const QString& path, const Move& move) { moves_.insert(path, move); }
  void Remove(const QString& path) { moves_.remove(path); }

 private:
  QHash<QString, Move> moves_;  ///< by the path of the waiting file
};

/// Whether two files hold the same bytes. False when one cannot be read. Blocks; any thread.
[[nodiscard]] bool SameContent(const QString& one, const QString& other);

}  // namespace kelvo

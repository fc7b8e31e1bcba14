#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace kelvo {

/// What the file of a playlist entry says: the two fields of its link. A value; any thread.
struct PlaylistLink {
  QString targetPath;  ///< of the music file, as it was written, maybe on another system; may be empty
  QString arguments;   ///< "Std", the line of a group playlist, or the count of a tally

  /// A shell link, or a text of older copies with the two fields, one a line: "TargetPath=...", or the bare
  /// values in this order. Throws Failure for anything else.
  [[nodiscard]] static PlaylistLink FromBytes(const QByteArray& bytes);
  /// Throws Failure, also for more than 1 MB. Blocks.
  [[nodiscard]] static PlaylistLink Read(const QString& path);
  /// As a shell link, in the place of the file (see ReplaceFile). Throws Failure. Blocks: off the logic's
  /// thread.
  void Write(const QString& path) const;
};

/// The name of an entry's file: a number, "~", the entry's name, ".lnk".
struct EntryFileName {
  static constexpr int kMostNumber = 999'999;

  int number = 0;  ///< its place, from 1; 0 where the file name tells none
  QString name;    ///< what the list calls the track

  [[nodiscard]] static EntryFileName Parse(const QString& fileName);
  /// As a save names it: a blank in front. A "/" in the name becomes "_", a long name is cut.
  [[nodiscard]] QString Saved() const;
  /// As it is called when its number went down: without the blank.
  [[nodiscard]] QString Renumbered() const;
  /// The text file beside it that holds its line in a group playlist.
  [[nodiscard]] QString Companion() const;
};

/// A group playlist's name ends so.
inline const QString kGroupSuffix = QStringLiteral("(Grp)");
[[nodiscard]] bool IsGroupName(const QString& playlist);

/// The folder below the playlists that counts what was asked for; no category.
inline const QString kMostRequested = QStringLiteral("Most Requested");

/// An entry as it is on disk.
struct PlaylistEntry {
  QString file;  ///< its name in the folder
  EntryFileName name;
  std::optional<PlaylistLink> link;  ///< none where the file is no link that can be read
  std::optional<QString> line;       ///< of its companion; none where it has none

  /// A link by its name; the list shows music files too.
  [[nodiscard]] bool IsLinkFile() const;
};

/// A playlist's folder.
struct PlaylistFolder {
  std::vector<PlaylistEntry> entries;  ///< by their numbers; those without one come last
  int files = 0;                       ///< all files in it, companions too
};

/// Reads a folder of entries. A folder, a hidden file or one of another kind is no entry. Throws Failure when
/// the folder can't be read. Blocks; any thread.
[[nodiscard]] PlaylistFolder ReadPlaylist(const QString& folder);

}  // namespace kelvo

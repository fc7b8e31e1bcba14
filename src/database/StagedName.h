#pragma once

#include <QString>

namespace kelvo {

/// What a file that waits in the utility folder says of itself by its place and name:
/// utility folder / artist / title#date#album#.extension. A value.
struct StagedName {
  QString artist;
  QString title;
  QString date;
  QString album;      ///< a blank takes its place in the file name when there is none
  QString extension;  ///< with its dot
};

/// Where such a file waits. Artist, title, date and album must be free of forbidden characters.
[[nodiscard]] QString StagedPath(const QString& utilityFolder, const StagedName& name);

/// A file of the utility folder, read back. A file name without exactly four fields is a plain name: it is
/// its own title, "Unknown" is its album and "0000-xxx" its date. Fields are trimmed.
struct StagedFile {
  StagedName name;
  QString trackName;  ///< the title with its extension
};
[[nodiscard]] StagedFile ReadStagedPath(const QString& path);

/// `base` and `ending` as the name of a file or folder: `base` is shortened, between two characters, until
/// the whole has at most the 255 bytes that a file system takes.
[[nodiscard]] QString FittingName(const QString& base, const QString& ending = {});

}  // namespace kelvo

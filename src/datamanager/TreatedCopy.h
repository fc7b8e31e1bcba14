#pragma once

#include <QString>

#include <cstdint>

namespace kelvo {

// The tool never works on a music file itself: it gets a copy in a hidden folder beside it, which takes the
// file's place when the tool is through. So a kill at any instant leaves the file whole, whoever plays it
// keeps what they have, and no temporary file of the tool meets one of the operator's. All of this blocks for
// the disk; any thread but the logic's. Throws Failure.

/// Where the copy of this file is made. Makes the folder.
[[nodiscard]] QString PrepareTreatedCopy(const QString& path);
/// Looks whether the copy still is that music, with other gains: as long as it was, but for tags at its end,
/// and with most of its bytes as they were; a Failure with the number 0 when it is not. Then it takes the
/// place of the file.
void TakeTreatedCopy(const QString& copy, const QString& path);
/// Takes away the folder of the copies of this file's folder, with what a killed run has left in it. Not
/// while a copy is in use. Does not throw.
void DropCopies(const QString& path);

/// What tells a file from one of the same name. A value.
struct FileMark {
  std::int64_t size = -1;    ///< below 0: no file
  std::int64_t changed = 0;  ///< milliseconds since 1970
  bool operator==(const FileMark&) const = default;
};
[[nodiscard]] FileMark MarkOf(const QString& path);
/// Clears the write protection of a file that is the user's own.
void ClearReadOnly(const QString& path);

}  // namespace kelvo

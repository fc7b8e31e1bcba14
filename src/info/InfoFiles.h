#pragma once

#include "platform/Trash.h"

#include <QString>
#include <QStringList>

namespace kelvo {

// A text of the operator and its picture are two files of one name in one folder. All functions block for the
// disk (off the logic's thread) and throw Failure. After a crash, a full disk or a kill at any instant a file
// holds what it held before or all of what it was to hold.

/// Where a text and its picture are. A value.
struct InfoPlace {
  QString folder;
  QString name;  ///< of both files, without an ending
  bool operator==(const InfoPlace&) const = default;
};

/// The longest text that is read and written, in bytes.
inline constexpr qint64 kMostTextBytes = qint64{1} << 20;
inline constexpr qint64 kMostPictureBytes = qint64{20} << 20;

struct InfoContent {
  bool found = false;    ///< the text is there
  QString text = {};     ///< its lines, joined by "\n"
  QString picture = {};  ///< path of the picture; empty: there is none
};
[[nodiscard]] InfoContent ReadInfo(const InfoPlace& place);

/// Whether there is a text or a picture.
[[nodiscard]] bool HasInfo(const InfoPlace& place);

/// The lines of a text; a line end at its end begins no further one.
[[nodiscard]] QStringList LinesOfText(const QString& text);
/// Lines that are the same keep their bytes.
void SaveInfo(const InfoPlace& place, const QString& text);

/// The texts of a folder that have this name, in whatever case: the exact one first.
[[nodiscard]] QStringList NamesOnDisk(const QString& folder, const QString& name);

/// Text and picture get another name. False, with nothing done, when that name has a text or a
/// picture already.
[[nodiscard]] bool RenameInfo(const InfoPlace& place, const QString& name);

/// Both go to the trash, or are deleted where there is none.
void DiscardInfo(const InfoPlace& place, const Trash& trash);

/// Both go to the trash; what that does not take stays.
void TrashInfo(const InfoPlace& place, const Trash& trash);

/// What a picture file is, by name and content: the ending under which it is kept ("png"); empty when it is
/// none of the kinds that are taken.
[[nodiscard]] QString PictureEnding(const QString& path);
/// The picture of a place; empty when there is none.
[[nodiscard]] QString PictureOf(const InfoPlace& place);
/// Copies the picture beside the text, in the place of an older one.
void TakePicture(const InfoPlace& place, const QString& path);
void DropPictures(const InfoPlace& place, const Trash& trash);

}  // namespace kelvo

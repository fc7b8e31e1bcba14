#pragma once

#include "database/InfoFields.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>
#include <vector>

namespace kelvo {

// The steps that a change of the library is made of. Each can be done, done again after a crash, and taken
// back; what is found otherwise than it was left is not touched.

/// A line of a track info file becomes another.
struct SetInfoLine {
  QString name;  ///< base name of the track
  InfoLine::Line line = InfoLine::Categories;
  QString before;
  QString after;
  /// Lines 1 to 3 as they are to be with it; empty: the others stay as they are in the file. Not kept on
  /// disk.
  QStringList references = {};
};

/// A small file gets other bytes, or is made.
struct SetContent {
  QString path;
  std::optional<QByteArray> before;  ///< none: it is not there
  QByteArray after;
};

/// A file or folder gets another name in its folder.
struct MoveEntry {
  QString from;
  QString to;
};

/// A file or folder goes to the trash, where there is one; otherwise it is kept in a hidden folder beside it.
struct DiscardEntry {
  QString path;
  bool folder = false;                   ///< an empty one is removed, and made anew
  std::optional<QByteArray> bytes = {};  ///< of a small file, in case the trash is emptied
  QString place = {};                    ///< where it is since
};

using ChangeStep = std::variant<SetInfoLine, SetContent, MoveEntry, DiscardEntry>;

/// A change of the library's files, as it is kept on disk while it runs and as long as it can be undone. A
/// value; any thread.
struct LibraryChange {
  enum class Way {
    On,    ///< from the first step to the last
    Back,  ///< the operator stopped it: from the last to the first
    Undo,  ///< the same, of a change that had come to its end
  };
  QString what;  ///< "Rename ..." in words for the operator
  Way way = Way::On;
  std::vector<ChangeStep> steps;

  [[nodiscard]] QByteArray ToBytes() const;
  /// None for what is no change, or has a step that is none.
  [[nodiscard]] static std::optional<LibraryChange> FromBytes(const QByteArray& bytes);
};

}  // namespace kelvo

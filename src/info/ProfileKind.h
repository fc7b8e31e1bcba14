#pragma once

#include "database/CatalogueChange.h"
#include "database/Paths.h"

#include <QString>

#include <array>

namespace kelvo {

/// What a profile is about. Each lies in the folder of its names, beside their folders: NAME.txt.
enum class ProfileKind { Artist, Album, Genre };
inline constexpr std::array kProfileKinds{ProfileKind::Artist, ProfileKind::Album, ProfileKind::Genre};

/// In what the three differ, with their fixed words.
struct ProfileWords {
  QString id;         ///< of the window
  QString fixedName;  ///< of the window, for scripts
  QString title;
  QString nameTitle;  ///< above the name
  QString missing;    ///< told before the name where there is no file
  QString closeQuestion;
  QString deleteBefore;  ///< the question of a deletion is the name between these
  QString deleteBehind;
  QString dropNote;  ///< behind the title
  QString place;     ///< begins the settings keys of its place
  bool picture;
  ReferenceSet set;
  Paths::Slot slot;
};
[[nodiscard]] ProfileWords WordsOf(ProfileKind kind);

}  // namespace kelvo

#include "info/ProfileKind.h"

namespace kelvo {

ProfileWords WordsOf(ProfileKind kind) {
  const QString support = QStringLiteral(" (Drag And Drop Support)");
  const QString deleteInfo = QStringLiteral("Delete Info File ");
  switch (kind) {
    case ProfileKind::Artist:
      break;
    case ProfileKind::Album:
      return {.id = QStringLiteral("AlbumInfo"),
              .fixedName = QStringLiteral("AlbInfo"),
              .title = QStringLiteral("View / Edit Album Info"),
              .nameTitle = QStringLiteral("Album Name"),
              .missing = QStringLiteral("No Info Exists for Album "),
              .closeQuestion = QStringLiteral("Do you Want to Save Changes to Album.."),
              .deleteBefore = deleteInfo,
              .deleteBehind = QStringLiteral(" - "),
              .dropNote = support,
              .place = QStringLiteral("AlbInfo"),
              .picture = true,
              .set = ReferenceSet::Albums,
              .slot = Paths::Albums};
    case ProfileKind::Genre:
      return {.id = QStringLiteral("GenreInfo"),
              .fixedName = QStringLiteral("GenInfo"),
              .title = QStringLiteral("View / Edit Genre Definition"),
              .nameTitle = QStringLiteral("Genre Name"),
              .missing = QStringLiteral("No Info Exists for Genre "),
              .closeQuestion = QStringLiteral("Do you Want to Save Changes to Genre.."),
              .deleteBefore = deleteInfo,
              .deleteBehind = QStringLiteral(" - "),
              .dropNote = support,
              .place = QStringLiteral("GenInfo"),
              .picture = false,
              .set = ReferenceSet::Genres,
              .slot = Paths::Categories};
  }
  return {.id = QStringLiteral("ArtistProfile"),
          .fixedName = QStringLiteral("ArtProf"),
          .title = QStringLiteral("View / Edit Artist Profile"),
          .nameTitle = QStringLiteral("Artist Name"),
          .missing = QStringLiteral("No Information Exists for Artist/Band "),
          .closeQuestion = QStringLiteral("Do you Want to Save Changes to Artist.."),
          .deleteBefore = QStringLiteral("Delete File "),
          .deleteBehind = {},
          .dropNote = QStringLiteral(" (Drag And Drop Supported)"),
          .place = QStringLiteral("ArtInfo"),
          .picture = true,
          .set = ReferenceSet::Artists,
          .slot = Paths::Artists};
}

}  // namespace kelvo

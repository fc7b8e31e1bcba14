#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace kelvo {

inline const QString kAllCategories = QStringLiteral("~ALL CATEGORIES");
inline const QString kAllArtists = QStringLiteral("~ALL ARTISTS");
inline const QString kAllAlbums = QStringLiteral("~ALL ALBUMS");

/// A name that begins with "~" is the system's own and is never shown as a reference of a track.
[[nodiscard]] inline bool IsInternalName(QStringView name) {
  return name.startsWith(QLatin1Char('~'));
}

/// The categories, artists or albums of a track, which its info file and the catalogue keep as one line of
/// items joined by ",". A value.
struct ReferenceLine {
  QString base;       ///< the first item, "~ALL ARTISTS"; it is no reference
  QStringList names;  ///< all items behind it, also those that are not shown

  [[nodiscard]] static ReferenceLine Parse(QStringView line);
  /// The line that Parse reads as this: for what was parsed the very same text.
  [[nodiscard]] QString Text() const;
  /// The references: the names that are neither empty nor internal.
  [[nodiscard]] QStringList Shown() const;
  bool operator==(const ReferenceLine&) const = default;
};

/// The first reference of a line; empty when it has none.
[[nodiscard]] QString FirstReference(QStringView line);
/// Every item of the line that is neither empty nor internal, also the first one, where a line lacks its base
/// item. The views are into `line`.
[[nodiscard]] QList<QStringView> ShownItems(QStringView line);

}  // namespace kelvo

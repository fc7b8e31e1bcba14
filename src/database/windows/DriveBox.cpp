#include "database/windows/DriveBox.h"

#include <QSignalBlocker>

namespace kelvo {

DriveBox::DriveBox(DriveList& drives, Words words, QWidget* parent)
    : QComboBox(parent), drives_(drives), words_(words) {
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(24);
  setObjectName(QStringLiteral("CboDrive"));
  setAccessibleName(tr("Drive to search"));
  connect(&drives_, &DriveList::Changed, this, &DriveBox::ShowPlaces);
  connect(&drives_, &DriveList::Added, this, [this](const QString& path) {
    browsed_ = path;
    ShowPlaces();
    setCurrentIndex(findData(path));
  });
  ShowPlaces();
}

QString DriveBox::Path() const {
  return currentData().toString();
}

void DriveBox::ShowPlaces() {
  const QString chosen = Path();
  {
    const QSignalBlocker quiet(this);
    clear();
    for (const DriveList::Place& place : drives_.Places()) {
      const QString text = TextOf(place);
      if (!text.isEmpty()) addItem(text, place.path);
    }
    setCurrentIndex(std::max(0, findData(chosen)));
  }
  Q_EMIT currentIndexChanged(currentIndex());
}

QString DriveBox::TextOf(const DriveList::Place& place) const {
  const bool full = words_ == Words::Full;
  QString kind = QStringLiteral("Folder (");
  if (place.kind == MountedVolume::Kind::Removable) {
    kind = full ? QStringLiteral("Removable Drive (") : QStringLiteral("Removable (");
  } else if (place.kind == MountedVolume::Kind::Fixed) {
    kind = full ? QStringLiteral("Fixed Drive (") : QStringLiteral("Fixed (");
  } else if (place.kind == MountedVolume::Kind::Network) {
    // The short list has no network drives, but for one that was just picked.
    if (!full && place.path != browsed_) return {};
    if (full) kind = QStringLiteral("Network Drive (");
  }
  return kind + place.path + QLatin1Char(')');
}

}  // namespace kelvo

#include "discs/windows/PlaceBox.h"

#include <QSignalBlocker>

namespace kelvo {

PlaceBox::PlaceBox(DriveShelf& shelf, QWidget* parent) : QComboBox(parent), shelf_(shelf) {
  setObjectName(QStringLiteral("CboDrive"));
  setAccessibleName(tr("Drive"));
  setToolTip(tr("The drives of this machine, and the disc images that were opened"));
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(18);
  connect(&shelf_, &DriveShelf::Changed, this, [this] { Fill(); });
  connect(this, &QComboBox::activated, this, [this] { Q_EMIT Chosen(currentData().toString()); });
  Fill();
}

void PlaceBox::Fill() {
  const QSignalBlocker quiet(this);
  clear();
  for (const DriveShelf::Place& place : shelf_.Places()) {
    addItem(place.Words(), place.path);
    setItemData(count() - 1, place.path, Qt::ToolTipRole);
  }
  if (count() == 0) addItem(QStringLiteral("(none)"), QString());
  Show(shown_);
}

void PlaceBox::Show(const QString& place) {
  shown_ = place;
  setCurrentIndex(std::max(findData(place), 0));
}

}  // namespace kelvo

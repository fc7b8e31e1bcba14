#pragma once

#include "discs/DriveShelf.h"

#include <QComboBox>

namespace kelvo {

/// The drives and images of the shelf, "(none)" when there are none. GUI thread.
class PlaceBox : public QComboBox {
  Q_OBJECT
 public:
  PlaceBox(DriveShelf& shelf, QWidget* parent);

  /// Shows the place as the chosen one.
  void Show(const QString& place);

 Q_SIGNALS:
  /// The operator chose this one.
  void Chosen(const QString& place);

 private:
  void Fill();

  DriveShelf& shelf_;
  QString shown_;
};

}  // namespace kelvo

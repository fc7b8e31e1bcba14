#pragma once

#include "database/DriveList.h"

#include <QComboBox>

namespace kelvo {

/// The drive list of a form: what can be searched, named by its kind. Owned by the form's window; GUI thread.
class DriveBox : public QComboBox {
  Q_OBJECT
 public:
  /// Short: "Removable (" and "Fixed (" alone; Full: "Removable Drive (" and so on, with network drives.
  enum class Words { Full, Short };
  DriveBox(DriveList& drives, Words words, QWidget* parent = nullptr);

  /// The path of the place that is chosen; empty when there is none.
  [[nodiscard]] QString Path() const;

 private:
  void ShowPlaces();
  [[nodiscard]] QString TextOf(const DriveList::Place& place) const;

  DriveList& drives_;
  Words words_;
  QString browsed_;  ///< the place that the operator picked last
};

}  // namespace kelvo

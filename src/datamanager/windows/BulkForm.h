#pragma once

#include "datamanager/DataManager.h"
#include "ui/Panel.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QStringListModel;

namespace kelvo {

/// The form that changes all selected tracks at once. Owned by the window, which shows and hides it; GUI
/// thread.
class BulkForm : public Panel {
  Q_OBJECT
 public:
  BulkForm(DataManager& manager, QWidget* parent);

  void Show();
  /// The keyboard goes to its first field, and the names that can be chosen are read anew.
  void TakeKeys();

 private:
  [[nodiscard]] BulkChange Change() const;
  [[nodiscard]] QComboBox* AddChoice(const QString& name, const QString& accessible);
  [[nodiscard]] QComboBox* AddNames(const QString& name, const QString& accessible, QStringListModel& names);

  DataManager& manager_;
  QStringListModel* artists_;
  QStringListModel* genres_;
  QComboBox* year_;
  QComboBox* month_;
  QComboBox* artist_;
  QComboBox* genre_;
  QCheckBox* replace_;
  QPushButton* apply_;
};

}  // namespace kelvo

#pragma once

#include "app/FolderChooser.h"

#include <QDialog>

#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace kelvo {

/// `Dialog1`: picks a folder by drive and folder list. Owned by the window that opens it; GUI thread.
class FolderDialog : public QDialog {
  Q_OBJECT
 public:
  FolderDialog(EventLoop& loop, const QString& start, QWidget* parent);

  /// The operator chose this folder.
  std::function<void(const QString&)> OnChosen;

  void accept() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPushButton* AddButton(const QString& name, const QString& text, const QString& tooltip);
  void Show();
  void EnterCurrent();

  FolderChooser chooser_;
  QComboBox* drives_;
  QLabel* free_;
  QLineEdit* path_;
  QListWidget* folders_;
  QLineEdit* newName_;
  QLabel* trouble_;
  QPushButton* ok_;
  bool making_ = false;  ///< the folder of the new name
  bool wanted_ = false;  ///< OK was pressed for a path that is being looked at
};

}  // namespace kelvo

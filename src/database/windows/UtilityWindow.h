#pragma once

#include "database/UtilityFolder.h"
#include "ui/WindowPlace.h"

#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;

namespace kelvo {

class Fader;
class ListTable;
class Panel;

/// `frmUtil`, "Utility Folder": what waits there, and a player to hear it. Owned by who opens it; GUI thread.
class UtilityWindow : public QWidget {
  Q_OBJECT
 public:
  explicit UtilityWindow(const UtilityFolder::Services& services);
  ~UtilityWindow() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Show();

  UtilityFolder folder_;
  Panel* panel_;
  ListTable* list_;
  QLabel* playing_;
  QPushButton* play_;
  QPushButton* stop_;
  Fader* volume_;
  std::unique_ptr<WindowPlace> place_;
};

}  // namespace kelvo

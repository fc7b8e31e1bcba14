#pragma once

#include "app/Installer.h"

#include <QWidget>

#include <array>
#include <functional>

class QGridLayout;
class QLabel;
class QPushButton;

namespace kelvo {

class ProgressStrip;

/// `DjNewInst`: where the folders of a new database are to be, and how far their making is. Owned by the
/// program's entry; GUI thread.
class InstallerWindow : public QWidget {
  Q_OBJECT
 public:
  InstallerWindow(EventLoop& loop, Installer& installer);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void AddRows(QGridLayout& grid);
  QPushButton* AddButton(const QString& name, const QString& text, const QString& tooltip,
                         const QString& fixedName = {});
  QWidget* MakeDemoPart();
  void Choose(const QString& start, std::function<void(const QString&)> chosen);
  void Show();

  EventLoop& loop_;
  Installer& installer_;
  std::array<QLabel*, Installer::kRows> locations_{};
  std::array<QLabel*, Installer::kRows> freeSpace_{};
  QWidget* rows_;
  QLabel* demoFolder_ = nullptr;
  QWidget* demo_;
  ProgressStrip* progress_;
  QPushButton* install_;
  QPushButton* giveUp_;
  bool shownBusy_ = false;
};

}  // namespace kelvo

#pragma once

#include "database/ScanImport.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace kelvo {

class DriveBox;
class JobStrip;

/// "Import Music": finds music on a drive, lets it be named, and copies it to the utility folder. A search or
/// an import goes on when the window is closed. GUI thread.
class ScanWindow : public ToolWindow {
  Q_OBJECT
 public:
  ScanWindow(EventLoop& loop, ScanImport& scan);

  void TakeFiles(const QStringList& places) override;

 protected:
  void Refresh() override;
  void Enter() override { scan_.Drives().Refresh(); }
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildCommands();
  void BuildLayout();
  void Connect();
  void SearchOrStop();
  void Show();
  void ShowRow();

  ScanImport& scan_;
  RowModel<ScanRow> model_;
  ListPanel found_;
  DriveBox* drives_;
  QLabel* rowWords_;
  QCheckBox* delete_;
  JobStrip* progress_;
  QPushButton* browse_ = nullptr;
  QPushButton* map_ = nullptr;
  QPushButton* search_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* clear_ = nullptr;
  QPushButton* import_ = nullptr;
};

}  // namespace kelvo

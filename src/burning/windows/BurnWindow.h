#pragma once

#include "burning/BurnList.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kelvo {

class JobStrip;

/// "CD Data Burner": what goes onto a disc, which disc, how far it is. What runs goes on when the window is
/// closed. GUI thread.
class BurnWindow : public ToolWindow {
  Q_OBJECT
 public:
  BurnWindow(EventLoop& loop, BurnList& list);

  void TakeKeys() override { files_.Table().setFocus(); }
  void TakeFiles(const QStringList& places) override { list_.Add(places); }

 protected:
  void Enter() override { list_.Open(); }
  void Refresh() override { list_.Open(); }
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildSources();
  void BuildStaging();
  void BuildTarget();
  void BuildLayout();
  void Move(int step);
  void BurnOrStop();
  void Show();
  void ShowTarget();

  BurnList& list_;
  RowModel<BurnRow> model_;
  RowModel<QString> logModel_;
  ListPanel files_;
  ListPanel log_;
  QComboBox* kind_;
  QComboBox* target_;
  QLabel* drive_;
  QLineEdit* image_;
  QLabel* imageLabel_;
  QLabel* sum_;
  JobStrip* progress_;
  QPushButton* addFile_ = nullptr;
  QPushButton* addFolder_ = nullptr;
  QPushButton* addQueue_ = nullptr;
  QPushButton* addPlaylist_ = nullptr;
  QPushButton* up_ = nullptr;
  QPushButton* down_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* stage_ = nullptr;
  QPushButton* clear_ = nullptr;
  QPushButton* delete_ = nullptr;
  QPushButton* folder_ = nullptr;
  QPushButton* burn_ = nullptr;
};

}  // namespace kelvo

#pragma once

#include "database/JingleImport.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QPushButton;

namespace kelvo {

class DriveBox;
class JobStrip;

/// "Import Jingles": finds short sounds on a drive and copies them into the jingle folder. What it does goes
/// on when the window is closed. GUI thread.
class JingleImportWindow : public ToolWindow {
  Q_OBJECT
 public:
  JingleImportWindow(EventLoop& loop, JingleImport& jingles);

  /// How files are encoded; without it there is no button for that.
  void SetEncode(std::function<void(const QStringList& files)> encode);

 protected:
  void Refresh() override;
  void Enter() override { jingles_.Drives().Refresh(); }

 private:
  void BuildCommands();
  void BuildLayout();
  void SearchOrStop();
  void Encode();
  void Show();

  JingleImport& jingles_;
  std::function<void(const QStringList& files)> encodeFiles_;
  RowModel<JingleRow> model_;
  ListPanel sounds_;
  DriveBox* drives_;
  JobStrip* progress_;
  QPushButton* browse_ = nullptr;
  QPushButton* search_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* delete_ = nullptr;
  QPushButton* encode_ = nullptr;
  QPushButton* import_ = nullptr;
};

}  // namespace kelvo

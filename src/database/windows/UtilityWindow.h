#pragma once

#include "database/UtilityFolder.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QLabel;
class QPushButton;

namespace kelvo {

class SampleVolume;

/// "Utility Folder": what waits there, and a player to hear it. Nothing sounds when it is closed. GUI thread.
class UtilityWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit UtilityWindow(UtilityFolder& folder);

  void TakeKeys() override { files_.Table().setFocus(); }

 protected:
  void Refresh() override { folder_.List(); }
  void Leave() override { folder_.Stop(); }

 private:
  void PlayPicked();
  void Show();

  UtilityFolder& folder_;
  RowModel<WaitingFile> model_;
  ListPanel files_;
  QLabel* playing_;
  QPushButton* play_;
  QPushButton* stop_;
  SampleVolume* volume_;
};

}  // namespace kelvo

#pragma once

#include "playlists/GroupEditor.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace kelvo {

class GroupStepPanel;
class GroupTimeView;

/// "Group Playlist Edit": the group playlist of the play queue as a time line and as a list. GUI thread.
class GroupEditWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit GroupEditWindow(GroupEditor& editor);

  void TakeKeys() override;
  [[nodiscard]] Job<bool> MayClose() override { return editor_.MayClose(); }

 protected:
  void Enter() override { editor_.Enter(); }
  void Leave() override { editor_.Leave(); }
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildCommands();
  void BuildLayout();
  void Show();
  void ShowSelected();

  GroupEditor& editor_;
  RowModel<GroupRow> model_;
  ListPanel list_;
  QLabel* notice_;
  GroupTimeView* time_;
  GroupStepPanel* panel_;
  QCheckBox* repeats_;
  QPushButton* edit_ = nullptr;
  QPushButton* undo_ = nullptr;
  QPushButton* bringBack_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* exit_ = nullptr;
};

}  // namespace kelvo

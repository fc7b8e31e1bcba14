#pragma once

#include "playlists/GroupEditor.h"
#include "ui/Panel.h"

#include <array>

class QButtonGroup;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace kelvo {

class SecondsBox;

/// The panel of the group playlist's editor on one element. Owned by the editor's window; GUI thread.
class GroupStepPanel : public Panel {
  Q_OBJECT
 public:
  GroupStepPanel(GroupEditor& editor, QWidget* parent);

  void Show();
  void TakeKeys();

 private:
  void BuildCommands();
  void Lay();
  void ShowFade(const StepEdit& edit);

  GroupEditor& editor_;
  QLabel* facts_;
  SecondsBox* time_;
  SecondsBox* end_;
  QLabel* span_;
  QButtonGroup* kinds_;
  std::array<QRadioButton*, 3> options_{};
  QSpinBox* speed_;
  QPushButton* byHand_ = nullptr;
  QPushButton* apply_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace kelvo

#pragma once

#include "help/Help.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QLineEdit;
class QPushButton;

namespace kelvo {

class ManualView;

/// "Help": the manual, with its contents or what was found beside the page. GUI thread.
class HelpWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit HelpWindow(Help& help);

  void TakeKeys() override;
  /// The id of a window, or "topic:" and the number of a help topic.
  void TakeFiles(const QStringList& wishes) override;

 private:
  void BuildCommands();
  void Move();
  void ShowRow();

  Help& help_;
  RowModel<HelpRow> model_;
  ListPanel list_;
  QLineEdit* find_;
  ManualView* page_;
  QPushButton* back_ = nullptr;
  QPushButton* forward_ = nullptr;
  QPushButton* contents_ = nullptr;
  QPushButton* keys_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace kelvo

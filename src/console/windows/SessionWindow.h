#pragma once

#include "console/session/SessionReview.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QLabel;
class QPushButton;
class QRadioButton;
class QStackedWidget;

namespace kelvo {

/// "Session Info": the list of the present session and those of earlier days, and what is made of them. GUI
/// thread.
class SessionWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit SessionWindow(SessionReview& review);

  void TakeKeys() override;

 protected:
  void Refresh() override { review_.Refresh(); }

 private:
  void BuildCommands();
  void BuildLayout();
  /// The list of the view that is shown.
  [[nodiscard]] ListPanel& Shown();
  void Show();
  void ShowCommands();

  SessionReview& review_;
  RowModel<SessionEvent> currentModel_;
  RowModel<SessionDay> dayModel_;
  RowModel<SessionEvent> earlierModel_;
  ListPanel current_;
  ListPanel days_;
  ListPanel earlier_;
  QRadioButton* currentView_;
  QRadioButton* earlierView_;
  QLabel* label_;
  QStackedWidget* pages_;
  QPushButton* selectAll_ = nullptr;
  QPushButton* group_ = nullptr;
  QPushButton* standard_ = nullptr;
  QPushButton* clear_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace kelvo

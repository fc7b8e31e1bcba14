#pragma once

#include "quiz/PopQuiz.h"
#include "quiz/windows/AudienceWindow.h"
#include "ui/ToolWindow.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QStackedWidget;
class QTabBar;

namespace kelvo {

class ElidedLabel;
class Panel;
class QuizRunPage;
class QuizSetupPage;
class QuizStorePage;
class SnippetBarView;

/// "Pop Quiz": the question and what sounds, and below them the set-up, what was asked, or the saved quizes.
/// It owns the window for the audience. GUI thread.
class QuizWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit QuizWindow(PopQuiz& quiz);
  ~QuizWindow() override;

  void TakeKeys() override;
  [[nodiscard]] Job<bool> MayClose() override { return quiz_.MayClose(); }
  [[nodiscard]] AudienceWindow& Audience() { return audience_; }

 protected:
  void Refresh() override;
  void Enter() override;
  void Leave() override;

 private:
  void BuildCommands();
  void BuildKeys();
  void BuildLayout();
  void Join();
  void ShowPage();
  void Show();
  void ShowAudience();

  PopQuiz& quiz_;
  AudienceWindow audience_;
  Panel* board_;
  QLabel* text_;
  SnippetBarView* bar_;
  QTabBar* tabs_;
  QStackedWidget* pages_;
  QuizSetupPage* setup_;
  QuizRunPage* run_;
  QuizStorePage* store_;
  QCheckBox* dip_;
  QPushButton* format_ = nullptr;
  QPushButton* start_ = nullptr;
  QPushButton* stop_ = nullptr;
  QPushButton* reveal_ = nullptr;
  QPushButton* showAudience_ = nullptr;
  QPushButton* fullScreen_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* load_ = nullptr;
  QPushButton* sheet_ = nullptr;
  QPushButton* unify_ = nullptr;
  QPushButton* exit_ = nullptr;
  bool running_ = false;  ///< an element was started since the last look
};

}  // namespace kelvo

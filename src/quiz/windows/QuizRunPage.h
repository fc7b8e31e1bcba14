#pragma once

#include "quiz/PopQuiz.h"
#include "ui/ListPanel.h"
#include "ui/ScalableIcon.h"

#include <QWidget>

#include <array>

class QPushButton;

namespace kelvo {

/// What was asked, its answers, and the teams. GUI thread.
class QuizRunPage : public QWidget {
  Q_OBJECT
 public:
  QuizRunPage(PopQuiz& quiz, QWidget* parent);

  void Show();

 private:
  [[nodiscard]] QLayout* AskedLayout();
  [[nodiscard]] QLayout* AnswersLayout();
  [[nodiscard]] QLayout* TeamsLayout();
  [[nodiscard]] QPushButton* AddHold(std::size_t number, const QString& words, Icon icon, int direction);
  void Join();
  void ShowCommands();

  PopQuiz& quiz_;
  RowModel<AskedRow> askedModel_;
  RowModel<AnswerRow> answerModel_;
  RowModel<QuizTeam> teamModel_;
  ListPanel asked_;
  ListPanel answers_;
  ListPanel teams_;
  QPushButton* showAnswers_ = nullptr;
  QPushButton* replay_ = nullptr;
  QPushButton* playTrack_ = nullptr;
  QPushButton* playSnippet_ = nullptr;
  std::array<QPushButton*, 2> holds_{};
  QPushButton* addTeam_ = nullptr;
  QPushButton* removeTeam_ = nullptr;
  QPushButton* more_ = nullptr;
  QPushButton* less_ = nullptr;
  QPushButton* reset_ = nullptr;
  bool showing_ = false;  ///< a selection that comes from the quiz, not from a hand
};

}  // namespace kelvo

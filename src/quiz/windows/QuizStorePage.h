#pragma once

#include "quiz/PopQuiz.h"
#include "ui/ListPanel.h"

#include <QWidget>

class QLineEdit;
class QPushButton;

namespace kelvo {

/// The panel of the saved quizes. GUI thread.
class QuizStorePage : public QWidget {
  Q_OBJECT
 public:
  QuizStorePage(PopQuiz& quiz, QWidget* parent);

  void Show();

 private:
  PopQuiz& quiz_;
  RowModel<QuizName> model_;
  ListPanel list_;
  QLineEdit* name_;
  QPushButton* confirm_;
  QPushButton* cancel_;
  QPushButton* delete_;
  QuizStore::Mode shown_ = QuizStore::Mode::Closed;
};

}  // namespace kelvo

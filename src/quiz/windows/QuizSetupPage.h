#pragma once

#include "quiz/PopQuiz.h"
#include "ui/ListPanel.h"

#include <QWidget>

#include <array>

class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace kelvo {

/// The set-up of a quiz: genres, elements, and how snippets are chosen. GUI thread.
class QuizSetupPage : public QWidget {
  Q_OBJECT
 public:
  QuizSetupPage(PopQuiz& quiz, QWidget* parent);

  void Show();
  void TakeKeys();

 private:
  struct KindRow {
    ElementKind kind;
  };
  /// A kind of short sound: its box of choices, and what can be done with it.
  struct SoundLine {
    QuizSound sound;
    QComboBox* box;
    QPushButton* add;
    QPushButton* play;
  };

  [[nodiscard]] QLayout* GenresLayout();
  [[nodiscard]] QLayout* ElementsLayout();
  [[nodiscard]] QWidget* SnippetsPanel();
  [[nodiscard]] SoundLine MakeSound(QuizSound sound);
  void Join();
  void AddPickedKind();
  void ShowSound(const SoundLine& line);
  void ShowCommands();
  template <typename Change>
  void Wish(Change change);

  PopQuiz& quiz_;
  RowStore<KindRow> kindRows_;
  RowModel<QuizGenre> genreModel_;
  RowModel<QuizGenre> chosenModel_;
  RowModel<KindRow> kindModel_;
  RowModel<QuizElement> elementModel_;
  ListPanel genres_;
  ListPanel chosen_;
  ListPanel kinds_;
  ListPanel elements_;
  std::array<QPushButton*, 4> genreCommands_{};
  std::array<QPushButton*, 3> elementCommands_{};
  std::array<QRadioButton*, 4> sources_{};
  QLabel* facts_;
  QSpinBox* chain_;
  QSpinBox* seconds_;
  SoundLine mixer_;
  SoundLine intro_;
};

}  // namespace kelvo

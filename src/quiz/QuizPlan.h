#pragma once

#include "database/Catalogue.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"
#include "quiz/QuizElement.h"
#include "quiz/QuizSetup.h"

#include <QObject>

namespace kelvo {

struct QuizGenre {
  QString name;
  bool operator==(const QuizGenre&) const = default;
};

/// What the operator sets up before a quiz can run: genres, elements, where snippets come from. Owned by the
/// PopQuiz; logic thread.
class QuizPlan : public QObject {
  Q_OBJECT

 public:
  QuizPlan(const Catalogue& catalogue, ProgramSettings settings);

  /// All categories of the catalogue, and those that were chosen, in the operator's order.
  [[nodiscard]] const RowStore<QuizGenre>& Genres() const { return genres_; }
  [[nodiscard]] const RowStore<QuizGenre>& Chosen() const { return chosen_; }
  void Choose(const std::vector<int>& rows);
  void ChooseAll();
  void ChooseNone();
  void GiveBack(const std::vector<int>& rows);
  void SetChosen(const QStringList& names);

  [[nodiscard]] const RowStore<QuizElement>& Elements() const { return elements_; }
  void AddElement(ElementKind kind);
  void RemoveElement(int row);
  void ClearElements();
  void SetElements(std::vector<QuizElement> elements);
  /// Tracks that the elements need.
  [[nodiscard]] int TracksRequired() const { return TracksNeeded(elements_.All(), setup_.chainQty); }
  /// Why it can't be formatted, in words; empty when it can.
  [[nodiscard]] QString WhyNoFormat() const;

  [[nodiscard]] const QuizSetup& Setup() const { return setup_; }
  void SetSetup(const QuizSetup& setup);
  /// Keeps the set-up for the next time.
  void Keep() const;

 Q_SIGNALS:
  void Changed();
  /// The elements are others than before: what was formatted is over.
  void ElementsChanged();

 private:
  void ShowGenres();

  const Catalogue& catalogue_;
  ProgramSettings settings_;
  RowStore<QuizGenre> genres_;
  RowStore<QuizGenre> chosen_;
  RowStore<QuizElement> elements_;
  QuizSetup setup_;
};

}  // namespace kelvo

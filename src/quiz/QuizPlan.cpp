#include "quiz/QuizPlan.h"

#include "database/ReferenceLine.h"
#include "quiz/QuizSettings.h"

#include <algorithm>

namespace kelvo {

QuizPlan::QuizPlan(const Catalogue& catalogue, ProgramSettings settings)
    : catalogue_(catalogue), settings_(std::move(settings)) {
  setup_.Take(SplitFields(settings_.Get(setting::QuizSettings)));
  ShowGenres();
  catalogue_.Listen(
      this, [this](const CatalogueReplaced&) { ShowGenres(); },
      [this](const ReferenceChanged& change) {
        if (change.set != ReferenceSet::Genres) return;
        for (int row = chosen_.Count() - 1; row >= 0; --row) {
          if (change.before.isEmpty() || chosen_[row].name != change.before) continue;
          if (change.name.isEmpty()) {
            chosen_.Remove(row);
          } else {
            chosen_.Alter(row, [&change](QuizGenre& genre) { genre.name = change.name; });
          }
        }
        ShowGenres();
      });
}

void QuizPlan::ShowGenres() {
  std::vector<QuizGenre> genres;
  for (const QString& name : catalogue_.GenreList) {
    if (name.toUpper() != kAllCategories) genres.push_back({name});
  }
  if (genres != genres_.All()) genres_.Replace(std::move(genres));
  Q_EMIT Changed();
}

void QuizPlan::Choose(const std::vector<int>& rows) {
  std::vector<QuizGenre> fresh;
  for (const int row : rows) {
    const auto& have = chosen_.All();
    if (std::find(have.begin(), have.end(), genres_[row]) == have.end()) fresh.push_back(genres_[row]);
  }
  chosen_.Append(std::move(fresh));
  Q_EMIT Changed();
}

void QuizPlan::ChooseAll() {
  chosen_.Replace(genres_.All());
  Q_EMIT Changed();
}

void QuizPlan::ChooseNone() {
  chosen_.Replace({});
  Q_EMIT Changed();
}

void QuizPlan::GiveBack(const std::vector<int>& rows) {
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) chosen_.Remove(*row);
  Q_EMIT Changed();
}

void QuizPlan::SetChosen(const QStringList& names) {
  std::vector<QuizGenre> chosen;
  for (const QuizGenre& each : genres_.All()) {
    if (names.contains(each.name)) chosen.push_back(each);
  }
  chosen_.Replace(std::move(chosen));
  Q_EMIT Changed();
}

void QuizPlan::AddElement(ElementKind kind) {
  elements_.Append({QuizElement{kind}});
  Q_EMIT ElementsChanged();
  Q_EMIT Changed();
}

void QuizPlan::RemoveElement(int row) {
  if (row < 0 || row >= elements_.Count()) return;
  elements_.Remove(row);
  Q_EMIT ElementsChanged();
  Q_EMIT Changed();
}

void QuizPlan::ClearElements() {
  SetElements({});
}

void QuizPlan::SetElements(std::vector<QuizElement> elements) {
  elements_.Replace(std::move(elements));
  Q_EMIT ElementsChanged();
  Q_EMIT Changed();
}

QString QuizPlan::WhyNoFormat() const {
  if (chosen_.Count() == 0) return tr("No genre is chosen");
  return elements_.Count() == 0 ? tr("No element is set up") : QString();
}

void QuizPlan::SetSetup(const QuizSetup& setup) {
  if (setup == setup_) return;
  setup_ = setup;
  Q_EMIT Changed();
}

void QuizPlan::Keep() const {
  settings_.Set(setting::QuizSettings, JoinFields(setup_.Fields()));
}

}  // namespace kelvo

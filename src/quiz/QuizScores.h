#pragma once

#include "platform/RowStore.h"

#include <QObject>
#include <QString>

namespace kelvo {

struct QuizTeam {
  QString name;
  int points = 0;
  bool operator==(const QuizTeam&) const = default;
};

/// The teams of the evening and their points: each has the key of its number. Owned by the PopQuiz; logic
/// thread.
class QuizScores : public QObject {
  Q_OBJECT

 public:
  static constexpr int kMostTeams = 9;

  [[nodiscard]] const RowStore<QuizTeam>& Teams() const { return teams_; }
  /// "Team 4" at first.
  void Add();
  void Remove(int row);
  /// False for an empty name.
  bool Rename(int row, const QString& name);
  /// Gives points to the team of this row, or takes them (below 0); a row without a team has none.
  void Score(int row, int points);
  void ResetPoints();
  void Set(std::vector<QuizTeam> teams);
  [[nodiscard]] bool AnyPoints() const;

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] bool Has(int row) const { return row >= 0 && row < teams_.Count(); }

  RowStore<QuizTeam> teams_;
};

}  // namespace kelvo

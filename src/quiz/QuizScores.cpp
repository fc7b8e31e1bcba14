#include "quiz/QuizScores.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr int kMostPoints = 9999;
constexpr int kLongestName = 30;

}  // namespace

void QuizScores::Add() {
  if (teams_.Count() >= kMostTeams) return;
  teams_.Append({QuizTeam{tr("Team %1").arg(teams_.Count() + 1), 0}});
  Q_EMIT Changed();
}

void QuizScores::Remove(int row) {
  if (!Has(row)) return;
  teams_.Remove(row);
  Q_EMIT Changed();
}

bool QuizScores::Rename(int row, const QString& name) {
  const QString trimmed = name.trimmed().left(kLongestName);
  if (!Has(row) || trimmed.isEmpty()) return false;
  teams_.Alter(row, [&trimmed](QuizTeam& team) { team.name = trimmed; });
  Q_EMIT Changed();
  return true;
}

void QuizScores::Score(int row, int points) {
  if (!Has(row)) return;
  teams_.Alter(row, [points](QuizTeam& team) {
    team.points = std::clamp(team.points + points, -kMostPoints, kMostPoints);
  });
  Q_EMIT Changed();
}

void QuizScores::ResetPoints() {
  for (int row = 0; row < teams_.Count(); ++row) {
    teams_.Alter(row, [](QuizTeam& team) { team.points = 0; });
  }
  Q_EMIT Changed();
}

void QuizScores::Set(std::vector<QuizTeam> teams) {
  if (teams.size() > kMostTeams) teams.resize(kMostTeams);
  teams_.Replace(std::move(teams));
  Q_EMIT Changed();
}

bool QuizScores::AnyPoints() const {
  const auto& teams = teams_.All();
  return std::any_of(teams.begin(), teams.end(), [](const QuizTeam& team) { return team.points != 0; });
}

}  // namespace kelvo

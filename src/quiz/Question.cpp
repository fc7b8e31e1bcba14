#include "quiz/Question.h"

#include <array>

namespace kelvo {
namespace {

/// The lists of the sets, by their numbers.
const std::array<std::vector<int>, 8> kQuestions{
    {{0, 0}, {1, 2, 3, 4, 5, 6, 7}, {5, 7}, {5, 5}, {1, 3, 4, 5, 7}, {3, 5}, {6, 6}, {7, 7}}};

}  // namespace

int QuestionSet(const Candidate& candidate) {
  const auto [track, album, hiPos, year, artist, name] = candidate;
  if (year) return album ? (hiPos ? 1 : 2) : (hiPos ? 4 : 7);
  if (album) return hiPos ? 3 : 6;
  return hiPos ? 5 : 0;
}

int PickQuestion(int set, RandomSource& random) {
  const std::vector<int>& list = kQuestions[static_cast<std::size_t>(set)];
  return list[static_cast<std::size_t>(random.Below(static_cast<int>(list.size()) - 1))];
}

QString HitLabel(const QString& hi) {
  if (hi < QStringLiteral("5")) return QStringLiteral("Top 5 Hit");
  if (hi > QStringLiteral("True")) return QStringLiteral("Top 10 Hit");
  return QStringLiteral("Chart Entry");
}

QuizQuestion WriteQuestion(int type, const QuestionFacts& facts) {
  const auto& [artist, album, title, date, hi] = facts;
  const QString label = HitLabel(hi);
  switch (type) {
    case 0:
      return {QStringLiteral("Which Artist had a Chart Entry With ") + title +
                  QStringLiteral(" ? (Question May Have Multiple Answers!)"),
              artist};
    case 1:
      return {QStringLiteral("In The year ") + date + QStringLiteral(", '") + artist +
                  QStringLiteral("' Released a Single which Reached ") + hi +
                  QStringLiteral(" What was it called ?"),
              title};
    case 2:
      return {QStringLiteral("Which Artist/Band Released An Album called '") + album +
                  QStringLiteral("' in the year ") + date + QStringLiteral(" ?"),
              artist};
    case 3:
      return {artist + QStringLiteral(" Had A ") + label + QStringLiteral(" With '") + title +
                  QStringLiteral("' What was it's highest chart position ?"),
              hi};
    case 4:
      return {QStringLiteral("Who Had a ") + label + QStringLiteral(" in ") + date +
                  QStringLiteral(" With '") + title + QStringLiteral("' ?"),
              artist};
    case 5:
      return {QLatin1Char('\'') + title + QStringLiteral("' Was A ") + label +
                  QStringLiteral(" Hit for Which Artist/Band ?"),
              artist};
    case 6:
      return {QStringLiteral("Who released An Album Called '") + album +
                  QStringLiteral("' From Where the Single '") + title + QStringLiteral("' Was Taken ?"),
              artist};
    case 7:
      return {QStringLiteral("In Which Year Did Artist/Band '") + artist + QStringLiteral("' Chart With '") +
                  title + QStringLiteral("' ?"),
              date};
    default:
      return {};
  }
}

}  // namespace kelvo

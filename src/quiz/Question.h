#pragma once

#include "quiz/Candidate.h"

namespace kelvo {

/// The set of questions that can be asked of a candidate, 0 to 7.
[[nodiscard]] int QuestionSet(const Candidate& candidate);

/// A question of the set, 0 to 7, by chance. The last one of a set's list is never taken, so some lists name
/// it twice, and the year is asked only where nothing else is known: saved quizes were made like this.
[[nodiscard]] int PickQuestion(int set, RandomSource& random);

/// "Top 5 Hit" and so on. The chart position is compared as a text, so all that begins with a digit below 5
/// is a "Top 5 Hit", and no number is a "Top 10 Hit".
[[nodiscard]] QString HitLabel(const QString& hi);

/// What a question is made of.
struct QuestionFacts {
  QString artist;
  QString album;
  QString title;
  QString date;
  QString hi;
};
struct QuizQuestion {
  QString question;
  QString answer;
};
[[nodiscard]] QuizQuestion WriteQuestion(int type, const QuestionFacts& facts);

}  // namespace kelvo

#pragma once

#include "quiz/QuizScores.h"

#include <QStringList>

#include <vector>

namespace kelvo {

/// All that the audience gets to see. It is made of what may be known, never by leaving out of what may not:
/// answers come into it by the operator's reveal alone. A value.
struct AudienceView {
  QString heading;      ///< "Question (Element 2 Of 5)"
  QString text;         ///< the question, or what goes on
  QString snippet;      ///< "Snippet 2 of 5" while one sounds
  double share = 0;     ///< how much of it has sounded, 0 to 1
  QStringList answers;  ///< once they are revealed
  std::vector<QuizTeam> teams;
  bool operator==(const AudienceView&) const = default;
};

}  // namespace kelvo

#pragma once

#include "platform/RandomSource.h"

#include <QString>
#include <QStringList>

namespace kelvo {

/// Where in a track a snippet is taken from. The numbers are those of the saved quizes.
enum class SnipFrom { Start = 1, Middle = 2, End = 3, Random = 4 };

/// How snippets are chosen and what sounds behind and before them. A value.
struct QuizSetup {
  static constexpr int kLowest = 1;  ///< of both numbers
  static constexpr int kHighest = 99;

  SnipFrom from = SnipFrom::Start;
  int chainQty = 5;                        ///< snippets of a chain
  int seconds = 5;                         ///< of a snippet
  QString mixer = QStringLiteral("None");  ///< file names, of the folders of QuizSounds
  QString intro = QStringLiteral("None");

  /// The five values in the order in which they are kept.
  [[nodiscard]] QStringList Fields() const;
  /// Takes what the fields say; one that is missing or out of range changes nothing. A single field is none.
  void Take(const QStringList& fields);
  bool operator==(const QuizSetup&) const = default;
};

/// A stretch of a track, in whole seconds.
struct SnippetSpan {
  int start = 0;
  int end = 0;
  bool operator==(const SnippetSpan&) const = default;
};

/// The stretch that a snippet of a track of `duration` seconds takes. The last three seconds of a track are
/// never in it, and one of the middle ends there. The end of a short track may lie before that of its
/// snippet.
[[nodiscard]] SnippetSpan ChooseSnippet(double duration, const QuizSetup& setup, RandomSource& random);

}  // namespace kelvo

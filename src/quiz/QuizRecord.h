#pragma once

#include "quiz/QuizElement.h"
#include "quiz/QuizSetup.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kelvo {

/// One played snippet, as a saved quiz keeps it.
struct SnippetRecord {
  int track = 0;  ///< its number in the catalogue
  SnippetSpan span = {};
  double rate = 1;
  ElementKind kind = ElementKind::Snippet;

  /// Its five fields.
  [[nodiscard]] QString Text() const;
  bool operator==(const SnippetRecord&) const = default;
};

/// What was asked in one element of a quiz, as text, which is not escaped: a ":" in a title makes one more
/// answer. A value.
struct QuizItem {
  QString heading;   ///< the line above the question while the quiz runs; not kept in saved quizes
  QString question;  ///< what is asked
  QString answers;   ///< joined by ":"
  QString snippets;  ///< "Q" for a question without one, else records joined by ":"

  [[nodiscard]] bool IsQuestion() const { return snippets.startsWith(QLatin1Char('Q')); }
  [[nodiscard]] QString Shown() const;
  bool operator==(const QuizItem&) const = default;
};

/// The records of an item, read as far as they are any; each has a track and a start at least.
[[nodiscard]] std::vector<SnippetRecord> SnippetsOf(const QuizItem& item);

/// An answer of an item as the list of answers shows it.
struct AnswerRow {
  QString text;
  std::optional<SnippetRecord> snippet;  ///< none for an answer that nothing is played of
};
[[nodiscard]] std::vector<AnswerRow> AnswerRows(const QuizItem& item);

/// Puts other track numbers into the records of an item.
void Renumber(QuizItem& item, const std::function<int(int track)>& numberOf);

/// The names of tracks by their numbers.
using NamesOfTracks = std::map<int, QString>;

/// A quiz as it is kept: what was asked, and the names of the tracks in it, by which they are found again in
/// a catalogue that has changed. Quizes of older versions have no names.
struct SavedQuiz {
  std::vector<QuizItem> items;
  NamesOfTracks names;
};

/// The files of a saved quiz, without its set-up.
struct QuizFileBytes {
  QByteArray questions;
  QByteArray answers;
  QByteArray snippets;
  QByteArray names;  ///< empty: there is none
};
/// Throws Failure for what is no whole quiz. Never reads more than kMostItems.
[[nodiscard]] SavedQuiz ReadQuiz(const QuizFileBytes& bytes);
[[nodiscard]] QuizFileBytes WriteQuiz(const SavedQuiz& quiz);
inline constexpr qsizetype kMostItems = 10000;

/// The set-up of a saved quiz, five fields joined by ",".
[[nodiscard]] QStringList ReadSetup(const QByteArray& bytes);
[[nodiscard]] QByteArray WriteSetup(const QuizSetup& setup);

}  // namespace kelvo

#include "platform/ErrorLog.h"
#include "quiz/QuizRecord.h"

#include <cstdint>
#include <cstdlib>

using namespace kelvo;

/// The input is the files of a quiz one behind the other, each ended by a byte of 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const QList<QByteArray> files = bytes.split('\0');
  QuizSetup setup;
  setup.Take(ReadSetup(files.value(4)));
  if (setup.chainQty < QuizSetup::kLowest || setup.chainQty > QuizSetup::kHighest) std::abort();
  try {
    SavedQuiz quiz = ReadQuiz({files.value(0), files.value(1), files.value(2), files.value(3)});
    for (QuizItem& item : quiz.items) {
      if (SnippetsOf(item).size() > static_cast<std::size_t>(item.snippets.count(QLatin1Char(':')) + 1))
        std::abort();
      if (AnswerRows(item).empty()) std::abort();
      Renumber(item, [](int track) { return track; });
    }
    // What was read from anywhere is written so that it is read again as the same.
    const SavedQuiz again = ReadQuiz(WriteQuiz(quiz));
    if (again.items != quiz.items) std::abort();
  } catch (const Failure&) {
    // It was no quiz.
  }
  return 0;
}

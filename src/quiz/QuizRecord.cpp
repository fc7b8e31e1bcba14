#include "quiz/QuizRecord.h"

#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

namespace kelvo {
namespace {

constexpr QLatin1Char kItem(';');
constexpr QLatin1Char kPart(':');
constexpr QLatin1Char kField(',');
constexpr int kMost = 2147483647;
/// A day: no place in a track is later.
constexpr int kMostSeconds = 86400;

/// The one line of a file, without the line end behind it. Line ends inside of it are those of the texts.
QString TextOf(const QByteArray& bytes) {
  return TextFile::FromBytes(bytes).Lines().join(QLatin1Char('\n'));
}

QByteArray BytesOf(const QString& line) {
  return TextFile(QStringList{line}).ToBytes();
}

/// Slots 0 to n of a file.
QStringList SlotsOf(const QByteArray& bytes) {
  const QString text = TextOf(bytes);
  if (text.count(kItem) > kMostItems) {
    throw Failure(QStringLiteral("The quiz has more than %1 questions").arg(kMostItems));
  }
  return text.split(kItem);
}

NamesOfTracks ReadNames(const QByteArray& bytes) {
  NamesOfTracks names;
  for (const QString& line : TextFile::FromBytes(bytes).Lines()) {
    const qsizetype comma = line.indexOf(kField);
    const int track = WholeNumber(line.left(comma), 0, kMost);
    if (comma > 0 && track > 0) names.emplace(track, line.mid(comma + 1));
  }
  return names;
}

QByteArray WriteNames(const NamesOfTracks& names) {
  QStringList lines;
  for (const auto& [track, name] : names) lines.append(QString::number(track) + kField + name);
  return TextFile(lines).ToBytes();
}

/// The record of one part; none for a part that is no record.
std::optional<SnippetRecord> RecordOf(const QString& part) {
  const QStringList fields = part.split(kField);
  if (fields.size() < 2) return std::nullopt;
  SnippetRecord record;
  record.track = WholeNumber(fields[0], 0, kMost);
  record.span.start = WholeNumber(fields[1], 0, kMostSeconds);
  record.span.end = WholeNumber(fields.value(2), 0, kMostSeconds);
  const double rate = Val(fields.value(3));
  record.rate = rate >= 0.5 && rate <= 2 ? rate : 1;
  record.kind = fields.size() > 4 && Val(fields[4]) == 0 ? ElementKind::Chain : ElementKind::Snippet;
  return record;
}

}  // namespace

QString SnippetRecord::Text() const {
  return QStringList{QString::number(track), QString::number(span.start), QString::number(span.end),
                     QString::number(rate), QString::number(static_cast<int>(kind))}
      .join(kField);
}

QString QuizItem::Shown() const {
  return heading.isEmpty() ? question : heading + QLatin1Char('\n') + question;
}

std::vector<SnippetRecord> SnippetsOf(const QuizItem& item) {
  std::vector<SnippetRecord> records;
  for (const QString& part : item.snippets.split(kPart)) {
    if (const auto record = RecordOf(part)) records.push_back(*record);
  }
  return records;
}

std::vector<AnswerRow> AnswerRows(const QuizItem& item) {
  std::vector<AnswerRow> rows;
  const QStringList parts = item.snippets.split(kPart);
  for (const QString& answer : item.answers.split(kPart)) {
    const auto record = RecordOf(parts.value(static_cast<qsizetype>(rows.size())));
    if (record) {
      rows.push_back({answer + QStringLiteral(" (File Id= %1 : Start= %2 : End= %3")
                                   .arg(record->track)
                                   .arg(record->span.start)
                                   .arg(record->span.end),
                      record});
    } else {
      rows.push_back({answer, std::nullopt});
    }
  }
  return rows;
}

void Renumber(QuizItem& item, const std::function<int(int track)>& numberOf) {
  if (item.IsQuestion()) return;
  QStringList parts = item.snippets.split(kPart);
  for (QString& part : parts) {
    const auto record = RecordOf(part);
    if (!record) continue;
    part = QString::number(numberOf(record->track)) + part.mid(part.indexOf(kField));
  }
  item.snippets = parts.join(kPart);
}

SavedQuiz ReadQuiz(const QuizFileBytes& bytes) {
  const QStringList questions = SlotsOf(bytes.questions);
  const QStringList answers = SlotsOf(bytes.answers);
  const QStringList snippets = SlotsOf(bytes.snippets);
  // The questions say how many there are; more of the others are nobody's.
  if (answers.size() < questions.size() || snippets.size() < questions.size()) {
    throw Failure(QStringLiteral("The quiz has %1 questions, but %2 answers and %3 snippets")
                      .arg(questions.size() - 1)
                      .arg(answers.size() - 1)
                      .arg(snippets.size() - 1));
  }
  SavedQuiz quiz;
  for (qsizetype slot = 1; slot < questions.size(); ++slot) {
    quiz.items.push_back({{}, questions[slot], answers[slot], snippets[slot]});
  }
  quiz.names = ReadNames(bytes.names);
  return quiz;
}

QuizFileBytes WriteQuiz(const SavedQuiz& quiz) {
  // Slot 0 is empty, so each file begins with the sign between two.
  QString questions;
  QString answers;
  QString snippets;
  for (const QuizItem& item : quiz.items) {
    questions += kItem + item.question;
    answers += kItem + item.answers;
    snippets += kItem + item.snippets;
  }
  return {BytesOf(questions), BytesOf(answers), BytesOf(snippets), WriteNames(quiz.names)};
}

QStringList ReadSetup(const QByteArray& bytes) {
  return TextOf(bytes).split(kField);
}

QByteArray WriteSetup(const QuizSetup& setup) {
  return BytesOf(setup.Fields().join(kField));
}

}  // namespace kelvo

#include "quiz/QuizFiles.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <filesystem>

namespace kelvo {
namespace {

const QString kQuestions = QStringLiteral("Quest.Kq5");
const QString kAnswers = QStringLiteral("Answ.Kq5");
const QString kSnippets = QStringLiteral("Snip.Kq5");
const QString kSetup = QStringLiteral("Qdata.Kq5");
const QString kNames = QStringLiteral("Tracks.Kq5");
/// A quiz that is being saved; what a crash leaves of it is taken away by the next save.
const QString kStaging = QStringLiteral(".kelvo-new");

/// More than the longest evening fills.
constexpr qint64 kMostBytes = qint64{4} << 20;

QByteArray ReadPart(const QString& folder, const QString& quiz, const QString& file) {
  return ReadWholeFile(QDir(folder).filePath(quiz + QLatin1Char('/') + file), kMostBytes);
}

void MakeFolder(const QString& path) {
  if (!QDir().mkpath(path)) throw Failure(QStringLiteral("Cannot create the folder ") + path, 0, path);
}

}  // namespace

QStringList ListQuizes(const QString& folder) {
  MakeFolder(folder);
  QStringList names =
      QDir(folder).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
  names.removeAll(kStaging);
  return names;
}

bool SaveQuiz(const QString& folder, const QString& name, const QuizSetup& setup, const SavedQuiz& quiz) {
  const QDir all(folder);
  // On a file system that knows no case this finds a quiz that differs in it.
  if (QFileInfo::exists(all.filePath(name))) return false;
  const QString staged = all.filePath(kStaging);
  QDir(staged).removeRecursively();
  MakeFolder(staged);
  const QDir into(staged);
  const QuizFileBytes bytes = WriteQuiz(quiz);
  ReplaceFile(into.filePath(kQuestions), bytes.questions);
  ReplaceFile(into.filePath(kAnswers), bytes.answers);
  ReplaceFile(into.filePath(kSnippets), bytes.snippets);
  ReplaceFile(into.filePath(kSetup), WriteSetup(setup));
  ReplaceFile(into.filePath(kNames), bytes.names);
  std::error_code error;
  std::filesystem::rename(staged.toStdU16String(), all.filePath(name).toStdU16String(), error);
  if (!error) return true;
  QDir(staged).removeRecursively();
  if (error.value() == ENOTEMPTY || error.value() == EEXIST) return false;
  throw Failure(
      QStringLiteral("Cannot save the quiz %1: %2").arg(name, QString::fromStdString(error.message())),
      error.value(), all.filePath(name));
}

QStringList LoadSetup(const QString& folder, const QString& name) {
  return ReadSetup(ReadPart(folder, name, kSetup));
}

SavedQuiz LoadQuiz(const QString& folder, const QString& name) {
  QuizFileBytes bytes{.questions = ReadPart(folder, name, kQuestions),
                      .answers = ReadPart(folder, name, kAnswers),
                      .snippets = ReadPart(folder, name, kSnippets),
                      .names = {}};
  if (QFileInfo::exists(QDir(folder).filePath(name + QLatin1Char('/') + kNames))) {
    bytes.names = ReadPart(folder, name, kNames);
  }
  return ReadQuiz(bytes);
}

QuizTrash DesktopQuizTrash() {
  return [](const QString& path) { return QFile::moveToTrash(path); };
}

void DeleteQuiz(const QString& folder, const QString& name, const QuizTrash& trash) {
  const QString path = QDir(folder).filePath(name);
  if (trash(path)) return;
  if (!QDir(path).removeRecursively()) throw Failure(QStringLiteral("Cannot delete ") + path, 0, path);
}

QString CleanQuizName(const QString& name) {
  static const QString refused = QStringLiteral("\"*,/:<>?\\|#");
  QString clean = name.trimmed();
  for (QChar& each : clean) {
    if (refused.contains(each)) each = QLatin1Char('_');
  }
  // These two are no names of their own.
  return clean == QStringLiteral(".") || clean == QStringLiteral("..") ? QString() : clean;
}

}  // namespace kelvo

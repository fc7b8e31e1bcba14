#include "database/FileRun.h"

#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

constexpr Nanoseconds kWatch = 100ms;
constexpr qsizetype kMostTroubles = 10;

bool IsLackOfRoom(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const Failure& known) {
    return known.Number() == ENOSPC || known.Number() == EDQUOT;
  } catch (...) {
    return false;
  }
}

}  // namespace

FileOutcome OutcomeOf(CopyResult result) {
  switch (result) {
    case CopyResult::Copied:
      return FileOutcome::Done;
    case CopyResult::Stopped:
      return FileOutcome::Stopped;
    case CopyResult::Existed:
      break;
  }
  return FileOutcome::Existed;
}

int FileSum::Count(FileOutcome outcome) const {
  return static_cast<int>(std::count(outcomes.begin(), outcomes.end(), outcome));
}

bool FileSum::EndedBy(FileOutcome outcome) const {
  return !outcomes.empty() && outcomes.back() == outcome;
}

double FileProgress::Percent() const {
  if (files == 0) return 0;
  const double part = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
  return 100.0 * (finished + std::min(part, 1.0)) / files;
}

void FileRun::Reset() {
  stop_ = false;
  ifTaken = IfTaken::Ask;
  progress_ = {};
  TellProgress();
}

void FileRun::Stop() {
  stop_ = true;
  if (control_) control_->stop = true;
}

FileProgress FileRun::Progress() const {
  FileProgress progress = progress_;
  if (control_) {
    progress.done = control_->done;
    progress.total = control_->total;
  }
  return progress;
}

void FileRun::Show(const QString& words) {
  progress_.words = words;
  TellProgress();
}

void FileRun::Note(const QString& line) {
  NoteInLog(line);
}

Job<FileSum> FileRun::Run(Work work) {
  FileSum sum;
  progress_.files = static_cast<int>(work.files);
  for (std::size_t file = 0; file < work.files && !stop_; ++file) {
    FileOutcome outcome = FileOutcome::Failed;
    QString why;
    step_.clear();
    try {
      Job<FileOutcome> one = work.step(file);
      outcome = co_await std::move(one);
    } catch (...) {
      outcome = Fail(work, std::current_exception());
      why = ErrorLog::Describe(std::current_exception());
    }
    if (outcome == FileOutcome::Failed) sum.troubles.append(work.name(file) + QStringLiteral(": ") + why);
    watch_.Stop();
    control_.reset();
    ++progress_.finished;
    sum.outcomes.push_back(outcome);
    if (work.after) work.after(file, outcome, why);
    if (outcome == FileOutcome::NoRoom || outcome == FileOutcome::Stopped) break;
  }
  co_return sum;
}

FileOutcome FileRun::Fail(const Work& work, const std::exception_ptr& failure) {
  const QString tag = step_.isEmpty() ? work.tag : work.tag + QLatin1Char(' ') + step_;
  Note(ErrorLog::Compose(failure, tag));
  return IsLackOfRoom(failure) ? FileOutcome::NoRoom : FileOutcome::Failed;
}

Job<bool> FileRun::IsMusic(QString path) {
  const auto look = [path] { return CheckMediaFile(path); };
  co_return co_await loop_.Offload(EventLoop::Lane::Apart, look);
}

Job<bool> FileRun::HasRoom(RoomCheck check, QString folder, QString file) {
  const auto look = [check, folder, file] { return check(folder, QFileInfo(file).size()); };
  co_return co_await loop_.Offload(EventLoop::Lane::Apart, look);
}

Job<CopyResult> FileRun::Copy(CopyOrder order) {
  control_ = std::make_shared<CopyControl>();
  control_->stop = stop_;
  watch_ = loop_.Every(kWatch, [this] { TellProgress(); });
  const CopyResult result = co_await CopyFileLater(loop_, std::move(order), control_);
  watch_.Stop();
  TellProgress();
  co_return result;
}

Job<IfTaken> FileRun::AskIfTaken(Prompter& prompter, Prompt question) {
  if (ifTaken != IfTaken::Ask) co_return ifTaken;
  question.safe = Answer::Cancel;
  const AnswerForFiles given = co_await prompter.AskForFiles(question);
  IfTaken wish = IfTaken::LeaveOut;
  if (given.answer == Answer::Yes) wish = IfTaken::Replace;
  if (given.answer == Answer::No) wish = IfTaken::Rename;
  if (given.answer == Answer::Stop) {
    Stop();
  } else if (given.forAll) {
    ifTaken = wish;
  }
  co_return wish;
}

QStringList FirstOf(QStringList troubles) {
  const qsizetype more = troubles.size() - kMostTroubles;
  if (more <= 0) return troubles;
  troubles.resize(kMostTroubles);
  troubles.append(QStringLiteral("... and ") +
                  Counted(more, QStringLiteral("other"), QStringLiteral("others")) +
                  QStringLiteral(" (see the log)"));
  return troubles;
}

Prompt TroubleMessage(const QString& head, const QStringList& troubles) {
  Prompt message;
  message.text = (QStringList{head} + FirstOf(troubles)).join(QStringLiteral("\r\n"));
  message.icon = PromptIcon::Exclamation;
  return message;
}

Job<QString> RoomWords(EventLoop& loop, QString folder) {
  const auto look = [folder] { return FreeBytes(folder); };
  const std::int64_t free = co_await loop.Offload(EventLoop::Lane::Apart, look);
  const auto megabytes = [](std::int64_t bytes) { return static_cast<double>(bytes) / 1048576; };
  co_return QStringLiteral("Free Disc Space : ") + Format000(megabytes(free)) + QStringLiteral(" MB (") +
      Format000(megabytes(kSpareBytes)) + QStringLiteral(" MB must stay free)");
}

void AddCount(QStringList& lines, int number, const QString& words) {
  if (number > 0) lines.append(QString::number(number) + words);
}

QString MegabytesText(std::int64_t bytes) {
  return QString::number(static_cast<double>(bytes) / 1048576, 'f', 4);
}

}  // namespace kelvo

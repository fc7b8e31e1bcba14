#pragma once

#include "platform/EventLoop.h"
#include "platform/FileCopy.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace kelvo {

/// What came of one file of a run.
enum class FileOutcome {
  Done,
  Existed,     ///< its name is taken where it was to go; the file there is as it was
  InDatabase,  ///< the database has a track of that name
  Unfit,       ///< gone, unreadable or no music
  LeftOut,     ///< as the operator wished
  Failed,      ///< a step of it threw
  NoRoom,      ///< the disk is full; ends the run
  Stopped,     ///< the operator ended the run
};
[[nodiscard]] FileOutcome OutcomeOf(CopyResult result);

/// What is done with a file whose name is taken.
enum class IfTaken { Ask, Replace, Rename, LeaveOut };

/// What a run came to.
struct FileSum {
  std::vector<FileOutcome> outcomes;  ///< of each file that was reached
  QStringList troubles;               ///< of each file that failed, for people: which, what, why

  [[nodiscard]] int Count(FileOutcome outcome) const;
  /// Its last file, and with it the run, ended so.
  [[nodiscard]] bool EndedBy(FileOutcome outcome) const;
};

/// How far a run is.
struct FileProgress {
  QString words;
  int finished = 0;  ///< files
  int files = 0;
  std::int64_t done = 0;   ///< bytes of the copy under way
  std::int64_t total = 0;  ///< bytes; 0 when nothing is being copied

  /// The file under way, from 1; the last one at the end.
  [[nodiscard]] int File() const { return finished < files ? finished + 1 : files; }
  /// Of all files, that under way by its bytes.
  [[nodiscard]] double Percent() const;
};

/// Whether a file of so many bytes fits into the folder. Called off the logic's thread.
using RoomCheck = std::function<bool(const QString& folder, std::int64_t bytes)>;

/// Takes picked files one after another through the steps that bring them in: what imports, transfers and
/// deletions of many files have in common. A file that fails does not end the run; a full disk and the
/// operator do. Owned by whoever holds the list of files; logic thread. One run at a time.
class FileRun {
 public:
  struct Work {
    std::size_t files = 0;
    QString tag;  ///< of failures in the log; the name of the step comes behind
    std::function<QString(std::size_t file)> name;
    std::function<Job<FileOutcome>(std::size_t file)> step;
    /// Called when the file is through, also when it failed; `why` it did then, else empty.
    std::function<void(std::size_t file, FileOutcome outcome, const QString& why)> after = {};
  };

  explicit FileRun(EventLoop& loop) : loop_(loop) {}
  ~FileRun() { Stop(); }
  FileRun(const FileRun&) = delete;
  FileRun& operator=(const FileRun&) = delete;

  /// Forgets the run before: its progress, its stop and its answer for all.
  void Reset();
  [[nodiscard]] Job<FileSum> Run(Work work);
  /// The file that is being copied stays where it was; no other is begun.
  void Stop();
  [[nodiscard]] bool Stopping() const { return stop_; }

  [[nodiscard]] FileProgress Progress() const;
  void Show(const QString& words);
  std::function<void()> OnProgress;

  // For the steps of a file.

  /// Names the step, for the tag of its failure.
  void At(const QString& step) { step_ = step; }
  void Note(const QString& line);
  /// The file is there and is music.
  [[nodiscard]] Job<bool> IsMusic(QString path);
  /// The file fits into the folder.
  [[nodiscard]] Job<bool> HasRoom(RoomCheck check, QString folder, QString file);
  [[nodiscard]] Job<CopyResult> Copy(CopyOrder order);
  /// What to do with a file whose name is taken. `question` has Yes (replace), No (rename) and Cancel (leave
  /// it out, the answer of Enter); it is asked unless there is an answer for all. It can also stop the run.
  [[nodiscard]] Job<IfTaken> AskIfTaken(Prompter& prompter, Prompt question);
  /// The answer for all files that follow; Ask when there is none.
  IfTaken ifTaken = IfTaken::Ask;

 private:
  [[nodiscard]] FileOutcome Fail(const Work& work, const std::exception_ptr& failure);
  void TellProgress() const {
    if (OnProgress) OnProgress();
  }

  EventLoop& loop_;
  FileProgress progress_;
  QString step_;
  std::shared_ptr<CopyControl> control_;  ///< of the copy under way
  Timer watch_;
  bool stop_ = false;
};

/// A message of the files that failed: `head`, and a line for each of the first ones.
[[nodiscard]] Prompt TroubleMessage(const QString& head, const QStringList& troubles);
/// The lines of that alone.
[[nodiscard]] QStringList FirstOf(QStringList troubles);
/// The room where `folder` is: "Free Disc Space : ...", and how much of it is not for files.
[[nodiscard]] Job<QString> RoomWords(EventLoop& loop, QString folder);
/// Adds a line of a sum, the number and the words, unless the number is 0.
void AddCount(QStringList& lines, int number, const QString& words);
/// Megabytes, "0.0000".
[[nodiscard]] QString MegabytesText(std::int64_t bytes);

}  // namespace kelvo

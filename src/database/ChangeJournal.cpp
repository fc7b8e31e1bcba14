#include "database/ChangeJournal.h"

#include "database/ChangeSteps.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(ChangeJournal)
};

/// Of a change of a million tracks.
constexpr qint64 kLargestJournal = qint64{1} << 30;

// Hidden: they are no files that wait.
QString RunningFile(const Paths& paths) {
  return paths(Paths::Utility) + QStringLiteral("/.running-change");
}
QString LastFile(const Paths& paths) {
  return paths(Paths::Utility) + QStringLiteral("/.last-change");
}

std::optional<LibraryChange> ReadChange(const QString& file) {
  if (!QFileInfo::exists(file)) return std::nullopt;
  return LibraryChange::FromBytes(ReadWholeFile(file, kLargestJournal));
}

void RemoveFile(const QString& file) {
  if (::unlink(EncodedPath(file).constData()) != 0 && errno != ENOENT)
    FailOn("remove", EncodedPath(file), errno);
}

QString PlaceOf(const ChangeStep& step) {
  const auto* const discard = std::get_if<DiscardEntry>(&step);
  return discard == nullptr ? QString() : discard->place;
}

/// What the last change kept goes, but for what this one keeps: after a crash they may be the same.
void ForgetLast(const QString& last, const LibraryChange& done) {
  try {
    const std::optional<LibraryChange> change = ReadChange(last);
    if (!change) return;
    for (const ChangeStep& step : change->steps) {
      const bool kept =
          std::any_of(done.steps.begin(), done.steps.end(), [place = PlaceOf(step)](const ChangeStep& each) {
            return !place.isEmpty() && PlaceOf(each) == place;
          });
      if (!kept) ForgetStep(step);
    }
  } catch (const Failure&) {
    // What it kept stays, hidden.
  }
}

/// The file that the step works on got its new name by the next step before the crash: the step was done.
bool WasDoneAndMoved(const std::vector<ChangeStep>& steps, std::size_t place) {
  const auto* const content = std::get_if<SetContent>(&steps[place]);
  const auto* const move = place + 1 < steps.size() ? std::get_if<MoveEntry>(&steps[place + 1]) : nullptr;
  return content != nullptr && move != nullptr && move->from == content->path && QFileInfo::exists(move->to);
}

/// Does all steps, or takes them back, and takes out those that were not to be done. Returns why one failed;
/// empty when none did.
QString Mend(const Paths& paths, LibraryChange& change, TrashBin& trash) {
  const bool back = change.way != LibraryChange::Way::On;
  if (back) std::reverse(change.steps.begin(), change.steps.end());
  QString trouble;
  std::vector<ChangeStep> done;
  for (std::size_t place = 0; place < change.steps.size(); ++place) {
    ChangeStep& step = change.steps[place];
    try {
      const StepResult result = DoStep(paths, step, back, trash);
      const bool was = result == StepResult::Missing && !back && WasDoneAndMoved(change.steps, place);
      if (was || result == StepResult::Done || result == StepResult::Already) done.push_back(step);
    } catch (const Failure& failure) {
      trouble = QString::fromUtf8(failure.what());
    }
  }
  change.steps = std::move(done);
  return trouble;
}

}  // namespace

ChangeJournal::Locked ChangeJournal::LockOf(const Paths& paths) {
  const QByteArray folder = EncodedPath(paths(Paths::Utility));
  Locked locked{Descriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))};
  // Some network file systems know no locks on folders: there the operator keeps two programs apart.
  locked.busy = locked.folder.Valid() && ::flock(locked.folder.Number(), LOCK_EX | LOCK_NB) != 0 &&
                errno == EWOULDBLOCK;
  return locked;
}

ChangeJournal::ChangeJournal(const Paths& paths, Descriptor lock)
    : running_(RunningFile(paths)), last_(LastFile(paths)), lock_(std::move(lock)) {}

ChangeJournal::ChangeJournal(const Paths& paths) : running_(RunningFile(paths)), last_(LastFile(paths)) {
  Locked locked = LockOf(paths);
  if (locked.busy) throw Failure(Text::tr("Another Program Changes The Library."), EBUSY, running_);
  if (QFileInfo::exists(running_))
    throw Failure(Text::tr("A Change That Was Broken Off Waits For The Next Start Of The Program."), EBUSY,
                  running_);
  lock_ = std::move(locked.folder);
}

void ChangeJournal::Write(const LibraryChange& change) const {
  ReplaceFile(running_, change.ToBytes());
}

void ChangeJournal::EndWith(const LibraryChange& done) const {
  ForgetLast(last_, done);
  ReplaceFile(last_, done.ToBytes());
  RemoveFile(running_);
}

void ChangeJournal::End() const {
  RemoveFile(running_);
}

void ChangeJournal::EndUndone() const {
  RemoveFile(last_);
  RemoveFile(running_);
}

std::optional<LibraryChange> ChangeJournal::Last(const Paths& paths) {
  try {
    return ReadChange(LastFile(paths));
  } catch (const Failure&) {
    return std::nullopt;
  }
}

QString MendLibrary(const Paths& paths, TrashBin& trash) {
  QString what;
  try {
    const QString running = RunningFile(paths);
    if (!QFileInfo::exists(running)) return {};
    ChangeJournal::Locked locked = ChangeJournal::LockOf(paths);
    // Another program is at it.
    if (locked.busy) return {};
    const ChangeJournal journal(paths, std::move(locked.folder));
    std::optional<LibraryChange> change = ReadChange(running);
    if (!change) {
      QFile::rename(running, running + QStringLiteral("-unreadable"));
      return Text::tr("A Change Of The Library Was Broken Off, And What Is Known Of It Can't Be Read");
    }
    what = change->what;
    const LibraryChange::Way way = change->way;
    if (const QString trouble = Mend(paths, *change, trash); !trouble.isEmpty())
      return what + QStringLiteral("\r\n") +
             Text::tr("Was Broken Off And Could Not Be Brought To Its End: The Next Start Tries Again") +
             QStringLiteral("\r\n") + trouble;
    QString became;
    if (way == LibraryChange::Way::On) {
      became = Text::tr("Was Broken Off By The End Of The Program: It Is Finished Now");
      if (change->steps.empty()) {
        journal.End();
      } else {
        journal.EndWith(*change);
      }
    } else {
      became = Text::tr("Was Being Taken Back When The Program Ended: It Is Taken Back Now");
      way == LibraryChange::Way::Undo ? journal.EndUndone() : journal.End();
    }
    return what + QStringLiteral("\r\n") + became;
  } catch (const std::exception& failure) {
    return what + QStringLiteral("\r\n") + Text::tr("Was Broken Off And Could Not Be Brought To Its End:") +
           QStringLiteral("\r\n") + QString::fromUtf8(failure.what());
  }
}

}  // namespace kelvo

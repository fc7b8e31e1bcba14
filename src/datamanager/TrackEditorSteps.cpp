// How the track editor renames and deletes its file.

#include "database/TrackInfo.h"
#include "database/TrackNames.h"
#include "datamanager/TrackEditor.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" fileed");
const QString kLineBreak = QStringLiteral("\r\n");
/// So long a name may be on disk, with its extension.
constexpr qsizetype kMostNameBytes = 255;

}  // namespace

std::optional<QString> TrackEditor::NewPath() {
  QString name = newName_;
  // Any "." would be taken for the beginning of the extension.
  name = name.remove(QLatin1Char('.')).trimmed();
  if (name.isEmpty()) {
    Tell(QStringLiteral("Please Enter New File Name In Rename Box !"));
    return std::nullopt;
  }
  if (!CheckName(services_.prompter, name)) return std::nullopt;
  const QFileInfo old(path_);
  const QString fileName = name + old.fileName().mid(BaseName().size());
  if (QFile::encodeName(fileName).size() > kMostNameBytes) {
    Tell(tr("The Name Is Too Long !"));
    return std::nullopt;
  }
  const QString path = old.path() + QLatin1Char('/') + fileName;
  return path.toUpper() == path_.toUpper() ? std::nullopt : std::optional(path);
}

Job<LibraryFile> TrackEditor::LookAt() {
  const auto look = [paths = services_.paths, path = path_] { return LookAtFile(paths, path); };
  const std::optional<LibraryFile> file = co_await services_.disks.Look(path_, look);
  if (!file) throw Failure(tr("Its disk does not answer."), 0, path_);
  co_return *file;
}

Job<TrackLinks> TrackEditor::FindLinks(LibraryFile file, QString words) {
  if (!file.track) co_return TrackLinks{};
  const std::function<bool(double)> progress = [changes = services_.changes, words](double share) {
    return changes->ShowLook(words, share);
  };
  const auto ended = qScopeGuard([changes = services_.changes] { changes->EndLook(); });
  co_return co_await FindTrackLinks(services_.loop, services_.disks, services_.catalogue, services_.paths,
                                    file.path, progress);
}

void TrackEditor::TellStopped() {
  Tell(tr("Stopped: Everything Is As It Was"));
}

/// What came of it, and what of the playlists has been changed all the same.
void TrackEditor::TellEnd(const LibraryChanges::Outcome& outcome, const QString& done, const QString& missing,
                          const TrackLinks& links) {
  QStringList lines;
  PromptIcon icon = PromptIcon::Exclamation;
  if (outcome.stopped) {
    lines.append(outcome.done == 0
                     ? tr("Stopped: Everything Is As It Was")
                     : tr("Stopped: %n Step(s) Could Not Be Taken Back", nullptr, outcome.done));
  } else if (outcome.whole) {
    lines.append(done);
    icon = PromptIcon::Information;
  } else {
    lines.append(outcome.failure.isEmpty() ? missing
                                           : tr("It Could Not Be Done:") + kLineBreak + outcome.failure);
    if (outcome.done > 0)
      lines.append(tr("Entries Of Playlists Have Been Changed Already; Undo Brings Them Back"));
  }
  if (!links.unseen.isEmpty())
    lines.append(tr("Could Not Look Into:") + kLineBreak + links.unseen.join(kLineBreak));
  Tell(lines.join(kLineBreak), icon);
}

// Renaming.

void TrackEditor::Rename() {
  if (WhyNoChange().isEmpty()) work_ = RunRename();
}

Job<> TrackEditor::RunRename() {
  try {
    const std::optional<QString> newPath = NewPath();
    if (!newPath) {
      ShowLater();
      co_return;
    }
    const QString oldName = QFileInfo(path_).fileName();
    const QString newName = QFileInfo(*newPath).fileName();
    const QStringList question{QStringLiteral("Rename The file"), oldName, QStringLiteral("To :"), newName,
                               QStringLiteral("Continue With Rename ?")};
    const bool goOn = co_await Ask(question.join(kLineBreak));
    if (goOn) {
      const auto look = [paths = services_.paths, to = *newPath] { return NameTaken(paths, to); };
      const std::optional<bool> taken = co_await services_.disks.Look(*newPath, look);
      if (!taken) throw Failure(tr("Its disk does not answer."), 0, path_);
      if (*taken) {
        Tell(QStringLiteral("Can`t Rename As ") + kelvo::BaseName(newName) +
             QStringLiteral(" . ( Name Already Exists )  - Please Choose Another Name !"));
      } else {
        const LibraryFile file = co_await LookAt();
        const TrackLinks links = co_await FindLinks(file, QStringLiteral("ReNaming Playlist Entries "));
        if (links.stopped) {
          TellStopped();
          ShowLater();
          co_return;
        }
        const auto plan = [paths = services_.paths, file, to = *newPath, links] {
          const QString left = FindFile(TrackInfoPath(paths, kelvo::BaseName(QFileInfo(to).fileName())));
          return RenameOrder(paths, file, to, links.links, left);
        };
        LibraryChanges::Order order = co_await services_.loop.Offload(EventLoop::Lane::Apart, plan);
        const LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
        TellEnd(outcome, QStringLiteral("File Rename Was Successful"),
                QStringLiteral("Cant find file to Rename !"), links);
      }
    }
  } catch (...) {
    basHandleError(kTag, tr("%1 could not be renamed.").arg(BaseName()));
  }
  ShowLater();
}

// Deleting.

void TrackEditor::Delete() {
  if (WhyNoChange().isEmpty()) work_ = RunDelete();
}

bool TrackEditor::MayBeDeleted() {
  const QString why = services_.whyNotDeleted ? services_.whyNotDeleted(path_) : QString();
  if (!why.isEmpty()) Tell(why);
  return why.isEmpty();
}

Job<> TrackEditor::RunDelete() {
  const QString name = QFileInfo(path_).fileName();
  try {
    bool goOn = MayBeDeleted();
    const QStringList question{QStringLiteral("Delete The file"), name,
                               QStringLiteral("Continue With Delete ?")};
    if (goOn) goOn = co_await Ask(question.join(kLineBreak));
    if (goOn) {
      const LibraryFile file = co_await LookAt();
      const TrackLinks links = co_await FindLinks(file, QStringLiteral("Checking Playlists "));
      // It may have gone on air meanwhile.
      if (links.stopped) TellStopped();
      goOn = !links.stopped && MayBeDeleted();
      if (goOn) {
        LibraryChanges::Order order = DeleteOrder(file, links.links);
        const LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
        deleted_ = outcome.whole;
        if (deleted_) {
          ready_ = false;
          newName_.clear();
        }
        TellEnd(outcome, QStringLiteral("File Deleted"),
                name + QStringLiteral(" Could Not Locate File To Remove !"), links);
      }
    }
  } catch (...) {
    basHandleError(kTag, tr("%1 could not be deleted.").arg(name));
  }
  ShowLater();
}

}  // namespace kelvo

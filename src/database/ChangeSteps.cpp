#include "database/ChangeSteps.h"

#include "database/TrackInfo.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kelvo {
namespace {

constexpr qint64 kLargestFile = qint64{1} << 20;
const QString kKept = QStringLiteral("/.kelvo-deleted/");

bool Exists(const QString& path) {
  struct stat facts {};
  return ::lstat(EncodedPath(path).constData(), &facts) == 0;
}

QString FolderOf(const QString& path) {
  return QFileInfo(path).path();
}

/// Makes a change of the folder's names last. Where that can't be said to the disk, the names are there all
/// the same.
void Flush(const QString& folder) {
  const Descriptor opened(::open(EncodedPath(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.Valid() && ::fsync(opened.Number()) != 0 && errno == EIO)
    FailOn("flush the folder", EncodedPath(folder), errno);
}

/// False, with nothing done, when `to` is there.
bool Rename(const QString& from, const QString& to) {
  const QByteArray old = EncodedPath(from);
  const QByteArray fresh = EncodedPath(to);
  if (::renameat2(AT_FDCWD, old.constData(), AT_FDCWD, fresh.constData(), RENAME_NOREPLACE) != 0) {
    if (errno == EEXIST) return false;
    // Some network and user-space file systems know no such rename.
    if (errno != EINVAL && errno != ENOSYS) FailOn("rename", old, errno);
    if (Exists(to)) return false;
    if (::rename(old.constData(), fresh.constData()) != 0) FailOn("rename", old, errno);
  }
  Flush(FolderOf(to));
  return true;
}

void RemoveFile(const QString& path) {
  const QByteArray encoded = EncodedPath(path);
  if (::unlink(encoded.constData()) != 0) FailOn("remove", encoded, errno);
}

QString Inside(const Paths& paths, const QString& path) {
  const QString clean = QDir::cleanPath(path);
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    if (!paths(slot).isEmpty() && clean.startsWith(QDir::cleanPath(paths(slot)) + QLatin1Char('/')))
      return clean;
  }
  throw Failure(QStringLiteral("It does not lie in the database."), EINVAL, path);
}

StepResult Do(const Paths& paths, SetInfoLine& step, bool back, TrashBin&) {
  const QString path = TrackInfoPath(paths, step.name);
  std::optional<TrackInfo> info = ReadTrackInfo(path);
  if (!info) return StepResult::Missing;
  const QByteArray found = info->ToBytes();
  if (back) {
    if (info->Text(step.line) == step.before) return StepResult::Already;
    if (info->Text(step.line) != step.after) return StepResult::Other;
  }
  for (int line = 0; !back && line < step.references.size(); ++line)
    info->SetText(InfoLine::Line(line), step.references[line]);
  info->SetText(step.line, back ? step.before : step.after);
  if (info->ToBytes() == found) return StepResult::Already;
  WriteTrackInfo(path, *info);
  return StepResult::Done;
}

StepResult Do(const Paths& paths, SetContent& step, bool back, TrashBin&) {
  const QString path = Inside(paths, step.path);
  std::optional<QByteArray> found;
  if (Exists(path)) found = ReadWholeFile(path, kLargestFile);
  const std::optional<QByteArray> after = step.after;
  const std::optional<QByteArray>& expected = back ? after : step.before;
  const std::optional<QByteArray>& fresh = back ? step.before : after;
  if (found == fresh) return StepResult::Already;
  if (found != expected) return found ? StepResult::Other : StepResult::Missing;
  if (fresh) {
    ReplaceFile(path, *fresh);
  } else {
    RemoveFile(path);
  }
  return StepResult::Done;
}

StepResult Do(const Paths& paths, MoveEntry& step, bool back, TrashBin&) {
  const QString from = Inside(paths, back ? step.to : step.from);
  const QString to = Inside(paths, back ? step.from : step.to);
  if (!Exists(from)) return Exists(to) ? StepResult::Already : StepResult::Missing;
  return Rename(from, to) ? StepResult::Done : StepResult::Other;
}

/// Where it is kept when there is no trash.
QString KeptPlace(const QString& path) {
  return FolderOf(path) + kKept + QFileInfo(path).fileName();
}

/// The folder of what is kept, when it is empty.
void DropKeptFolder(const QString& place) {
  QDir().rmdir(FolderOf(place));
}

QString Keep(const QString& path) {
  const QString place = KeptPlace(path);
  if (!QDir().mkpath(FolderOf(place))) FailOn("make the folder", EncodedPath(FolderOf(place)), errno);
  // One change is kept: what has this name is of one that has gone.
  if (Exists(place)) QFileInfo(place).isDir() ? QDir(place).removeRecursively() : QFile::remove(place);
  if (!Rename(path, place)) FailOn("delete", EncodedPath(path), EEXIST);
  return place;
}

StepResult Discard(DiscardEntry& step, TrashBin& trash) {
  if (!Exists(step.path)) {
    // A crash came before its place was kept.
    if (step.place.isEmpty())
      step.place = Exists(KeptPlace(step.path)) ? KeptPlace(step.path) : trash.Find(step.path);
    return StepResult::Already;
  }
  if (step.folder && ::rmdir(EncodedPath(step.path).constData()) == 0) return StepResult::Done;
  const std::optional<QString> place = trash.Put(step.path);
  step.place = place ? *place : Keep(step.path);
  Flush(FolderOf(step.path));
  return StepResult::Done;
}

StepResult BringBack(const DiscardEntry& step, TrashBin& trash) {
  const bool kept = step.place == KeptPlace(step.path);
  if (Exists(step.path)) {
    if (kept) DropKeptFolder(step.place);
    return StepResult::Already;
  }
  if (kept && Exists(step.place)) {
    if (!Rename(step.place, step.path)) return StepResult::Other;
    DropKeptFolder(step.place);
    return StepResult::Done;
  }
  if (!step.place.isEmpty() && trash.TakeBack(step.place, step.path)) return StepResult::Done;
  if (step.bytes) {
    ReplaceFile(step.path, *step.bytes);
    return StepResult::Done;
  }
  return step.folder && QDir().mkpath(step.path) ? StepResult::Done : StepResult::Missing;
}

StepResult Do(const Paths& paths, DiscardEntry& step, bool back, TrashBin& trash) {
  static_cast<void>(Inside(paths, step.path));
  return back ? BringBack(step, trash) : Discard(step, trash);
}

}  // namespace

StepResult DoStep(const Paths& paths, ChangeStep& step, bool back, TrashBin& trash) {
  return std::visit([&](auto& each) { return Do(paths, each, back, trash); }, step);
}

void ForgetStep(const ChangeStep& step) {
  const auto* const discard = std::get_if<DiscardEntry>(&step);
  if (discard == nullptr || discard->place != KeptPlace(discard->path)) return;
  if (QFileInfo(discard->place).isDir()) {
    QDir(discard->place).removeRecursively();
  } else {
    QFile::remove(discard->place);
  }
  DropKeptFolder(discard->place);
}

}  // namespace kelvo

#include "platform/FileCopy.h"

#include "platform/EventLoop.h"
#include "platform/NewFile.h"
#include "platform/SystemFacts.h"

#include <QScopeGuard>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kelvo {
namespace {

/// Little enough that a stop is heard at once, much enough that no drive is slowed down.
constexpr qsizetype kBlockBytes = qsizetype{256} * 1024;

Descriptor OpenSource(const QByteArray& path, struct stat& facts) {
  // Not blocking: a pipe that lies among the files must not hold its reader for ever.
  Descriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.Valid() || ::fstat(file.Number(), &facts) != 0) FailOn("read", path, errno);
  if (S_ISDIR(facts.st_mode)) FailOn("read", path, EISDIR);
  if (!S_ISREG(facts.st_mode)) FailOn("read", path, EINVAL);
  return file;
}

/// Returns false when it was stopped.
bool CopyContent(const Descriptor& source, const QByteArray& from, NewFile& file, CopyControl& control) {
  QByteArray block(kBlockBytes, Qt::Uninitialized);
  for (;;) {
    if (control.stop) return false;
    const ssize_t some = ::read(source.Number(), block.data(), static_cast<size_t>(block.size()));
    if (some < 0 && errno == EINTR) continue;
    if (some < 0) FailOn("read", from, errno);
    if (some == 0) return true;
    file.Write(block.constData(), some);
    control.done += some;
  }
}

}  // namespace

CopyResult CopyFile(const CopyOrder& order, CopyControl& control) {
  const QByteArray from = EncodedPath(order.from);
  const QByteArray asked = EncodedPath(order.to);
  const QByteArray to = order.replace ? BehindLinks(asked) : asked;
  struct stat facts {};
  const Descriptor source = OpenSource(from, facts);
  struct stat standing {};
  if (::lstat(to.constData(), &standing) == 0) {
    if (!order.replace) return CopyResult::Existed;
    if (S_ISDIR(standing.st_mode)) FailOn("replace", to, EISDIR);
    if (standing.st_dev == facts.st_dev && standing.st_ino == facts.st_ino) FailOn("replace", to, EEXIST);
  }
  control.done = 0;
  control.total = facts.st_size;
  (void)::posix_fadvise(source.Number(), 0, 0, POSIX_FADV_SEQUENTIAL);

  NewFile file(to, 0666);
  if (!CopyContent(source, from, file, control)) return CopyResult::Stopped;
  struct stat after {};
  const bool same = ::fstat(source.Number(), &after) == 0 && after.st_size == facts.st_size &&
                    control.done == facts.st_size;
  if (!same) FailOn("read the whole of", from, EIO);
  const timespec times[2] = {{0, UTIME_OMIT}, facts.st_mtim};
  // A file system that keeps no such time still keeps the file.
  (void)::futimens(file.Number(), static_cast<const timespec*>(times));
  if (control.stop) return CopyResult::Stopped;
  const auto place = order.replace ? NewFile::Place::Replace : NewFile::Place::KeepExisting;
  return file.Commit(place) ? CopyResult::Copied : CopyResult::Existed;
}

Job<CopyResult> CopyFileLater(EventLoop& loop, CopyOrder order, std::shared_ptr<CopyControl> control) {
  auto stopWhenDropped = qScopeGuard([control] { control->stop = true; });
  const auto work = [order, control] { return CopyFile(order, *control); };
  const CopyResult result = co_await loop.Offload(EventLoop::Lane::Apart, work);
  stopWhenDropped.dismiss();
  co_return result;
}

bool HasRoomFor(const QString& folder, std::int64_t bytes) {
  const std::int64_t room = FreeBytes(folder);
  return room < 0 || room - kSpareBytes >= bytes;
}

}  // namespace kelvo

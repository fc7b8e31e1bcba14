#include "platform/AtomicFile.h"

#include "platform/NewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kelvo {

namespace {

/// The file that is to be replaced: what is there now may be.
struct Target {
  explicit Target(const QString& name);
  QByteArray path;
  struct stat old {};
  bool exists;
};

Target::Target(const QString& name) : path(BehindLinks(EncodedPath(name))) {
  exists = ::lstat(path.constData(), &old) == 0;
  if (exists && S_ISDIR(old.st_mode)) FailOn("write", path, EISDIR);
  if (exists && !S_ISREG(old.st_mode)) FailOn("write", path, EINVAL);
  // A rename would pass over the write protection that the operator gave to the file itself.
  if (exists && ::faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) != 0) FailOn("write", path, errno);
}

/// Gives the file that comes in the place of `target` its permissions.
void KeepPermissions(int file, const Target& target) {
  // A group that this user is not in cannot be kept; the permissions are worth more than that.
  const bool sameGroup = ::fchown(file, static_cast<uid_t>(-1), target.old.st_gid) == 0;
  const mode_t kept = target.old.st_mode & (sameGroup ? 07777U : 01777U);
  if (::fchmod(file, kept) != 0) FailOn("set the permissions of", target.path, errno);
}

bool Replace(const Target& target, const QByteArray& bytes, NewFile::Place place) {
  NewFile file(target.path, target.exists ? S_IRUSR | S_IWUSR : 0666);
  file.Write(bytes.constData(), bytes.size());
  if (target.exists) KeepPermissions(file.Number(), target);
  return file.Commit(place);
}

}  // namespace

void ReplaceFile(const QString& path, const QByteArray& bytes) {
  (void)Replace(Target(path), bytes, NewFile::Place::Replace);
}

bool ReplaceExistingFile(const QString& path, const QByteArray& bytes) {
  const Target target(path);
  return target.exists && Replace(target, bytes, NewFile::Place::ReplaceExisting);
}

void MoveOver(const QString& fresh, const QString& path) {
  const Target target(path);
  if (!target.exists) FailOn("replace", target.path, ENOENT);
  const QByteArray from = EncodedPath(fresh);
  const Descriptor file(::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (!file.Valid()) FailOn("read", from, errno);
  KeepPermissions(file.Number(), target);
  if (::fsync(file.Number()) != 0) FailOn("flush", from, errno);
  if (::rename(from.constData(), target.path.constData()) != 0) FailOn("replace", target.path, errno);
  FlushFolder(FolderOf(target.path));
}

void TryToReplaceFile(const QString& path) {
  const Target target(path);
  NewFile file(target.path, S_IRUSR | S_IWUSR);
  file.Write("\n", 1);
}

QByteArray ReadWholeFile(const QString& path, qint64 limit) {
  const QByteArray encoded = EncodedPath(path);
  // Not blocking: a pipe that lies among the files must not hold its reader for ever.
  const Descriptor file(::open(encoded.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.Valid()) FailOn("read", encoded, errno);
  struct stat facts {};
  if (::fstat(file.Number(), &facts) != 0) FailOn("read", encoded, errno);
  if (S_ISDIR(facts.st_mode)) FailOn("read", encoded, EISDIR);
  if (!S_ISREG(facts.st_mode)) FailOn("read", encoded, EINVAL);
  if (facts.st_size > limit) FailOn("read", encoded, EFBIG);

  // One byte more than its size finds the end in one read, unless the file grows meanwhile.
  QByteArray bytes(static_cast<qsizetype>(facts.st_size) + 1, Qt::Uninitialized);
  qsizetype filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2 + 4096);
    const ssize_t some =
        ::read(file.Number(), bytes.data() + filled, static_cast<size_t>(bytes.size() - filled));
    if (some < 0 && errno == EINTR) continue;
    if (some < 0) FailOn("read", encoded, errno);
    if (some == 0) break;
    filled += some;
    if (filled > limit) FailOn("read", encoded, EFBIG);
    // More was asked for than its size: that is the end. A size of 0 may be that of a file made up by the
    // kernel.
    if (filled == facts.st_size) break;
  }
  bytes.truncate(filled);
  return bytes;
}

}  // namespace kelvo

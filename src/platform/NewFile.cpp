#include "platform/NewFile.h"

#include "platform/ErrorLog.h"

#include <QCryptographicHash>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace kelvo {
namespace {

/// The longest name of a folder entry on the file systems of this system.
constexpr qsizetype kLongestName = 255;

/// What a symbolic link may lead through before it counts as a loop.
constexpr int kMostLinks = 40;

/// A name too long to carry the ending is replaced by its digest.
QByteArray NameBeside(const QByteArray& path) {
  const QByteArray ending = QByteArrayLiteral(".kelvo-new");
  QByteArray name = path.mid(path.lastIndexOf('/') + 1);
  if (name.size() + ending.size() + 1 > kLongestName) {
    name = QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex();
  }
  return FolderOf(path) + "/." + name + ending;
}

bool SameFile(const Descriptor& opened, const QByteArray& path) {
  struct stat ours {};
  struct stat named {};
  return ::fstat(opened.Number(), &ours) == 0 && ::lstat(path.constData(), &named) == 0 &&
         ours.st_ino == named.st_ino && ours.st_dev == named.st_dev;
}

void Lock(const Descriptor& file) {
  while (::flock(file.Number(), LOCK_EX) != 0 && errno == EINTR) {
  }
}

/// Makes the file beside, empty and locked. The lock tells a writer at work from the left-over of a killed
/// one.
Descriptor MakeBeside(const QByteArray& beside, const QByteArray& path, mode_t mode) {
  for (;;) {
    Descriptor made(::open(beside.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (made.Valid()) {
      Lock(made);
      if (SameFile(made, beside)) return made;
      continue;
    }
    if (errno != EEXIST) FailOn("write", path, errno);
    const Descriptor other(::open(beside.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (other.Valid()) {
      Lock(other);
      if (!SameFile(other, beside)) continue;
    }
    if (::unlink(beside.constData()) != 0 && errno != ENOENT) FailOn("write", path, errno);
  }
}

}  // namespace

QByteArray FolderOf(const QByteArray& path) {
  const qsizetype slash = path.lastIndexOf('/');
  if (slash < 0) return QByteArrayLiteral(".");
  return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

void FlushFolder(const QByteArray& folder) {
  const Descriptor opened(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.Valid()) return;
  if (::fsync(opened.Number()) != 0 && errno == EIO) FailOn("flush the folder", folder, errno);
}

void FailOn(const char* what, const QByteArray& path, int error) {
  const QString name = QFile::decodeName(path);
  throw Failure(
      QStringLiteral("Cannot %1 %2 : %3")
          .arg(QLatin1StringView(what), name, QString::fromStdString(std::generic_category().message(error))),
      error, name);
}

QByteArray EncodedPath(const QString& path) {
  QByteArray encoded = QFile::encodeName(path);
  if (encoded.isEmpty() || encoded.contains('\0')) FailOn("use the name", encoded, EINVAL);
  return encoded;
}

QByteArray BehindLinks(QByteArray path) {
  const QByteArray asked = path;
  for (int followed = 0; followed < kMostLinks; ++followed) {
    QByteArray target(4096, Qt::Uninitialized);
    const ssize_t length = ::readlink(path.constData(), target.data(), static_cast<size_t>(target.size()));
    if (length < 0) return path;
    target.truncate(length);
    path = target.startsWith('/') ? target : FolderOf(path) + '/' + target;
  }
  FailOn("write", asked, ELOOP);
}

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

bool Descriptor::Close() {
  return ::close(std::exchange(number_, -1)) == 0;
}

NewFile::NewFile(QByteArray target, mode_t mode)
    : target_(std::move(target)), beside_(NameBeside(target_)), file_(MakeBeside(beside_, target_, mode)) {}

NewFile::~NewFile() {
  if (!beside_.isEmpty()) ::unlink(beside_.constData());
}

void NewFile::Write(const char* bytes, qsizetype count) {
  for (qsizetype written = 0; written < count;) {
    const ssize_t some = ::write(file_.Number(), bytes + written, static_cast<size_t>(count - written));
    if (some < 0 && errno != EINTR) FailOn("write", target_, errno);
    if (some > 0) written += some;
  }
}

bool NewFile::Commit(Place place) {
  if (::fsync(file_.Number()) != 0) FailOn("flush", target_, errno);
  if (place == Place::KeepExisting) {
    if (!RenameBeside()) return false;
  } else {
    // Behind the flush, which takes as long as the disk likes.
    struct stat facts {};
    if (place == Place::ReplaceExisting && ::lstat(target_.constData(), &facts) != 0) return false;
    RenameOver();
  }
  beside_.clear();
  if (!file_.Close()) FailOn("write", target_, errno);
  FlushFolder(FolderOf(target_));
  return true;
}

void NewFile::RenameOver() {
  if (::rename(beside_.constData(), target_.constData()) != 0) FailOn("replace", target_, errno);
}

bool NewFile::RenameBeside() {
  if (::renameat2(AT_FDCWD, beside_.constData(), AT_FDCWD, target_.constData(), RENAME_NOREPLACE) == 0) {
    return true;
  }
  if (errno == EEXIST) return false;
  if (errno != EINVAL && errno != ENOSYS) FailOn("write", target_, errno);
  // Some network and user-space file systems know no such rename. A second name is never given over an
  // existing one; where there are no second names either, it is looked for just before.
  if (::link(beside_.constData(), target_.constData()) == 0) {
    ::unlink(beside_.constData());
    return true;
  }
  if (errno == EEXIST) return false;
  struct stat standing {};
  if (::lstat(target_.constData(), &standing) == 0) return false;
  RenameOver();
  return true;
}

}  // namespace kelvo

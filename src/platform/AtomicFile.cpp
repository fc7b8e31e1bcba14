#include "platform/AtomicFile.h"

#include "platform/ErrorLog.h"
#include "platform/EventLoop.h"

#include <QCryptographicHash>
#include <QFile>
#include <QScopeGuard>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

namespace kelvo {
namespace {

/// The longest name of a folder entry on the file systems of this system.
constexpr qsizetype kLongestName = 255;

/// What a symbolic link may lead through before it counts as a loop.
constexpr int kMostLinks = 40;

[[noreturn]] void Fail(const char* what, const QByteArray& path, int error) {
  const QString name = QFile::decodeName(path);
  throw Failure(
      QStringLiteral("Cannot %1 %2 : %3")
          .arg(QLatin1StringView(what), name, QString::fromStdString(std::generic_category().message(error))),
      error, name);
}

/// A file descriptor that is closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  [[nodiscard]] int Number() const { return number_; }
  [[nodiscard]] bool Valid() const { return number_ >= 0; }
  [[nodiscard]] bool Close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

QByteArray Encoded(const QString& path) {
  QByteArray encoded = QFile::encodeName(path);
  if (encoded.isEmpty() || encoded.contains('\0')) Fail("use the name", encoded, EINVAL);
  return encoded;
}

QByteArray FolderOf(const QByteArray& path) {
  const qsizetype slash = path.lastIndexOf('/');
  if (slash < 0) return QByteArrayLiteral(".");
  return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

/// The file that `path` stands for when symbolic links are followed; it need not exist.
QByteArray BehindLinks(QByteArray path) {
  const QByteArray asked = path;
  for (int followed = 0; followed < kMostLinks; ++followed) {
    QByteArray target(4096, Qt::Uninitialized);
    const ssize_t length = ::readlink(path.constData(), target.data(), static_cast<size_t>(target.size()));
    if (length < 0) return path;
    target.truncate(length);
    path = target.startsWith('/') ? target : FolderOf(path) + '/' + target;
  }
  Fail("write", asked, ELOOP);
}

/// The name that the new text of `path` bears until it is whole. The same for every replacement, so that what
/// a killed one left behind is found; a name too long to carry the ending is told by its digest.
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

/// Makes the file beside, empty and locked. The lock keeps two writers of one file apart, and tells a writer
/// at work from the left-over of a killed one.
Descriptor MakeBeside(const QByteArray& beside, const QByteArray& path, mode_t mode) {
  for (;;) {
    Descriptor made(::open(beside.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (made.Valid()) {
      Lock(made);
      if (SameFile(made, beside)) return made;
      continue;
    }
    if (errno != EEXIST) Fail("write", path, errno);
    const Descriptor other(::open(beside.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (other.Valid()) {
      Lock(other);
      if (!SameFile(other, beside)) continue;
    }
    if (::unlink(beside.constData()) != 0 && errno != ENOENT) Fail("write", path, errno);
  }
}

void WriteAll(const Descriptor& file, const QByteArray& bytes, const QByteArray& path) {
  qsizetype written = 0;
  while (written < bytes.size()) {
    const ssize_t some =
        ::write(file.Number(), bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
    if (some < 0 && errno != EINTR) Fail("write", path, errno);
    if (some > 0) written += some;
  }
}

/// Makes the change of the folder's entries last. A folder that may be written but not read cannot be
/// flushed, nor can one on some network file systems; the file itself is whole all the same.
void FlushFolder(const QByteArray& folder) {
  const Descriptor opened(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.Valid()) return;
  if (::fsync(opened.Number()) != 0 && errno == EIO) Fail("flush the folder", folder, errno);
}

}  // namespace

void ReplaceFile(const QString& path, const QByteArray& bytes) {
  const QByteArray target = BehindLinks(Encoded(path));
  struct stat old {};
  const bool exists = ::lstat(target.constData(), &old) == 0;
  if (exists && S_ISDIR(old.st_mode)) Fail("write", target, EISDIR);
  if (exists && !S_ISREG(old.st_mode)) Fail("write", target, EINVAL);
  // A rename would pass over the write protection that the operator gave to the file itself.
  if (exists && ::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
    Fail("write", target, errno);

  const QByteArray beside = NameBeside(target);
  Descriptor file = MakeBeside(beside, target, exists ? S_IRUSR | S_IWUSR : 0666);
  auto removeBeside = qScopeGuard([&beside] { ::unlink(beside.constData()); });
  WriteAll(file, bytes, target);
  if (exists) {
    // A group that this user is not in cannot be kept; the permissions are worth more than that.
    const bool sameGroup = ::fchown(file.Number(), static_cast<uid_t>(-1), old.st_gid) == 0;
    const mode_t kept = old.st_mode & (sameGroup ? 07777U : 01777U);
    if (::fchmod(file.Number(), kept) != 0) Fail("set the permissions of", target, errno);
  }
  if (::fsync(file.Number()) != 0) Fail("flush", target, errno);
  if (::rename(beside.constData(), target.constData()) != 0) Fail("replace", target, errno);
  removeBeside.dismiss();
  if (!file.Close()) Fail("write", target, errno);
  FlushFolder(FolderOf(target));
}

Job<> ReplaceFileLater(EventLoop& loop, QString path, QByteArray bytes) {
  const auto work = [path, bytes] { ReplaceFile(path, bytes); };
  co_await loop.Offload(EventLoop::Lane::Files, work);
}

QByteArray ReadWholeFile(const QString& path, qint64 limit) {
  const QByteArray encoded = Encoded(path);
  // Not blocking: a pipe that lies among the files must not hold its reader for ever.
  const Descriptor file(::open(encoded.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.Valid()) Fail("read", encoded, errno);
  struct stat facts {};
  if (::fstat(file.Number(), &facts) != 0) Fail("read", encoded, errno);
  if (S_ISDIR(facts.st_mode)) Fail("read", encoded, EISDIR);
  if (!S_ISREG(facts.st_mode)) Fail("read", encoded, EINVAL);
  if (facts.st_size > limit) Fail("read", encoded, EFBIG);

  // One byte more than its size finds the end in one read, unless the file grows meanwhile.
  QByteArray bytes(static_cast<qsizetype>(facts.st_size) + 1, Qt::Uninitialized);
  qsizetype filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2 + 4096);
    const ssize_t some =
        ::read(file.Number(), bytes.data() + filled, static_cast<size_t>(bytes.size() - filled));
    if (some < 0 && errno == EINTR) continue;
    if (some < 0) Fail("read", encoded, errno);
    if (some == 0) break;
    filled += some;
    if (filled > limit) Fail("read", encoded, EFBIG);
    // More was asked for than its size: that is the end. A size of 0 may be that of a file made up by the
    // kernel.
    if (filled == facts.st_size) break;
  }
  bytes.truncate(filled);
  return bytes;
}

}  // namespace kelvo

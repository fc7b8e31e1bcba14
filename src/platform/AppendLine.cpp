#include "platform/AppendLine.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/NewFile.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kelvo {

void AppendWholeLine(const QString& path, const QByteArray& line) {
  const QString folder = QFileInfo(path).path();
  if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  const QByteArray encoded = EncodedPath(path);
  const Descriptor file(
      ::open(encoded.constData(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
  struct stat facts {};
  if (!file.Valid() || ::fstat(file.Number(), &facts) != 0) FailOn("write", encoded, errno);
  if (!S_ISREG(facts.st_mode)) FailOn("write", encoded, EINVAL);
  char last = '\n';
  if (facts.st_size > 0 && ::pread(file.Number(), &last, 1, facts.st_size - 1) != 1)
    FailOn("read", encoded, errno);
  const QByteArray bytes = last == '\n' ? line : '\n' + line;
  for (qsizetype written = 0; written < bytes.size();) {
    const ssize_t some =
        ::write(file.Number(), bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
    if (some < 0 && errno == EINTR) continue;
    if (some < 0) {
      const int error = errno;
      // Without it the line is broken, and passed over: no worse.
      (void)!::ftruncate(file.Number(), facts.st_size);
      FailOn("write", encoded, error);
    }
    written += some;
  }
  if (::fsync(file.Number()) != 0) FailOn("flush", encoded, errno);
}

}  // namespace kelvo

#include "platform/BesideFile.h"

#include "platform/NewFile.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kelvo {

BesideFile::BesideFile(QString target)
    : path_(QFileInfo(target).path() + QStringLiteral("/.") + QFileInfo(target).fileName() +
            QStringLiteral(".kelvo-new")) {
  ::unlink(QFile::encodeName(path_).constData());
}

BesideFile::~BesideFile() {
  ::unlink(QFile::encodeName(path_).constData());
}

void BesideFile::Take(const QString& made, const QString& target) {
  const QByteArray from = EncodedPath(made);
  const Descriptor file(::open(from.constData(), O_RDONLY | O_CLOEXEC));
  if (!file.Valid() || ::fsync(file.Number()) != 0) FailOn("flush", from, errno);
  const QByteArray to = EncodedPath(target);
  if (::rename(from.constData(), to.constData()) != 0) FailOn("write", to, errno);
}

}  // namespace kelvo

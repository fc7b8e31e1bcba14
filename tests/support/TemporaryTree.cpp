#include "support/TemporaryTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace kelvo::testing {

TemporaryTree::TemporaryTree() {
  EXPECT_TRUE(folder_.isValid()) << folder_.errorString().toStdString();
}

QString TemporaryTree::Path(const QString& relative) const {
  return relative.isEmpty() ? folder_.path() : folder_.path() + QLatin1Char('/') + relative;
}

QString TemporaryTree::MakeFolder(const QString& relative) const {
  QString path = Path(relative);
  EXPECT_TRUE(QDir().mkpath(path)) << path.toStdString();
  return path;
}

QString TemporaryTree::Write(const QString& relative, const QByteArray& bytes) const {
  QString path = Path(relative);
  EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path())) << path.toStdString();
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
  EXPECT_EQ(file.write(bytes), bytes.size()) << path.toStdString();
  return path;
}

QByteArray TemporaryTree::Read(const QString& relative) const {
  QFile file(Path(relative));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
  return file.readAll();
}

bool TemporaryTree::Exists(const QString& relative) const {
  const QFileInfo info(Path(relative));
  return info.exists() || info.isSymLink();
}

}  // namespace kelvo::testing

#include "database/HalfMoved.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kelvo {
namespace {

constexpr qint64 kBlockBytes = qint64{256} * 1024;

/// Hidden: it is no file that waits.
QString FileIn(const QString& utilityFolder) {
  return utilityFolder + QStringLiteral("/.half-moved");
}

}  // namespace

HalfMoved HalfMoved::Read(const QString& utilityFolder) {
  HalfMoved half;
  const QString file = FileIn(utilityFolder);
  if (!QFileInfo::exists(file)) return half;
  QJsonObject moves;
  try {
    moves = QJsonDocument::fromJson(ReadWholeFile(file)).object();
  } catch (const Failure&) {
    return half;  // its files are asked about
  }
  for (auto move = moves.constBegin(); move != moves.constEnd(); ++move) {
    const QJsonArray facts = move.value().toArray();
    const QString fileName = facts[0].toString();
    if (fileName.contains(QLatin1Char('/')) || !QFileInfo::exists(move.key())) continue;
    half.Add(move.key(), {fileName, facts[1].toBool()});
  }
  return half;
}

void HalfMoved::Write(const QString& utilityFolder) const {
  const QString file = FileIn(utilityFolder);
  if (IsEmpty()) {
    QFile::remove(file);
    return;
  }
  QJsonObject moves;
  for (auto move = moves_.constBegin(); move != moves_.constEnd(); ++move) {
    moves.insert(move.key(), QJsonArray{move.value().fileName, move.value().replaces});
  }
  ReplaceFile(file, QJsonDocument(moves).toJson());
}

std::optional<HalfMoved::Move> HalfMoved::Find(const QString& path) const {
  const auto found = moves_.constFind(path);
  return found == moves_.constEnd() ? std::nullopt : std::optional(*found);
}

bool SameContent(const QString& one, const QString& other) {
  QFile first(one);
  QFile second(other);
  if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly)) return false;
  if (first.size() != second.size()) return false;
  while (!first.atEnd()) {
    const QByteArray block = first.read(kBlockBytes);
    if (block.isEmpty() || block != second.read(kBlockBytes)) return false;
  }
  return true;
}

}  // namespace kelvo

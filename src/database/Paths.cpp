#include "database/Paths.h"

#include "platform/ErrorLog.h"
#include "platform/Setting.h"

#include <QDir>

namespace kelvo {

Paths Paths::FromSetting(const QString& text) {
  Paths paths;
  const QStringList fields = SplitFields(text);
  const int count = static_cast<int>(std::min<qsizetype>(fields.size(), kLast));
  for (int field = 0; field < count; ++field) paths.Set(field + 1, fields[field]);
  return paths;
}

QString Paths::ToSetting() const {
  QStringList fields;
  for (int slot = kFirst; slot <= kLast; ++slot) fields.append((*this)(slot));
  return JoinFields(fields);
}

Paths Paths::Below(const QString& folder) {
  Paths paths;
  for (int slot = kFirst; slot <= kLast; ++slot) paths.Set(slot, QDir(folder).filePath(FolderName(slot)));
  return paths;
}

QString Paths::FolderName(int slot) {
  static const QStringList suffixes{
      QStringLiteral("_Playlists"), QStringLiteral("_Jingles"),    QStringLiteral("_Music files"),
      QStringLiteral("_Extra"),     QStringLiteral("_Categories"), QStringLiteral("_Artists"),
      QStringLiteral("_Albums"),    QStringLiteral("_Utility"),
  };
  return QStringLiteral("Kelvo2007") + suffixes.at(slot - kFirst);
}

QString Paths::WhyNotKept(const QString& folder) {
  if (!QDir::isAbsolutePath(folder)) return QStringLiteral("Not a whole path : %1").arg(folder);
  return {};
}

const QString& Paths::operator()(int slot) const {
  if (slot < 0 || slot >= static_cast<int>(slots_.size())) {
    throw Failure(QStringLiteral("Path %1 is outside the path table").arg(slot), 9, QStringLiteral("Paths"));
  }
  return slots_[static_cast<std::size_t>(slot)];
}

void Paths::Set(int slot, const QString& folder) {
  if (slot < 0 || slot >= static_cast<int>(slots_.size())) {
    throw Failure(QStringLiteral("Path %1 is outside the path table").arg(slot), 9, QStringLiteral("Paths"));
  }
  // A root stays "/", every other folder loses what would double the separator later.
  QString clean = folder;
  while (clean.size() > 1 && clean.endsWith(QLatin1Char('/'))) clean.chop(1);
  slots_[static_cast<std::size_t>(slot)] = clean;
}

}  // namespace kelvo

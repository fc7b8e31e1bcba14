#include "playlists/M3uList.h"

#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>
#include <QUrl>

#include <algorithm>

namespace kelvo {
namespace {

const QLatin1StringView kHead("#EXTM3U");
const QLatin1StringView kInfo("#EXTINF:");
constexpr int kMostSeconds = 1'000'000;

bool HasDrive(const QString& path) {
  return path.size() > 2 && path[0].isLetter() && path[1] == QLatin1Char(':') &&
         (path[2] == QLatin1Char('\\') || path[2] == QLatin1Char('/'));
}

bool IsAddress(const QString& path) {
  const qsizetype scheme = path.indexOf(QLatin1StringView("://"));
  return scheme > 1 && std::all_of(path.begin(), path.begin() + scheme,
                                   [](QChar letter) { return letter.isLetterOrNumber(); });
}

QString PathOf(const QString& written, const QString& folder) {
  if (written.startsWith(QLatin1StringView("file:"), Qt::CaseInsensitive)) {
    const QString local = QUrl(written).toLocalFile();
    return local.isEmpty() ? written : QDir::cleanPath(local);
  }
  if (HasDrive(written) || IsAddress(written) || written.startsWith(QLatin1StringView("\\\\"))) {
    return written;
  }
  QString path = written;
  if (!path.contains(QLatin1Char('/'))) path.replace(QLatin1Char('\\'), QLatin1Char('/'));
  // Qt would take a name with a colon in front for a resource of this program.
  const bool absolute = path.startsWith(QLatin1Char('/'));
  return QDir::cleanPath(absolute ? path : folder + QLatin1Char('/') + path);
}

/// Length and title of an information line; titles may hold commas, and lengths further properties.
void ReadInfo(const QString& info, M3uList::Entry& entry) {
  const qsizetype comma = info.indexOf(QLatin1Char(','));
  const QString length = (comma < 0 ? info : info.first(comma)).section(QLatin1Char(' '), 0, 0);
  const double seconds = Val(length);
  if (!length.isEmpty() && seconds >= 0 && seconds <= kMostSeconds) entry.seconds = static_cast<int>(seconds);
  if (comma >= 0) entry.title = info.sliced(comma + 1).trimmed();
}

/// A path that a line can't hold as it is is written as an address.
QString WrittenPath(const QString& path, const QString& folder) {
  const bool broken = path.contains(QLatin1Char('\n')) || path.contains(QLatin1Char('\r'));
  if (broken || path != path.trimmed()) {
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
  }
  const QString below = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
  if (!path.startsWith(below)) return path;
  const QString relative = path.sliced(below.size());
  const bool plain = !relative.startsWith(QLatin1Char('#')) && relative == relative.trimmed() &&
                     !relative.contains(QLatin1Char('\\')) && !relative.contains(QLatin1Char(':'));
  return plain ? relative : QStringLiteral("./") + relative;
}

QString OneLine(QString text) {
  return text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
}

}  // namespace

M3uList M3uList::FromBytes(const QByteArray& bytes, const QString& folder) {
  M3uList list;
  Entry entry;
  for (const QString& line : TextFile::FromBytes(bytes).Lines()) {
    QString written = line;
    written.remove(QChar());
    written = written.trimmed();
    if (written.startsWith(kInfo, Qt::CaseInsensitive)) {
      entry = {};
      ReadInfo(written.sliced(kInfo.size()), entry);
    } else if (!written.isEmpty() && !written.startsWith(QLatin1Char('#'))) {
      if (list.entries.size() == kMostEntries) break;
      entry.path = PathOf(written, folder);
      list.entries.push_back(std::exchange(entry, {}));
    }
  }
  return list;
}

QByteArray M3uList::ToBytes(const QString& folder) const {
  QString text = kHead + QLatin1Char('\n');
  for (const Entry& entry : entries) {
    text +=
        kInfo + QString::number(entry.seconds) + QLatin1Char(',') + OneLine(entry.title) + QLatin1Char('\n');
    text += WrittenPath(entry.path, folder) + QLatin1Char('\n');
  }
  return text.toUtf8();
}

}  // namespace kelvo

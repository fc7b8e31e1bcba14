#include "database/PlaylistEntry.h"

#include "database/FolderListing.h"
#include "database/StagedName.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/ShellLink.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDir>

#include <algorithm>
#include <tuple>

namespace kelvo {
namespace {

constexpr qint64 kLargestFile = qint64{1} << 20;
/// No path and no data of an entry is longer than this; a longer line is no field.
constexpr qsizetype kLongestField = 0xFFFF;

/// The value of a line "key = value"; none when it is another line.
std::optional<QString> ValueOf(const QString& line, QLatin1StringView key) {
  const qsizetype equals = line.indexOf(QLatin1Char('='));
  if (equals < 0 || line.first(equals).trimmed().compare(key, Qt::CaseInsensitive) != 0) return std::nullopt;
  return line.sliced(equals + 1).trimmed();
}

PlaylistLink PlainLink(const QByteArray& bytes) {
  const auto refuse = [] { throw Failure(QStringLiteral("Not a link of a playlist")); };
  if (bytes.contains('\0')) refuse();
  QStringList lines = TextFile::FromBytes(bytes).Lines();
  while (!lines.isEmpty() && lines.last().trimmed().isEmpty()) lines.removeLast();
  const bool tooLong = std::any_of(lines.begin(), lines.end(),
                                   [](const QString& line) { return line.size() > kLongestField; });
  if (lines.isEmpty() || tooLong) refuse();
  PlaylistLink link;
  bool keyed = false;
  for (const QString& line : lines) {
    if (const auto target = ValueOf(line, QLatin1StringView("TargetPath"))) {
      link.targetPath = *target;
      keyed = true;
    } else if (const auto arguments = ValueOf(line, QLatin1StringView("Arguments"))) {
      link.arguments = *arguments;
      keyed = true;
    }
  }
  if (keyed) return link;
  if (lines.size() > 2) refuse();
  return {lines.value(0).trimmed(), lines.value(1).trimmed()};
}

QString FileText(const QString& name) {
  return QString(name).replace(QLatin1Char('/'), QLatin1Char('_')).remove(QChar());
}

bool IsMusic(const QString& extension) {
  return extension == QLatin1StringView("MP3") || extension == QLatin1StringView("WAV");
}

}  // namespace

PlaylistLink PlaylistLink::FromBytes(const QByteArray& bytes) {
  if (!bytes.startsWith(QByteArrayView("\x4C\0\0\0", 4))) return PlainLink(bytes);
  const ShellLink link = ShellLink::FromBytes(bytes);
  return {link.targetPath, link.arguments};
}

PlaylistLink PlaylistLink::Read(const QString& path) {
  return FromBytes(ReadWholeFile(path, kLargestFile));
}

void PlaylistLink::Write(const QString& path) const {
  ShellLink{targetPath, arguments}.Write(path);
}

EntryFileName EntryFileName::Parse(const QString& fileName) {
  const qsizetype tilde = fileName.indexOf(QLatin1Char('~'));
  EntryFileName entry;
  entry.name = BaseName(fileName.sliced(tilde + 1));
  if (tilde < 0) return entry;
  const double number = Val(fileName.first(tilde));
  const bool usable = number >= 1 && number <= kMostNumber && number == static_cast<double>(Int(number));
  if (usable) entry.number = static_cast<int>(number);
  return entry;
}

QString EntryFileName::Saved() const {
  return FittingName(QLatin1Char(' ') + QString::number(number) + QLatin1Char('~') + FileText(name),
                     QStringLiteral(".lnk"));
}

QString EntryFileName::Renumbered() const {
  return FittingName(QString::number(number) + QLatin1Char('~') + FileText(name), QStringLiteral(".lnk"));
}

QString EntryFileName::Companion() const {
  return FittingName(FileText(name), QString::number(number) + QStringLiteral(".txt"));
}

bool IsGroupName(const QString& playlist) {
  return playlist.endsWith(kGroupSuffix, Qt::CaseInsensitive);
}

bool PlaylistEntry::IsLinkFile() const {
  return UpperExtension(file) == QLatin1StringView("LNK");
}

PlaylistFolder ReadPlaylist(const QString& folder) {
  PlaylistFolder found;
  const QStringList names = ListFolder(folder, EntryKind::Files).names;
  found.files = static_cast<int>(names.size());
  for (const QString& file : names) {
    PlaylistEntry entry{file, EntryFileName::Parse(file), {}, {}};
    if (!entry.IsLinkFile() && !IsMusic(UpperExtension(file))) continue;
    if (entry.IsLinkFile()) {
      try {
        entry.link = PlaylistLink::Read(folder + QLatin1Char('/') + file);
      } catch (const Failure&) {
        // Told as an entry that leads nowhere.
      }
    }
    if (const QString companion = entry.name.Companion(); names.contains(companion)) {
      try {
        const QByteArray bytes = ReadWholeFile(folder + QLatin1Char('/') + companion, kLargestFile);
        entry.line = TextFile::FromBytes(bytes).Line(0);
      } catch (const Failure&) {
        // As if it were missing.
      }
    }
    found.entries.push_back(std::move(entry));
  }
  const auto place = [](const PlaylistEntry& entry) {
    return entry.name.number == 0 ? EntryFileName::kMostNumber + 1 : entry.name.number;
  };
  std::stable_sort(
      found.entries.begin(), found.entries.end(),
      [&place](const PlaylistEntry& left, const PlaylistEntry& right) { return place(left) < place(right); });
  return found;
}

}  // namespace kelvo

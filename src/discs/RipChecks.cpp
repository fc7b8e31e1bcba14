#include "discs/RipChecks.h"

#include "database/FolderListing.h"
#include "database/UtilityListing.h"

#include <algorithm>

namespace kelvo {
namespace {

const QString kNewLine = QStringLiteral("\r\n");

bool AnyTicked(const RipRows& rows, const std::function<bool(const cTrack&)>& is) {
  const std::vector<int> ticked = rows.Ticked();
  return std::any_of(ticked.begin(), ticked.end(), [&](int row) { return is(rows.Row(row)); });
}

}  // namespace

QString GridError(const RipRows& rows) {
  for (const int row : rows.Ticked()) {
    const cTrack& track = rows.Row(row);
    QString column;
    if (!track.year.isEmpty() && !IsRipDate(track.year)) column = QStringLiteral(" Of Date Column");
    if (!track.artist.isEmpty() && !IsRipArtist(track.artist))
      column = QStringLiteral(" Of Artist Name Column");
    if (track.name.trimmed().isEmpty()) column = QStringLiteral(" Of Track Name Column");
    if (!column.isEmpty()) return QStringLiteral("The Error Is In Row ") + QString::number(row + 1) + column;
  }
  return {};
}

QString DefaultsQuestion(const RipRows& rows, const QString& title) {
  QStringList lines;
  if (AnyTicked(rows, [](const cTrack& track) { return track.artist.isEmpty(); })) {
    lines.append(
        QStringLiteral("1 or more Entries in Artist Columns are Empty ! (Default Artist = Unknown)"));
  }
  if (AnyTicked(rows, [](const cTrack& track) { return track.year.isEmpty(); })) {
    lines.append(QStringLiteral("1 Or More Entries In Year Columns are Empty ! (Default Date = 0000-xxx)"));
  }
  if (lines.isEmpty()) return {};
  lines.append(QStringLiteral("Would You Like ") + title +
               QStringLiteral(" To Insert Defaults into Empty Rows ?"));
  return lines.join(kNewLine);
}

bool AnyUnconventional(const RipRows& rows, int fFormat) {
  return AnyTicked(rows,
                   [fFormat](const cTrack& track) { return !IsConventionalName(track.Title(fFormat)); });
}

KnownNames KnownNames::Read(const Paths& paths) {
  KnownNames known;
  for (const QString& name : ListFolder(paths(Paths::Music), EntryKind::Files).names)
    known.music.insert(name.toUpper());
  for (const QString& path : ListUtilityFolder(paths).files)
    known.utility.insert(ReadStagedPath(path).trackName.toUpper());
  return known;
}

QString RipDbCheck(RipRows& rows, const KnownNames& known, int fFormat, const QString& ending) {
  int inMusic = 0;
  int inUtility = 0;
  for (const int row : rows.Ticked()) {
    const QString name = (rows.Row(row).Title(fFormat) + ending).toUpper();
    if (known.utility.contains(name)) {
      rows.Tick(row, false);
      rows.SetMark(row, RipMark::InUtility);
      ++inUtility;
    } else if (known.music.contains(name)) {
      rows.SetMark(row, RipMark::InDatabase);
      ++inMusic;
    } else {
      rows.SetMark(row, RipMark::None);
    }
  }
  QStringList lines;
  if (inMusic > 0) {
    lines << QString::number(inMusic) + QStringLiteral(" File/s  Already Exist In The Main Data Base")
          << QStringLiteral("These File/s Have Been Highlighted In Yellow")
          << QStringLiteral("If It Is Your Intention to Replace the Data base File/s, Click O.K.");
  }
  if (inUtility > 0) {
    lines << QString::number(inUtility) +
                 QStringLiteral(" File/s Already Existed In The Utilities Folder And Can Not Be Copied")
          << QStringLiteral("Without first Re-Naming Them !")
          << QStringLiteral("These File/s Have Been Deselected And Highlighted In Red");
  }
  if (lines.isEmpty()) return {};
  lines << QStringLiteral("Continue With Rip ?");
  return lines.join(kNewLine);
}

}  // namespace kelvo

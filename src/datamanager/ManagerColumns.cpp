#include "datamanager/ManagerColumns.h"

#include "database/ReferenceLine.h"
#include "database/TrackInfo.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {
namespace {

constexpr double kMegabyte = 1048576;

/// One of the two figures of a gain record; "?" stays what it is in both.
QString GainFigure(const QString& record, qsizetype place) {
  const QString text = record.trimmed();
  return text == QLatin1Char('?') ? text : text.split(QLatin1Char(',')).value(place);
}

/// A line of references without the system's own names.
QString Names(const QString& line) {
  QStringList names;
  for (const QStringView item : ShownItems(line)) names.append(item.toString());
  return names.join(QLatin1Char(','));
}

}  // namespace

QString DispModeText(DispMode mode) {
  switch (mode) {
    case DispMode::MusicFiles:
      return QStringLiteral("Music Files");
    case DispMode::Jingles:
      return QStringLiteral("Jingles");
    case DispMode::References:
      return QStringLiteral("References");
  }
  return {};
}

QString ManagerTexts::SizeText(std::int64_t bytes) {
  if (bytes == kSizeUnknown) return {};
  return bytes == kSizeMissing ? QStringLiteral("?") : Format000(static_cast<double>(bytes) / kMegabyte);
}

QString ManagerTexts::Path(DispMode mode, Mref row) const {
  switch (mode) {
    case DispMode::MusicFiles:
      return catalogue_.TrackPaths(row);
    case DispMode::Jingles:
      return catalogue_.SoundBitePaths.value(ToInt(row) - 1);
    case DispMode::References:
      return TrackInfoPath(paths_, catalogue_.TrackNames[row]);
  }
  return {};
}

QString ManagerTexts::FileName(DispMode mode, Mref row) const {
  switch (mode) {
    case DispMode::MusicFiles:
      return catalogue_.TrackNames[row] + catalogue_.TrackExtensions[row];
    case DispMode::Jingles:
      return QFileInfo(Path(mode, row)).fileName();
    case DispMode::References:
      return catalogue_.TrackNames[row] + QStringLiteral(".kif");
  }
  return {};
}

QString ManagerTexts::Text(DispMode mode, Mref row, ManagerColumn column, std::int64_t size) const {
  switch (column) {
    case ManagerColumn::FileName:
      return FileName(mode, row);
    case ManagerColumn::Size:
      return SizeText(size);
    case ManagerColumn::Mref:
      return QString::number(ToInt(row));
    case ManagerColumn::Path:
      // A jingle has no track info: all its other columns are blank, this one too.
      return mode == DispMode::Jingles ? QString() : Path(mode, row);
    default:
      return mode == DispMode::Jingles ? QString() : TrackText(row, column);
  }
}

QString ManagerTexts::TrackText(Mref track, ManagerColumn column) const {
  switch (column) {
    case ManagerColumn::Volume:
      return GainFigure(catalogue_.TrackGain[track], 0);
    case ManagerColumn::Change:
      return GainFigure(catalogue_.TrackGain[track], 1);
    case ManagerColumn::Bpm:
      return catalogue_.TrackBpm[track];
    case ManagerColumn::Date:
      return catalogue_.TrackDates[track];
    case ManagerColumn::Hi:
      return catalogue_.TrackHi[track];
    case ManagerColumn::Genres:
      return Names(catalogue_.TrackGenres[track]);
    case ManagerColumn::Artists:
      return Names(catalogue_.TrackArtists[track]);
    case ManagerColumn::Albums:
      return Names(catalogue_.TrackAlbums[track]);
    default:
      return {};
  }
}

}  // namespace kelvo

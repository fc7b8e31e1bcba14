#include "discs/RipRows.h"

#include "database/TrackNames.h"
#include "platform/Prompter.h"
#include "platform/Words.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr double kMegabyte = 1048576;
/// The room that the staged name leaves for an ending.
constexpr int kEndingBytes = 4;

QString DefaultName(int number) {
  return QStringLiteral("Track ") + Format00(number);
}

cTrack RowOf(const TocTrack& track, const DiscToc& toc, int fFormat) {
  cTrack row;
  row.track = track;
  row.selected = track.number > 0;
  row.artist = track.performer.isEmpty() ? toc.performer : track.performer;
  row.name = track.title.isEmpty() ? DefaultName(track.number) : track.title;
  const bool named = !track.title.isEmpty() && !row.artist.isEmpty();
  if (named && fFormat != 1) row.name = row.artist + QStringLiteral(" - ") + track.title;
  return row;
}

}  // namespace

QString CleanPart(const QString& part) {
  QString clean = part.trimmed();
  for (QChar& character : clean) {
    const bool forbidden = QStringLiteral("\\/:?*<>|#").contains(character);
    if (forbidden || character.category() == QChar::Other_Control) character = QLatin1Char('_');
  }
  if (clean.startsWith(QLatin1Char('.'))) clean[0] = QLatin1Char('_');
  return clean;
}

bool IsConventionalName(const QString& name) {
  const QString middle = QStringLiteral(" - ");
  const qsizetype place = name.indexOf(middle);
  return place > 0 && !name.left(place).trimmed().isEmpty() &&
         !name.mid(place + middle.size()).trimmed().isEmpty();
}

const QStringList& RipMonths() {
  static const QStringList months =
      QStringLiteral("xxx,Jan,Feb,Mar,Apr,May,Jun,Jul,Aug,Sep,Oct,Nov,Dec").split(QLatin1Char(','));
  return months;
}

bool IsRipDate(const QString& text) {
  return IsDate(text) && RipMonths().contains(text.mid(5));
}

bool IsRipArtist(const QString& name) {
  return !name.trimmed().isEmpty() && !name.trimmed().startsWith(QLatin1Char('~'));
}

double cTrack::Megabytes() const {
  return static_cast<double>(track.sectors) * kCdSectorBytes / kMegabyte;
}

QString cTrack::Title(int fFormat) const {
  QString title = CleanPart(name);
  if (title.isEmpty()) title = DefaultName(track.number);
  const QString singer = CleanPart(artist);
  return fFormat == 1 && !singer.isEmpty() ? singer + QStringLiteral(" - ") + title : title;
}

QString cTrack::FileName(const QString& album, int fFormat) const {
  const QString date = CleanPart(year);
  const QString record = CleanPart(album);
  QString tail;
  if (!date.isEmpty()) tail += QLatin1Char('#') + date;
  if (!record.isEmpty()) tail += QLatin1Char('#') + record + QLatin1Char('#');
  // A name that no file system takes loses letters of its title, not what stands behind it.
  const QString room(kEndingBytes, QLatin1Char('.'));
  const QString file = FittingName(Title(fFormat), tail + room).chopped(kEndingBytes);
  const QString folder = FittingName(CleanPart(artist));
  return folder.isEmpty() ? file : folder + QLatin1Char('/') + file;
}

QString RipRows::Text(const cTrack& row, Column column) {
  switch (column) {
    case Name:
      return row.name;
    case Artist:
      return row.artist;
    case Year:
      return row.year;
    case Track:
      return QString::number(row.track.number);
    case StartTime:
      return MinutesSeconds(static_cast<double>(row.track.first) / kCdSectorsPerSecond);
    case Length:
      return MinutesSeconds(row.track.Seconds());
    case Size:
      return Format000(row.Megabytes()) + QStringLiteral("MB");
    case Selected:
    case ColumnCount:
      break;
  }
  return {};
}

std::vector<int> RipRows::Ticked() const {
  std::vector<int> ticked;
  for (int row = 0; row < Count(); ++row) {
    if (Row(row).selected) ticked.push_back(row);
  }
  return ticked;
}

void RipRows::Fill(const DiscToc& toc, int fFormat) {
  std::vector<cTrack> rows;
  if (const std::optional<TocTrack> hidden = toc.Hidden()) rows.push_back(RowOf(*hidden, toc, fFormat));
  for (const TocTrack& track : toc.tracks) {
    if (track.audio) rows.push_back(RowOf(track, toc, fFormat));
  }
  rows_.Replace(std::move(rows));
  Q_EMIT TicksChanged();
}

bool RipRows::Accepts(Column column, const QString& text) {
  QString refusal;
  if (column == Artist && !text.isEmpty() && !IsRipArtist(text))
    refusal = QStringLiteral("Please Select Or Enter a Valid Artist Name");
  if (column == Year && !text.isEmpty() && !IsRipDate(text))
    refusal = QStringLiteral("Dates Must Be Entered in the form YYYY-mmm (Eg: 2005-Dec)");
  if (!refusal.isEmpty()) prompter_.Tell({refusal, {}});
  return refusal.isEmpty();
}

void RipRows::Put(int row, Column column, const QString& text) {
  rows_.Alter(row, [column, &text](cTrack& each) {
    QString& cell = column == Name ? each.name : column == Artist ? each.artist : each.year;
    if (cell == text) return;
    cell = text;
    each.mark = RipMark::None;
    each.words.clear();
  });
}

bool RipRows::SetText(int row, Column column, const QString& text) {
  const QString typed = text.trimmed();
  if (row < 0 || row >= Count() || !Editable(column) || !Accepts(column, typed)) return false;
  Put(row, column, typed);
  return true;
}

void RipRows::Tick(int row, bool on) {
  if (row < 0 || row >= Count() || Row(row).selected == on) return;
  rows_.Alter(row, [on](cTrack& each) { each.selected = on; });
  Q_EMIT TicksChanged();
}

void RipRows::TickAll() {
  for (int row = 0; row < Count(); ++row) Tick(row, true);
}

void RipRows::Invert() {
  for (int row = 0; row < Count(); ++row) Tick(row, !Row(row).selected);
}

bool RipRows::FillTicked(Column column, const QString& text) {
  const QString typed = text.trimmed();
  if (column == Artist && typed.isEmpty()) {
    prompter_.Tell({QStringLiteral("Please Select Or Enter a Valid Artist Name"), {}});
    return false;
  }
  if (!Accepts(column, typed)) return false;
  for (const int row : Ticked()) Put(row, column, typed);
  return true;
}

void RipRows::InsertDefaults() {
  for (const int row : Ticked()) {
    if (Row(row).artist.isEmpty()) Put(row, Artist, QStringLiteral("Unknown"));
    if (Row(row).year.isEmpty()) Put(row, Year, QStringLiteral("0000-xxx"));
  }
}

void RipRows::SetMark(int row, RipMark mark, const QString& words) {
  if (row < 0 || row >= Count()) return;
  rows_.Alter(row, [mark, &words](cTrack& each) {
    each.mark = mark;
    each.words = words;
  });
}

}  // namespace kelvo

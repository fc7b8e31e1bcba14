#include "database/TransferRows.h"

#include "audio/SoundLook.h"
#include "database/GenreNames.h"
#include "database/MediaSearch.h"
#include "database/SafeFileName.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;
const QString kUnknown = QStringLiteral("Unknown");

bool IsReference(int column) {
  return column == TransferRows::Artist || column == TransferRows::Album || column == TransferRows::Category;
}

QString TypedDate(QString text) {
  // A line end in it would be one in the track info file.
  text.removeIf([](QChar each) { return each.category() == QChar::Other_Control; });
  return text.trimmed().isEmpty() ? kNoDate : text.trimmed();
}

/// What a file name tells as its date, if it is one.
QString StagedDate(const QString& text) {
  const QString date = TypedDate(text);
  const bool isDate = date.size() == 8 && date[4] == QLatin1Char('-') &&
                      std::all_of(date.begin(), date.begin() + 4, [](QChar each) { return each.isDigit(); });
  return isDate ? date : kNoDate;
}

}  // namespace

QString ReferenceName(const QString& text) {
  const QString name = SafeFileName(text);
  if (name == kUnknown || IsInternalName(name)) return {};
  return FittingName(name);
}

TransferRow RowOf(const QString& path, qint64 bytes, const TrackTags& tags) {
  const StagedFile file = ReadStagedPath(path);
  TransferRow row;
  row.path = path;
  row.bytes = bytes;
  row.trackName = file.trackName;
  row.artist = ReferenceName(tags.artist.isEmpty() ? file.name.artist : tags.artist);
  row.album = ReferenceName(file.name.album);
  if (row.album.isEmpty()) row.album = ReferenceName(tags.album);
  if (tags.genre >= 0) row.category = ReferenceName(GenreName(tags.genre));
  row.date = StagedDate(file.name.date);
  if (row.date == kNoDate && !tags.year.isEmpty()) row.date = tags.year + QStringLiteral("-xxx");
  row.bpm = tags.bpm;
  return row;
}

TransferRow ReadTransferRow(const QString& path) {
  TransferRow row = RowOf(path, QFileInfo(path).size(), ReadTrackTags(path));
  row.trouble = IsMediaName(path) ? WhyNotPlayable(path) : QStringLiteral("The file is no Mp3 or Wav file.");
  return row;
}

int TransferRows::IndexOf(int id) const {
  const auto found =
      std::find_if(All().begin(), All().end(), [id](const TransferRow& row) { return row.id == id; });
  return found == All().end() ? -1 : static_cast<int>(found - All().begin());
}

const TransferRow* TransferRows::Find(int id) const {
  const int index = IndexOf(id);
  return index < 0 ? nullptr : &rows_[index];
}

void TransferRows::Clear() {
  rows_.Replace({});
}

void TransferRows::Append(std::vector<TransferRow> rows) {
  for (TransferRow& row : rows) row.id = ++lastId_;
  rows_.Append(std::move(rows));
}

void TransferRows::Remove(const QString& path) {
  const std::vector<TransferRow>& rows = rows_.All();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&path](const TransferRow& row) { return row.path == path; });
  if (found != rows.end()) rows_.Remove(static_cast<int>(found - rows.begin()));
}

void TransferRows::SetTaken(int id, bool taken) {
  const int index = IndexOf(id);
  if (index >= 0) rows_.Alter(index, [taken](TransferRow& row) { row.taken = taken; });
}

void TransferRows::SetTrouble(int id, const QString& trouble) {
  const int index = IndexOf(id);
  if (index >= 0) rows_.Alter(index, [&trouble](TransferRow& row) { row.trouble = trouble; });
}

TransferRows::Choice TransferRows::ChoiceOf(int column) const {
  const auto choice = [](const QString& words, QStringList names) {
    names.removeIf(IsInternalName);
    return Choice{words, std::move(names)};
  };
  switch (column) {
    case Artist:
      return choice(QStringLiteral("Extracting Artist Names"), catalogue_.ArtistList);
    case Album:
      return choice(QStringLiteral("Extracting Album Names"), catalogue_.AlbumList);
    case Category:
      return choice(QStringLiteral("Extracting Genre Names"), catalogue_.GenreList);
    default:
      return {};
  }
}

QString TransferRows::Text(const TransferRow& row, Column column) {
  switch (column) {
    case Track:
      return row.trackName;
    case Size:
      return Format000(static_cast<double>(row.bytes) / kMegabyte);
    case Artist:
      return row.artist;
    case Album:
      return row.album;
    case Category:
      return row.category;
    case Date:
      return row.date;
  }
  return {};
}

QString TransferRows::Shown(const TransferRow& row, Column column) {
  if (row.taken && (column == Artist || column == Album || column == Date)) return QStringLiteral("?");
  const QString text = Text(row, column);
  return text.isEmpty() && IsReference(column) ? kUnknown : text;
}

bool TransferRows::SetText(int row, Column column, const QString& text) {
  if (locked_) return false;
  rows_.Alter(row, [column, &text](TransferRow& each) {
    switch (column) {
      case Artist:
        each.artist = ReferenceName(text);
        break;
      case Album:
        each.album = ReferenceName(text);
        break;
      case Category:
        each.category = ReferenceName(text);
        break;
      case Date:
        each.date = TypedDate(text);
        break;
      case Track:
      case Size:
        break;
    }
  });
  return true;
}

}  // namespace kelvo

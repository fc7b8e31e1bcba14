#include "database/TransferRows.h"

#include "database/GenreNames.h"
#include "database/SafeFileName.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvo {
namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;
const QString kUnknown = QStringLiteral("Unknown");
const QString kNoDate = QStringLiteral("0000-xxx");

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
  if (name == kUnknown || name.startsWith(QLatin1Char('~'))) return {};
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
  return row;
}

TransferRow ReadTransferRow(const QString& path) {
  return RowOf(path, QFileInfo(path).size(), ReadTrackTags(path));
}

int TransferRows::IndexOf(int id) const {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [id](const TransferRow& row) { return row.id == id; });
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

const TransferRow* TransferRows::Find(int id) const {
  const int index = IndexOf(id);
  return index < 0 ? nullptr : &rows_[static_cast<std::size_t>(index)];
}

void TransferRows::Clear() {
  beginResetModel();
  rows_.clear();
  endResetModel();
}

void TransferRows::Append(std::vector<TransferRow> rows) {
  if (rows.empty()) return;
  const int first = static_cast<int>(rows_.size());
  beginInsertRows({}, first, first + static_cast<int>(rows.size()) - 1);
  for (TransferRow& row : rows) row.id = ++lastId_;
  std::move(rows.begin(), rows.end(), std::back_inserter(rows_));
  endInsertRows();
}

void TransferRows::Remove(const QString& path) {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [&path](const TransferRow& row) { return row.path == path; });
  if (found == rows_.end()) return;
  const int index = static_cast<int>(found - rows_.begin());
  beginRemoveRows({}, index, index);
  rows_.erase(found);
  endRemoveRows();
}

void TransferRows::SetTaken(int id, bool taken) {
  const int row = IndexOf(id);
  if (row < 0) return;
  rows_[static_cast<std::size_t>(row)].taken = taken;
  Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

TransferRows::Choice TransferRows::ChoiceOf(int column) const {
  const auto choice = [](const QString& words, QStringList names) {
    names.removeIf([](const QString& name) { return name.startsWith(QLatin1Char('~')); });
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

int TransferRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}
int TransferRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QString TransferRows::Text(const TransferRow& row, int column) {
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
    default:
      return {};
  }
}

QVariant TransferRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const TransferRow& row = rows_[static_cast<std::size_t>(index.row())];
  const int column = index.column();
  if (role == Qt::TextAlignmentRole && column == Size) {
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role == Qt::ToolTipRole && column == Track) return row.path;
  if (role == Qt::EditRole) return Text(row, column);
  if (role != Qt::DisplayRole) return {};
  if (row.taken && (column == Artist || column == Album || column == Date)) return QStringLiteral("?");
  const QString text = Text(row, column);
  return text.isEmpty() && IsReference(column) ? kUnknown : text;
}

bool TransferRows::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid() || !(flags(index) & Qt::ItemIsEditable)) return false;
  TransferRow& row = rows_[static_cast<std::size_t>(index.row())];
  const QString text = value.toString();
  switch (index.column()) {
    case Artist:
      row.artist = ReferenceName(text);
      break;
    case Album:
      row.album = ReferenceName(text);
      break;
    case Category:
      row.category = ReferenceName(text);
      break;
    default:
      row.date = TypedDate(text);
  }
  Q_EMIT dataChanged(index, index);
  return true;
}

QVariant TransferRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static const QStringList heads{QStringLiteral("Track Name"), QStringLiteral("Size (MB)"),
                                 QStringLiteral("Artist"),     QStringLiteral("Album"),
                                 QStringLiteral("Category"),   QStringLiteral("Date")};
  return heads.value(section);
}

Qt::ItemFlags TransferRows::flags(const QModelIndex& index) const {
  const Qt::ItemFlags base = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
  const bool editable =
      index.isValid() && !locked_ && (IsReference(index.column()) || index.column() == Date);
  return editable ? base | Qt::ItemIsEditable : base;
}

}  // namespace kelvo

#include "console/windows/LibraryModel.h"

#include "console/windows/TrackMime.h"

#include <QMimeData>

#include <algorithm>

namespace kelvo {

LibraryModel::LibraryModel(const LibraryBrowser& browser, const Catalogue& catalogue, QObject* parent)
    : QAbstractTableModel(parent), browser_(browser), catalogue_(catalogue), tracks_(browser.Rows()) {
  connect(&browser, &LibraryBrowser::RowsReset, this, [this] { Reset(); });
  connect(&browser, &LibraryBrowser::RowsAdded, this, [this] { Append(); });
  connect(&browser, &LibraryBrowser::RowsSorted, this, [this] { Reorder(); });
  connect(&browser, &LibraryBrowser::RowsRenumbered, this, [this] { tracks_ = browser_.Rows(); });
  connect(&browser, &LibraryBrowser::RowRemoved, this, [this](int row) {
    beginRemoveRows({}, row, row);
    tracks_.erase(tracks_.begin() + row);
    endRemoveRows();
  });
  connect(&browser, &LibraryBrowser::RowChanged, this,
          [this](int row) { Q_EMIT dataChanged(index(row, 0), index(row, kLibraryColumns - 1)); });
}

void LibraryModel::Reset() {
  beginResetModel();
  tracks_ = browser_.Rows();
  endResetModel();
}

void LibraryModel::Append() {
  const std::vector<Mref>& rows = browser_.Rows();
  if (rows.size() <= tracks_.size()) return;
  beginInsertRows({}, static_cast<int>(tracks_.size()), static_cast<int>(rows.size()) - 1);
  tracks_.insert(tracks_.end(), rows.begin() + static_cast<std::ptrdiff_t>(tracks_.size()), rows.end());
  endInsertRows();
}

void LibraryModel::Reorder() {
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const std::vector<Mref> before = std::exchange(tracks_, browser_.Rows());
  std::vector<int> rowOf(static_cast<std::size_t>(catalogue_.LastTrack()) + 1, -1);
  for (std::size_t row = 0; row < tracks_.size(); ++row)
    rowOf[static_cast<std::size_t>(tracks_[row])] = static_cast<int>(row);
  const QModelIndexList kept = persistentIndexList();
  QModelIndexList moved;
  moved.reserve(kept.size());
  for (const QModelIndex& each : kept) {
    const Mref track = before[static_cast<std::size_t>(each.row())];
    moved.append(index(rowOf[static_cast<std::size_t>(track)], each.column()));
  }
  changePersistentIndexList(kept, moved);
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int LibraryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(tracks_.size());
}
int LibraryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kLibraryColumns;
}

QVariant LibraryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Mref track = TrackAt(index.row());
  const auto column = static_cast<LibraryColumn>(index.column());
  if (role == Qt::TextAlignmentRole &&
      (column == LibraryColumn::Bpm || column == LibraryColumn::Hi || column == LibraryColumn::Time)) {
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role == Qt::ToolTipRole && column == LibraryColumn::Track) return catalogue_.TrackPaths(track);
  if (role != Qt::DisplayRole) return {};
  return LibraryText(catalogue_, track, column);
}

QVariant LibraryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static const QStringList heads{QStringLiteral("Track"),      QStringLiteral("Date"), QStringLiteral("Hi"),
                                 QStringLiteral("Bpm"),        QStringLiteral("path"), QStringLiteral("Mref"),
                                 QStringLiteral("Main Genre"), QStringLiteral("Time")};
  return heads.value(section);
}

Qt::ItemFlags LibraryModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags base = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
  return index.isValid() ? base | Qt::ItemIsDragEnabled : base;
}

QStringList LibraryModel::mimeTypes() const {
  return {kTracksMime};
}

QMimeData* LibraryModel::mimeData(const QModelIndexList& indexes) const {
  std::vector<Mref> tracks;
  for (const QModelIndex& index : indexes) {
    if (index.column() == static_cast<int>(LibraryColumn::Track)) tracks.push_back(TrackAt(index.row()));
  }
  if (tracks.empty()) return nullptr;
  auto data = std::make_unique<QMimeData>();
  data->setData(kTracksMime, TracksToMime(tracks));
  return data.release();
}

QModelIndexList LibraryModel::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                    Qt::MatchFlags flags) const {
  if (role != Qt::DisplayRole || !flags.testFlag(Qt::MatchStartsWith) || !start.isValid())
    return QAbstractTableModel::match(start, role, value, hits, flags);
  const QByteArray typed = value.toString().toUtf8();
  for (int step = 0; step < rowCount(); ++step) {
    const int row = (start.row() + step) % rowCount();
    const std::string_view name = catalogue_.TrackNames.Utf8(TrackAt(row));
    const auto size = std::min<qsizetype>(typed.size(), static_cast<qsizetype>(name.size()));
    if (size == typed.size() && qstrnicmp(typed.constData(), size, name.data(), size) == 0)
      return {index(row, start.column())};
  }
  return {};
}

}  // namespace kelvo

#include "console/windows/LibraryModel.h"

#include "console/windows/TrackMime.h"
#include "platform/Words.h"

#include <QMimeData>

namespace kelvo {

LibraryModel::LibraryModel(const Catalogue& catalogue, QObject* parent)
    : QAbstractTableModel(parent), catalogue_(catalogue) {}

void LibraryModel::Show(std::vector<Mref> tracks) {
  beginResetModel();
  tracks_ = std::move(tracks);
  endResetModel();
}

int LibraryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(tracks_.size());
}
int LibraryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant LibraryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Mref track = TrackAt(index.row());
  if (role == Qt::TextAlignmentRole &&
      (index.column() == Bpm || index.column() == Hi || index.column() == Time)) {
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role == Qt::ToolTipRole && index.column() == Track) return catalogue_.TrackPaths(track);
  if (role != Qt::DisplayRole) return {};
  switch (index.column()) {
    case Track:
      return ProperCase(catalogue_.TrackNames[track]);
    case Time:
      return MinutesSeconds(catalogue_.TrackDurations(track));
    case Bpm:
      return catalogue_.TrackBpm[track];
    case Hi:
      return catalogue_.TrackHi[track];
    case Date:
      return catalogue_.TrackDates[track];
    case Genre:
      return catalogue_.MainGenre(track);
    default:
      return {};
  }
}

QVariant LibraryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static const QStringList heads{QStringLiteral("Track"), QStringLiteral("Time"),
                                 QStringLiteral("Bpm"),   QStringLiteral("Hi"),
                                 QStringLiteral("Date"),  QStringLiteral("Main Genre")};
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
    if (index.column() == Track) tracks.push_back(TrackAt(index.row()));
  }
  if (tracks.empty()) return nullptr;
  auto data = std::make_unique<QMimeData>();
  data->setData(kTracksMime, TracksToMime(tracks));
  return data.release();
}

}  // namespace kelvo

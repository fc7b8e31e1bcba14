#include "datamanager/windows/SearchModel.h"

#include "database/ReferenceLine.h"
#include "platform/Words.h"

namespace kelvo {

SearchModel::SearchModel(const TrackSearch& search, const Catalogue& catalogue, QObject* parent)
    : QAbstractTableModel(parent), search_(search), catalogue_(catalogue) {
  connect(&search, &TrackSearch::ResultsCleared, this, [this] {
    beginResetModel();
    rows_ = 0;
    endResetModel();
  });
  connect(&search, &TrackSearch::ResultsAdded, this, [this](int first) {
    const auto count = static_cast<int>(search_.Results().size());
    beginInsertRows({}, first, count - 1);
    rows_ = count;
    endInsertRows();
  });
  connect(&search, &TrackSearch::ResultAboutToBeRemoved, this,
          [this](int row) { beginRemoveRows({}, row, row); });
  connect(&search, &TrackSearch::ResultRemoved, this, [this] {
    --rows_;
    endRemoveRows();
  });
  connect(&search, &TrackSearch::ResultChanged, this,
          [this](int row) { Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1)); });
}

int SearchModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}
int SearchModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QString SearchModel::TextOf(Mref track, int column) const {
  switch (column) {
    case Track:
      return search_.ShownName(track);
    case Artist:
      return FirstReference(catalogue_.TrackArtists[track]);
    case Album:
      return FirstReference(catalogue_.TrackAlbums[track]);
    case Category:
      return FirstReference(catalogue_.TrackGenres[track]);
    case Date:
      return catalogue_.TrackDates[track];
    case Hi:
      return catalogue_.TrackHi[track];
    case Bpm:
      return catalogue_.TrackBpm[track];
    case Time:
      return LengthText(catalogue_.TrackDurations(track));
    default:
      return QString::number(ToInt(track));
  }
}

QVariant SearchModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Mref track = search_.Results()[static_cast<std::size_t>(index.row())];
  if (role == Qt::DisplayRole) return TextOf(track, index.column());
  if (role == Qt::ToolTipRole && index.column() == Track) return catalogue_.TrackPaths(track);
  if (role == Qt::TextAlignmentRole && index.column() >= Hi)
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  return {};
}

QVariant SearchModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static const QStringList heads{
      QStringLiteral("Track"),    QStringLiteral("Artist"), QStringLiteral("Album"),
      QStringLiteral("Category"), QStringLiteral("Date"),   QStringLiteral("Hi"),
      QStringLiteral("Bpm"),      QStringLiteral("Time"),   QStringLiteral("Mref")};
  return heads.value(section);
}

}  // namespace kelvo

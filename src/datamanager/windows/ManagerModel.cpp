#include "datamanager/windows/ManagerModel.h"

namespace kelvo {
namespace {

std::vector<ColumnLook> Looks() {
  return {{.head = QStringLiteral("File Name"), .letters = 26},
          {.head = QStringLiteral("Mb's"), .letters = 7, .rank = 5, .number = true},
          {.head = QStringLiteral("Vol"), .letters = 6, .rank = 1, .number = true},
          {.head = {}, .letters = 6, .rank = 2, .number = true},
          {.head = QStringLiteral("path"), .letters = 24, .rank = 10, .path = true},
          {.head = QStringLiteral("BPM"), .letters = 6, .rank = 3, .number = true},
          {.head = QStringLiteral("Year - Mth"), .letters = 12, .rank = 4},
          {.head = QStringLiteral("Hi"), .letters = 5, .rank = 6, .number = true},
          {.head = {}, .letters = 14, .rank = 7},
          {.head = QStringLiteral("AR"), .letters = 12, .rank = 8},
          {.head = QStringLiteral("AL"), .letters = 12, .rank = 9},
          {.head = QStringLiteral("mref"), .letters = 7, .rank = 11, .number = true}};
}

/// What a heading stands for, also where it is blank.
QString HeadWords(ManagerColumn column) {
  switch (column) {
    case ManagerColumn::FileName:
      return ManagerModel::tr("File name");
    case ManagerColumn::Size:
      return ManagerModel::tr("Size in megabytes");
    case ManagerColumn::Volume:
      return ManagerModel::tr("Volume, as measured");
    case ManagerColumn::Change:
      return ManagerModel::tr("Change of the volume");
    case ManagerColumn::Path:
      return ManagerModel::tr("Full path");
    case ManagerColumn::Bpm:
      return ManagerModel::tr("Beats per minute");
    case ManagerColumn::Date:
      return ManagerModel::tr("Year and month");
    case ManagerColumn::Hi:
      return ManagerModel::tr("Highest chart position");
    case ManagerColumn::Genres:
      return ManagerModel::tr("Genres");
    case ManagerColumn::Artists:
      return ManagerModel::tr("Artists");
    case ManagerColumn::Albums:
      return ManagerModel::tr("Albums");
    case ManagerColumn::Mref:
      return ManagerModel::tr("Number of the row");
  }
  return {};
}

}  // namespace

ManagerModel::ManagerModel(TrackList& list) : RowModelBase(list, Looks()), list_(list) {
  connect(&list_, &TrackList::RowsAboutToBeSorted, this,
          [this] { Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint); });
  connect(&list_, &TrackList::RowsSorted, this, &ManagerModel::Reorder);
}

void ManagerModel::Reorder(const std::vector<int>& rowNow) {
  const QModelIndexList kept = persistentIndexList();
  QModelIndexList moved;
  moved.reserve(kept.size());
  for (const QModelIndex& each : kept)
    moved.append(index(rowNow[static_cast<std::size_t>(each.row())], each.column()));
  changePersistentIndexList(kept, moved);
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QString ManagerModel::Text(int row, int column) const {
  return list_.Text(row, static_cast<ManagerColumn>(column));
}

QVariant ManagerModel::Other(int row, int column, int role) const {
  if (role == Qt::ToolTipRole) return QStringLiteral("Double Click to select single track");
  Q_UNUSED(row)
  Q_UNUSED(column)
  return {};
}

QVariant ManagerModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool words = role == Qt::ToolTipRole || role == Qt::AccessibleTextRole;
  if (orientation == Qt::Horizontal && words) return HeadWords(static_cast<ManagerColumn>(section));
  return RowModelBase::headerData(section, orientation, role);
}

QModelIndexList ManagerModel::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                    Qt::MatchFlags flags) const {
  if (role != Qt::DisplayRole || !flags.testFlag(Qt::MatchStartsWith))
    return RowModelBase::match(start, role, value, hits, flags);
  const int row = list_.RowBeginning(value.toString(), start.row());
  return row < 0 ? QModelIndexList() : QModelIndexList{index(row, std::max(start.column(), 0))};
}

}  // namespace kelvo

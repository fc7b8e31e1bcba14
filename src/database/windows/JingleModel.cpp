#include "database/windows/JingleModel.h"

namespace kelvo {

JingleModel::JingleModel(JingleImport& jingles, QObject* parent)
    : QAbstractTableModel(parent), jingles_(jingles) {
  connect(&jingles_, &JingleImport::RowsAboutToBeAdded, this,
          [this](int first, int last) { beginInsertRows({}, first, last); });
  connect(&jingles_, &JingleImport::RowsAdded, this, [this] { endInsertRows(); });
  connect(&jingles_, &JingleImport::RowsAboutToBeRemoved, this,
          [this](int first, int last) { beginRemoveRows({}, first, last); });
  connect(&jingles_, &JingleImport::RowsRemoved, this, [this] { endRemoveRows(); });
  connect(&jingles_, &JingleImport::RowChanged, this,
          [this](int row) { Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1)); });
}

int JingleModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : jingles_.Count();
}
int JingleModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant JingleModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= jingles_.Count()) return {};
  const JingleRow& row = jingles_.Row(index.row());
  if (role == Qt::ToolTipRole) return row.path;
  if (role == Qt::TextAlignmentRole && index.column() == SizeColumn) {
    return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) return {};
  if (index.column() == NameColumn) return row.name;
  return index.column() == SizeColumn ? row.SizeText() : row.path;
}

QVariant JingleModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case NameColumn:
      return tr("File");
    case SizeColumn:
      return tr("Size (MB)");
    default:
      return tr("Path");
  }
}

}  // namespace kelvo

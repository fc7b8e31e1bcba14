#include "database/windows/ScanModel.h"

#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

namespace kelvo {
namespace {

const QColor kYellow(0xF0, 0xC8, 0x1E);
const QColor kRed(0xB4, 0x1E, 0x28);

QVariant GroundOf(ScanMark mark) {
  if (mark == ScanMark::InDatabase) return kYellow;
  if (mark == ScanMark::InUtility) return kRed;
  return {};
}

QVariant InkOf(ScanMark mark) {
  if (mark == ScanMark::Copied) return Theme::Palette().ready;
  const QVariant ground = GroundOf(mark);
  return ground.isValid() ? Theme::TextOn(ground.value<QColor>()) : QVariant();
}

/// A shape beside the colour, for those who can't tell red from yellow.
QVariant IconOf(ScanMark mark) {
  static const QIcon database = ScalableIcon(Icon::Warning, Theme::TextOn(kYellow));
  static const QIcon utility = ScalableIcon(Icon::Critical, Theme::TextOn(kRed));
  static const QIcon copied = ScalableIcon(Icon::Check, Theme::Palette().ready);
  switch (mark) {
    case ScanMark::None:
      return {};
    case ScanMark::InDatabase:
      return database;
    case ScanMark::InUtility:
      return utility;
    case ScanMark::Copied:
      return copied;
  }
  return {};
}

}  // namespace

ScanModel::ScanModel(ScanRows& rows, QObject* parent) : QAbstractTableModel(parent), rows_(rows) {
  connect(&rows_, &ScanRows::RowsAboutToBeAdded, this,
          [this](int first, int last) { beginInsertRows({}, first, last); });
  connect(&rows_, &ScanRows::RowsAdded, this, [this] { endInsertRows(); });
  connect(&rows_, &ScanRows::RowsAboutToBeRemoved, this,
          [this](int first, int last) { beginRemoveRows({}, first, last); });
  connect(&rows_, &ScanRows::RowsRemoved, this, [this] { endRemoveRows(); });
  connect(&rows_, &ScanRows::RowsChanged, this, [this](int first, int last) {
    Q_EMIT dataChanged(index(first, 0), index(last, ScanColumnCount - 1));
  });
}

int ScanModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_.Count();
}
int ScanModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ScanColumnCount;
}

QVariant ScanModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rows_.Count()) return {};
  const ScanRow& row = rows_.Row(index.row());
  const auto column = static_cast<ScanColumn>(index.column());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return row.Text(column);
    case Qt::ToolTipRole: {
      const QString words = WordsOf(row.mark);
      return words.isEmpty() ? row.Text(ScanPathColumn)
                             : row.Text(ScanPathColumn) + QLatin1Char('\n') + words;
    }
    case Qt::AccessibleDescriptionRole:
      return WordsOf(row.mark);
    case Qt::BackgroundRole:
      return GroundOf(row.mark);
    case Qt::ForegroundRole:
      return InkOf(row.mark);
    case Qt::DecorationRole:
      return column == ScanTitleColumn ? IconOf(row.mark) : QVariant();
    default:
      return {};
  }
}

bool ScanModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::EditRole) return false;
  const auto column = static_cast<ScanColumn>(index.column());
  return rows_.SetText(index.row(), column, value.toString());
}

QVariant ScanModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return HeadOf(static_cast<ScanColumn>(section));
}

Qt::ItemFlags ScanModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags base = QAbstractTableModel::flags(index);
  const bool editable = index.isValid() && ScanRows::Editable(static_cast<ScanColumn>(index.column()));
  return editable ? base | Qt::ItemIsEditable : base;
}

QString ScanModel::HeadOf(ScanColumn column) {
  switch (column) {
    case ScanTitleColumn:
      return QStringLiteral("Track Title");
    case ScanArtistColumn:
      return QStringLiteral("Artist");
    case ScanDateColumn:
      return QStringLiteral("Date");
    case ScanCommentsColumn:
      return QStringLiteral("Comments");
    case ScanFolderColumn:
      return QStringLiteral("From Folder");
    case ScanPathColumn:
      return QStringLiteral("Path");
    case ScanColumnCount:
      break;
  }
  return {};
}

QString ScanModel::WordsOf(ScanMark mark) {
  switch (mark) {
    case ScanMark::None:
      return {};
    case ScanMark::InDatabase:
      return tr(
          "Yellow: a track of this name is in the main data base. Import it again to replace that one.");
    case ScanMark::InUtility:
      return tr("Red: a track of this name waits in the utilities folder. Rename this one to import it.");
    case ScanMark::Copied:
      return tr("Copied to the utilities folder.");
  }
  return {};
}

}  // namespace kelvo

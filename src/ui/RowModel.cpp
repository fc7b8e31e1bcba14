#include "ui/RowModel.h"

#include <QMimeData>
#include <QTextDocument>

#include <algorithm>

namespace kelvo {
namespace {

/// Names of files are text, whatever they contain: a tooltip would show tags in them as what they say.
QString PlainTip(const QString& text) {
  if (!Qt::mightBeRichText(text)) return text;
  const QString escaped = text.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
  return QStringLiteral("<qt>") + escaped + QStringLiteral("</qt>");
}

}  // namespace

QModelIndexList RowsBeginning(const QAbstractItemModel& model, int main, const QModelIndex& start,
                              const QString& typed) {
  const int rows = model.rowCount();
  for (int step = 0; step < rows; ++step) {
    const int row = (std::max(start.row(), 0) + step) % rows;
    if (model.index(row, main).data().toString().startsWith(typed, Qt::CaseInsensitive))
      return {model.index(row, std::max(start.column(), 0))};
  }
  return {};
}

RowModelBase::RowModelBase(const RowFeed& rows, std::vector<ColumnLook> looks)
    : rows_(rows), looks_(std::move(looks)) {
  connect(&rows_, &RowFeed::RowsAboutToBeAdded, this,
          [this](int first, int last) { beginInsertRows({}, first, last); });
  connect(&rows_, &RowFeed::RowsAdded, this, [this] { endInsertRows(); });
  connect(&rows_, &RowFeed::RowsAboutToBeRemoved, this,
          [this](int first, int last) { beginRemoveRows({}, first, last); });
  connect(&rows_, &RowFeed::RowsRemoved, this, [this] { endRemoveRows(); });
  connect(&rows_, &RowFeed::RowsAboutToBeReplaced, this, [this] { beginResetModel(); });
  connect(&rows_, &RowFeed::RowsReplaced, this, [this] { endResetModel(); });
  connect(&rows_, &RowFeed::RowsChanged, this, [this](int first, int last) {
    Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
  });
}

int RowModelBase::MainColumn() const {
  const auto main =
      std::find_if(looks_.begin(), looks_.end(), [](const ColumnLook& look) { return look.rank == 0; });
  return main == looks_.end() ? 0 : static_cast<int>(main - looks_.begin());
}

bool RowModelBase::Edited() const {
  for (int column = 0; column < columnCount(); ++column) {
    if (Editable(column)) return true;
  }
  return false;
}

int RowModelBase::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_.Count();
}
int RowModelBase::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(looks_.size());
}

QVariant RowModelBase::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rows_.Count()) return {};
  if (role == Qt::DisplayRole) return Text(index.row(), index.column());
  if (role == Qt::EditRole) return EditText(index.row(), index.column());
  if (role == Qt::CheckStateRole && HasTick(index.column()))
    return Ticked(index.row(), index.column()) ? Qt::Checked : Qt::Unchecked;
  if (role == Qt::TextAlignmentRole && Look(index.column()).number)
    return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
  const QVariant other = Other(index.row(), index.column(), role);
  return role == Qt::ToolTipRole && other.isValid() ? PlainTip(other.toString()) : other;
}

bool RowModelBase::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role == Qt::CheckStateRole && flags(index).testFlag(Qt::ItemIsUserCheckable)) {
    Tick(index.row(), index.column(), value.toInt() == Qt::Checked);
    return true;
  }
  if (role != Qt::EditRole || !index.isValid() || !flags(index).testFlag(Qt::ItemIsEditable)) return false;
  return SetText(index.row(), index.column(), value.toString());
}

QVariant RowModelBase::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return Look(section).head;
}

Qt::ItemFlags RowModelBase::flags(const QModelIndex& index) const {
  Qt::ItemFlags base = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
  if (Drag) base |= Qt::ItemIsDragEnabled;
  const bool changes = index.isValid() && (!MayEdit || MayEdit());
  if (changes && Editable(index.column())) base |= Qt::ItemIsEditable;
  if (changes && HasTick(index.column())) base |= Qt::ItemIsUserCheckable;
  return base;
}

QMimeData* RowModelBase::mimeData(const QModelIndexList& rows) const {
  return Drag ? Drag(rows) : nullptr;
}

QModelIndexList RowModelBase::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                    Qt::MatchFlags flags) const {
  if (role != Qt::DisplayRole || !flags.testFlag(Qt::MatchStartsWith))
    return QAbstractTableModel::match(start, role, value, hits, flags);
  return RowsBeginning(*this, MainColumn(), start, value.toString());
}

}  // namespace kelvo

#pragma once

#include "database/ScanRows.h"
#include "ui/RowModel.h"

#include <QStyledItemDelegate>

namespace kelvo {

/// How the rows of a scan look: names are edited in place; what is in the database already is yellow,
/// what waits in the utility folder red, and both say so. `rows` outlives the model that takes this.
[[nodiscard]] RowModel<ScanRow>::Columns ScanColumns(ScanRows& rows);
/// The tooltip, colours and sign of a cell; see RowModel::Dress.
[[nodiscard]] QVariant DressScanRow(const ScanRow& row, int column, int role);
[[nodiscard]] QString HeadOf(ScanColumn column);
/// What is to be told of a row: what the last import found, and that it cannot be played; empty for nothing.
[[nodiscard]] QString WordsOf(const ScanRow& row);

/// Paints a marked row on its colour, darker while it is selected. Of a path that is too long the end is
/// shown. Owned by its list's window.
class MarkDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace kelvo

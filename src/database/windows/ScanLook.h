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
/// What a mark means, in words; empty for none.
[[nodiscard]] QString WordsOf(ScanMark mark);

/// Paints a marked row on its colour, darker while it is selected. Owned by its list's window.
class MarkDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace kelvo

#pragma once

#include "database/windows/ScanLook.h"
#include "discs/Ripper.h"
#include "ui/RowModel.h"

namespace kelvo {

/// The grid of the ripper: a tick, then names that are edited in place. `ripper` outlives the model.
[[nodiscard]] RowModel<cTrack>::Columns RipColumns(Ripper& ripper);
/// The colours, sign and words of a cell; see RowModel::Dress.
[[nodiscard]] QVariant DressRipRow(const cTrack& row, int column, int role);

/// Paints marked rows on their colour, and edits an artist and a date with what there is to choose from.
/// Owned by its list's window.
class RipDelegate : public MarkDelegate {
 public:
  RipDelegate(const Ripper& ripper, QObject* parent) : MarkDelegate(parent), ripper_(ripper) {}
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;

 private:
  const Ripper& ripper_;
};

/// The dates of a year, one for each month of the list, the year alone first.
[[nodiscard]] QStringList DatesOf(const QString& year);

}  // namespace kelvo

#pragma once

#include "database/ScanRows.h"

#include <QAbstractTableModel>

namespace kelvo {

/// The rows of a scan as a list control sees them: names are edited in place; what stands in the database
/// already is yellow, what waits in the utility folder red, and both say so. Owned by the scan's window; GUI
/// thread.
class ScanModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  explicit ScanModel(ScanRows& rows, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

  [[nodiscard]] static QString HeadOf(ScanColumn column);
  /// What a mark means, in words; empty for none.
  [[nodiscard]] static QString WordsOf(ScanMark mark);

 private:
  ScanRows& rows_;
};

}  // namespace kelvo

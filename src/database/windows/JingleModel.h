#pragma once

#include "database/JingleImport.h"

#include <QAbstractTableModel>

namespace kelvo {

/// The sound files that were found, as a list control sees them. Owned by the jingle import's window; GUI
/// thread.
class JingleModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column { NameColumn, SizeColumn, PathColumn, ColumnCount };
  explicit JingleModel(JingleImport& jingles, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  JingleImport& jingles_;
};

}  // namespace kelvo

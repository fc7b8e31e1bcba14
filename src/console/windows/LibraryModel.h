#pragma once

#include "database/Catalogue.h"

#include <QAbstractTableModel>

#include <vector>

namespace kelvo {

/// The tracks that the library list shows, as rows over the catalogue. Nothing is copied but the row numbers.
/// Owned by the library's panel; GUI thread.
class LibraryModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column : int { Track, Time, Bpm, Hi, Date, Genre, ColumnCount };

  explicit LibraryModel(const Catalogue& catalogue, QObject* parent = nullptr);

  void Show(std::vector<Mref> tracks);
  [[nodiscard]] Mref TrackAt(int row) const { return tracks_[static_cast<std::size_t>(row)]; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] QStringList mimeTypes() const override;
  [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;

 private:
  const Catalogue& catalogue_;
  std::vector<Mref> tracks_;
};

}  // namespace kelvo

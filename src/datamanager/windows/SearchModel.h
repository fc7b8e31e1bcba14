#pragma once

#include "datamanager/TrackSearch.h"

#include <QAbstractTableModel>

namespace kelvo {

/// The results of a search as rows over the catalogue. Owned by the search window; GUI thread.
class SearchModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column : int { Track, Artist, Album, Category, Date, Hi, Bpm, Time, MrefColumn, ColumnCount };

  SearchModel(const TrackSearch& search, const Catalogue& catalogue, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] QString TextOf(Mref track, int column) const;

  const TrackSearch& search_;
  const Catalogue& catalogue_;
  int rows_ = 0;  ///< as the views know it
};

}  // namespace kelvo

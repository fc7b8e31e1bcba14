#pragma once

#include "console/browser/LibraryBrowser.h"

#include <QAbstractTableModel>

#include <vector>

namespace kelvo {

/// The rows of the track list over the catalogue. Nothing is copied but the row numbers. Columns are those of
/// LibraryColumn. Owned by the library's panel; GUI thread.
class LibraryModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  LibraryModel(const LibraryBrowser& browser, const Catalogue& catalogue, QObject* parent = nullptr);

  [[nodiscard]] Mref TrackAt(int row) const { return tracks_[static_cast<std::size_t>(row)]; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] QStringList mimeTypes() const override;
  [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
  /// Finds the next track whose name begins with what is typed, without making a text of every row.
  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                      Qt::MatchFlags flags) const override;

 private:
  void Reset();
  void Append();
  void Reorder();

  const LibraryBrowser& browser_;
  const Catalogue& catalogue_;
  std::vector<Mref> tracks_;
};

}  // namespace kelvo

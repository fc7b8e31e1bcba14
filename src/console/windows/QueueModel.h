#pragma once

#include "console/queue/PlayQueue.h"

#include <QAbstractTableModel>

namespace kelvo {

class QueueTimes;

/// The play queue as a list control sees it: all its columns, the row's colour as text colour, rows that can
/// be dragged to another place, and a place for tracks dropped from the library. Owned by the queue's panel;
/// GUI thread.
class QueueModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  /// Behind the queue's own columns: how long until the row plays, and when its track did last.
  static constexpr int kPlaysIn = QueueColumnCount;
  static constexpr int kLastPlayed = QueueColumnCount + 1;
  static constexpr int kColumns = QueueColumnCount + 2;

  /// Without `times` these two are empty.
  explicit QueueModel(PlayQueue& queue, const QueueTimes* times = nullptr, QObject* parent = nullptr);

  /// The row that automatic play is at, from 1, lit on one beat and not on the next; 0 for none.
  void SetLitRow(int row);
  /// The times are others.
  void TellTimes();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] Qt::DropActions supportedDropActions() const override {
    return Qt::MoveAction | Qt::CopyAction;
  }
  [[nodiscard]] QStringList mimeTypes() const override;
  [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
  [[nodiscard]] bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                     const QModelIndex& parent) const override;
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;

 Q_SIGNALS:
  /// A row of the queue was dragged: both indices from 1.
  void RowMoved(int from, int to);
  void TracksDropped(const std::vector<Mref>& tracks);

 private:
  [[nodiscard]] QString Heading(int section) const;
  [[nodiscard]] QString Text(int row, int column) const;
  /// What a narrow list has no room for.
  [[nodiscard]] QString Tooltip(int row) const;

  PlayQueue& queue_;
  const QueueTimes* times_;
  int litRow_ = 0;
};

}  // namespace kelvo

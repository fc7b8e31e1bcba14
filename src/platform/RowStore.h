#pragma once

#include <QObject>

#include <iterator>
#include <utility>
#include <vector>

namespace kelvo {

/// Tells those who show a list what happens to its rows. Rows count from 0; `last` is one of them. Logic
/// thread.
class RowFeed : public QObject {
  Q_OBJECT
 public:
  [[nodiscard]] virtual int Count() const = 0;

 Q_SIGNALS:
  void RowsAboutToBeAdded(int first, int last);
  void RowsAdded();
  void RowsAboutToBeRemoved(int first, int last);
  void RowsRemoved();
  void RowsAboutToBeReplaced();
  void RowsReplaced();
  void RowsChanged(int first, int last);
};

/// The rows of a list, and the only way to change them without those who show them losing their place. Owned
/// by the logic that fills it, which hands it out const; logic thread.
template <typename Row>
class RowStore final : public RowFeed {
 public:
  [[nodiscard]] int Count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const Row& operator[](int row) const { return rows_[static_cast<std::size_t>(row)]; }
  [[nodiscard]] const std::vector<Row>& All() const { return rows_; }

  /// Adds rows at the end.
  void Append(std::vector<Row> fresh) {
    if (fresh.empty()) return;
    Q_EMIT RowsAboutToBeAdded(Count(), Count() + static_cast<int>(fresh.size()) - 1);
    rows_.insert(rows_.end(), std::make_move_iterator(fresh.begin()), std::make_move_iterator(fresh.end()));
    Q_EMIT RowsAdded();
  }
  /// Adds a row before the one at `row`.
  void Insert(int row, Row fresh) {
    Q_EMIT RowsAboutToBeAdded(row, row);
    rows_.insert(rows_.begin() + row, std::move(fresh));
    Q_EMIT RowsAdded();
  }
  void Remove(int first, int last) {
    Q_EMIT RowsAboutToBeRemoved(first, last);
    rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
    Q_EMIT RowsRemoved();
  }
  void Remove(int row) { Remove(row, row); }
  /// Empties the list. What was in it is the caller's: to free 100,000 rows takes longer than a turn.
  std::vector<Row> TakeAll() {
    if (rows_.empty()) return {};
    Q_EMIT RowsAboutToBeRemoved(0, Count() - 1);
    std::vector<Row> taken = std::exchange(rows_, {});
    Q_EMIT RowsRemoved();
    return taken;
  }
  void Replace(std::vector<Row> rows) {
    Q_EMIT RowsAboutToBeReplaced();
    rows_ = std::move(rows);
    Q_EMIT RowsReplaced();
  }
  /// Calls change(row) and tells of it.
  template <typename Change>
  void Alter(int row, Change change) {
    AlterUntold(row, change);
    TellChanged(row, row);
  }
  /// The same for many rows, which TellChanged reports together.
  template <typename Change>
  void AlterUntold(int row, Change change) {
    change(rows_[static_cast<std::size_t>(row)]);
  }
  void TellChanged(int first, int last) { Q_EMIT RowsChanged(first, last); }

 private:
  std::vector<Row> rows_;
};

}  // namespace kelvo

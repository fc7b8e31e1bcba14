#pragma once

#include "platform/RowStore.h"

#include <QAbstractTableModel>

#include <functional>
#include <vector>

namespace kelvo {

/// What a list shows of a column, whatever its rows are.
struct ColumnLook {
  QString head;
  int letters = 10;     ///< its width, in letters
  int rank = 0;         ///< 0: the main column, which takes the room that is left. The others go by rank
                        ///< where there is no room, the highest first
  bool number = false;  ///< right-aligned
  bool path = false;    ///< of one that is too long the end is shown
};

/// What Qt's search by letters finds in a list: the first row from `start` on, wrapping at the end, whose
/// column `main` begins with what was typed, in the column of `start`.
[[nodiscard]] QModelIndexList RowsBeginning(const QAbstractItemModel& model, int main,
                                            const QModelIndex& start, const QString& typed);

/// A table over rows of the logic, its columns declared as data. Owned by the window that shows it, which
/// drops its list first. See RowModel. GUI thread.
class RowModelBase : public QAbstractTableModel {
  Q_OBJECT
 public:
  [[nodiscard]] const ColumnLook& Look(int column) const { return looks_[static_cast<std::size_t>(column)]; }
  [[nodiscard]] int MainColumn() const;
  /// Whether any of its columns can be edited.
  [[nodiscard]] bool Edited() const;

  /// What rows are dragged as; empty: they are not.
  std::function<QMimeData*(const QModelIndexList& rows)> Drag;
  /// Asked before a cell is edited; empty: always.
  std::function<bool()> MayEdit;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] QMimeData* mimeData(const QModelIndexList& rows) const override;
  /// Letters that are typed find the next row whose main column begins with them, wherever the cursor is.
  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                      Qt::MatchFlags flags) const override;

 protected:
  RowModelBase(const RowFeed& rows, std::vector<ColumnLook> looks);

  [[nodiscard]] virtual QString Text(int row, int column) const = 0;
  [[nodiscard]] virtual QString EditText(int row, int column) const = 0;
  [[nodiscard]] virtual bool Editable(int column) const = 0;
  virtual bool SetText(int row, int column, const QString& text) = 0;
  /// Whether the cells of the column have a box to tick.
  [[nodiscard]] virtual bool HasTick(int /*column*/) const { return false; }
  [[nodiscard]] virtual bool Ticked(int /*row*/, int /*column*/) const { return false; }
  virtual void Tick(int /*row*/, int /*column*/, bool /*on*/) {}
  [[nodiscard]] virtual QVariant Other(int row, int column, int role) const = 0;

 private:
  const RowFeed& rows_;
  std::vector<ColumnLook> looks_;
};

/// A column of rows of this type, as data.
template <typename Row>
struct RowColumn {
  using Text = std::function<QString(const Row&)>;
  /// Takes what was typed into a row; false refuses it.
  using Set = std::function<bool(int row, const QString& typed)>;

  RowColumn(ColumnLook columnLook, Text shown) : look(std::move(columnLook)), text(std::move(shown)) {}
  /// A column that can be edited. `begin`: what the editor begins with; empty: the text.
  RowColumn(ColumnLook columnLook, Text shown, Set setter, Text begin = nullptr)
      : look(std::move(columnLook)),
        text(std::move(shown)),
        set(std::move(setter)),
        edited(std::move(begin)) {}

  ColumnLook look;
  Text text;
  Set set;
  Text edited;
  /// A box to tick, before the text: whether it is ticked, and what a click on it does.
  std::function<bool(const Row&)> ticked = nullptr;
  std::function<void(int row, bool on)> tick = nullptr;
};

/// The model of a list of rows of this type.
template <typename Row>
class RowModel final : public RowModelBase {
 public:
  using Columns = std::vector<RowColumn<Row>>;
  RowModel(const RowStore<Row>& rows, Columns columns)
      : RowModelBase(rows, Looks(columns)), rows_(rows), columns_(std::move(columns)) {}

  /// The tooltip, colours and so on of a cell, by role; empty: none.
  std::function<QVariant(const Row& row, int column, int role)> Dress;

 protected:
  [[nodiscard]] QString Text(int row, int column) const override { return At(column).text(rows_[row]); }
  [[nodiscard]] QString EditText(int row, int column) const override {
    return At(column).edited ? At(column).edited(rows_[row]) : Text(row, column);
  }
  [[nodiscard]] bool Editable(int column) const override { return static_cast<bool>(At(column).set); }
  bool SetText(int row, int column, const QString& text) override { return At(column).set(row, text); }
  [[nodiscard]] bool HasTick(int column) const override { return static_cast<bool>(At(column).ticked); }
  [[nodiscard]] bool Ticked(int row, int column) const override { return At(column).ticked(rows_[row]); }
  void Tick(int row, int column, bool on) override { At(column).tick(row, on); }
  [[nodiscard]] QVariant Other(int row, int column, int role) const override {
    return Dress ? Dress(rows_[row], column, role) : QVariant();
  }

 private:
  [[nodiscard]] static std::vector<ColumnLook> Looks(const Columns& columns) {
    std::vector<ColumnLook> looks;
    for (const auto& each : columns) looks.push_back(each.look);
    return looks;
  }
  [[nodiscard]] const RowColumn<Row>& At(int column) const {
    return columns_[static_cast<std::size_t>(column)];
  }

  const RowStore<Row>& rows_;
  Columns columns_;
};

}  // namespace kelvo

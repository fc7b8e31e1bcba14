#pragma once

#include "ui/ListTable.h"
#include "ui/Panel.h"
#include "ui/RowModel.h"

#include <memory>

class QLineEdit;

namespace kelvo {

class LetterBox;
class WordFilter;

/// The list of a window: a titled panel with the number of its rows, a table over a RowModel with a hint for
/// when it is empty, what is picked in it, a jump by letters, and a filter line where one is wanted. F2,
/// Enter and a double click edit a cell of a column that can be edited; in all others a row is activated. A
/// value among the members of its window, behind the model: it goes before what it looks at. GUI thread.
class ListPanel : public Panel {
  Q_OBJECT
 public:
  struct Look {
    QString name;            ///< object name of the table
    QString fixedName = {};  ///< see SetNames
    Group group = Group::Lists;
    QString title;
    QString accessible;    ///< what the list holds, for those who can't see it
    bool many = true;      ///< several rows can be picked
    QString filter = {};   ///< object name of a line above the list that shows only the rows with all its
                           ///< words, in any column (Ctrl+F); empty: none. For some thousand rows: longer
                           ///< lists are filtered by their logic
    QString letters = {};  ///< object name of a box of letters above the list; empty: none
  };
  ListPanel(const Look& look, RowModelBase& model, QWidget* parent);
  ~ListPanel() override;

  [[nodiscard]] ListTable& Table() { return table_; }
  /// The words in the middle of the empty list: what to do next.
  void SetHint(const QString& words) { table_.SetEmptyText(words); }

  /// The picked rows of the model, from the first.
  [[nodiscard]] std::vector<int> Picked() const;
  /// The row of the model that the keyboard is on; -1 for none.
  [[nodiscard]] int Current() const;
  [[nodiscard]] bool AnyPicked() const;
  [[nodiscard]] bool AllPicked() const;
  /// Picks all rows that are shown, or none when all are picked.
  void PickAllOrNone();
  /// Picks these rows of the model and no others; the first one comes into sight.
  void Pick(const std::vector<int>& rows);

 Q_SIGNALS:
  /// What is picked, or what could be, is another.
  void PickedChanged();
  /// The keyboard is on another row.
  void CurrentChanged();
  /// Enter or a double click on this row of the model.
  void RowActivated(int row);

 private:
  void Activate(const QModelIndex& shown);
  [[nodiscard]] QLineEdit* AddFilter(const Look& look);
  [[nodiscard]] LetterBox* AddLetters(const Look& look);
  void ShowColumns();
  /// The row of the model that is shown in this one.
  [[nodiscard]] int RowOf(int shown) const;
  /// Keeps the count true to this model.
  void Count(const QAbstractItemModel& model);
  void ShowCount();
  void Jump(QChar letter);

  RowModelBase& model_;
  std::unique_ptr<WordFilter> filter_;
  ListTable table_;
};

}  // namespace kelvo

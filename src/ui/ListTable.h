#pragma once

#include <QTableView>

#include <vector>

namespace kelvo {

class ListHead;

/// A list of the desk with columns: whole rows, no grid, rows as tall as their text, and words in its middle
/// that say what to do next while it is empty. GUI thread.
class ListTable : public QTableView {
  Q_OBJECT
 public:
  explicit ListTable(QWidget* parent = nullptr);

  void SetEmptyText(const QString& text);
  /// A click on a heading does something: the keyboard comes there too. After the list has its names.
  void LetHeadBeClicked();
  /// `main` takes the room that the others leave, at least `letters` wide; of `others`, the most important
  /// first, those are shown that leave it so much. Widths in letters.
  struct OptionalColumn {
    int column;
    int letters;
    bool always = false;  ///< shown also where it takes of the main column's room
  };
  void SetColumns(int main, int letters, std::vector<OptionalColumn> others);

 Q_SIGNALS:
  /// Return and Enter on a row, or a double click.
  void RowActivated(const QModelIndex& index);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void SizeRows();
  void SizeColumns();

  ListHead* head_;
  QString emptyText_;
  int mainLetters_ = 0;
  std::vector<OptionalColumn> optional_;
};

}  // namespace kelvo

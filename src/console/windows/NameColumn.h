#pragma once

#include "console/browser/LibraryBrowser.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace kelvo {

class LetterBox;
class ListTable;

/// One of the browser's lists of names, with the letters to jump to, the words that blink over a filtered
/// list, the name chosen and the way to what is
/// written about it. A press or Return chooses and releases; arrows and letters only move the
/// cursor. Owned by the library's panel; GUI thread.
class NameColumn : public QWidget {
  Q_OBJECT
 public:
  NameColumn(LibraryBrowser& browser, Stage stage, QWidget* parent = nullptr);

  [[nodiscard]] ListTable& List() { return *list_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ShowChoice();
  void Centre();
  void Jump(QChar letter);

  LibraryBrowser& browser_;
  Stage stage_;
  ListTable* list_;
  QLabel* words_;
  LetterBox* letters_;
  QLabel* chosen_;
  QPushButton* profile_;
};

}  // namespace kelvo

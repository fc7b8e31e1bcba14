#pragma once

#include "datamanager/TrackSearch.h"
#include "ui/WindowPlace.h"

#include <QWidget>

#include <functional>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace kelvo {

class ListTable;
class SearchModel;
class SettingsStore;

/// "Track Search": stays open beside the console and remembers its place. Owned by who opens it; GUI thread.
class SearchWindow : public QWidget {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    SettingsStore& settings;
    const Catalogue& catalogue;
    QString title;  ///< the program's title
  };
  /// `console` is the window that it stays above.
  SearchWindow(Services services, QWidget* console);

  /// The operator wants these tracks in the play queue.
  std::function<void(std::vector<Mref>)> OnAdd;

  /// Makes the text box ready to be typed into.
  void BeginTyping();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildQuestion(QVBoxLayout& layout);
  void BuildResults(QVBoxLayout& layout);
  [[nodiscard]] QRadioButton* AddOption(const QString& name, const QString& text);
  [[nodiscard]] QLineEdit* AddBox(const QString& name, const QString& hint);
  void Search();
  void ShowState();
  void ShowSelection();
  void SelectAllOrNone();
  void AddSelected();
  void StayOnTop();

  Services services_;
  TrackSearch search_;
  QWidget* question_;
  QLineEdit* text_ = nullptr;
  QLineEdit* date_ = nullptr;
  QLineEdit* hiPos_ = nullptr;
  QLineEdit* bpm_ = nullptr;
  QRadioButton* title_ = nullptr;
  QRadioButton* artist_ = nullptr;
  QRadioButton* album_ = nullptr;
  QRadioButton* genre_ = nullptr;
  QRadioButton* anyPart_ = nullptr;
  QRadioButton* wholeString_ = nullptr;
  QCheckBox* titleFirst_ = nullptr;
  QPushButton* ok_;
  SearchModel* model_;
  ListTable* list_;
  QWidget* commands_;
  QPushButton* selectAll_ = nullptr;
  QPushButton* add_ = nullptr;
  QLabel* results_;
  QLabel* state_;
  QWidget* keyboard_ = nullptr;
  QWidget* focus_ = nullptr;  ///< where the focus was when a search began
  WindowPlace place_;
  Timer timer_;
};

}  // namespace kelvo

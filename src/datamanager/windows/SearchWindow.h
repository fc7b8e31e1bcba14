#pragma once

#include "datamanager/TrackSearch.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <functional>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace kelvo {

class Form;

/// "Track Search": stays open above the console. A search goes on when the window is closed. GUI thread.
class SearchWindow : public ToolWindow {
  Q_OBJECT
 public:
  SearchWindow(EventLoop& loop, TrackSearch& search);

  /// The operator wants these tracks in the play queue.
  std::function<void(std::vector<Mref>)> OnAdd;
  /// The operator takes a request for them.
  std::function<void(const std::vector<Mref>&)> OnRequest;

  /// Makes the text box ready to be typed into.
  void TakeKeys() override;

 protected:
  void Refresh() override;
  void Enter() override {}

 private:
  [[nodiscard]] static RowModel<Mref>::Columns Columns(const TrackSearch& search);
  void BuildQuestion();
  void BuildCommands();
  void BuildLayout();
  void BuildFields();
  [[nodiscard]] QVBoxLayout* OptionColumn(const QString& words, const QList<QRadioButton*>& options);
  [[nodiscard]] QRadioButton* AddOption(const QString& name, const QString& fixedName, const QString& text);
  void ShowWhatIsAsked();
  void Search();
  void ShowState();
  void ShowPicked();
  void AddPicked();
  void RequestPicked();
  [[nodiscard]] std::vector<Mref> PickedTracks() const;

  TrackSearch& search_;
  RowModel<Mref> model_;
  ListPanel found_;
  QWidget* question_;
  Form* fields_;
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
  QPushButton* ok_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* add_ = nullptr;
  QPushButton* request_ = nullptr;
  QLabel* results_;
  QLabel* state_;
  QWidget* keyboard_ = nullptr;
  QWidget* focus_ = nullptr;  ///< where the focus was when a search began
  Timer timer_;
};

}  // namespace kelvo

#pragma once

#include "datamanager/TapCounter.h"
#include "ui/ToolWindow.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kelvo {

class BeatLamp;
class ElidedLabel;
class Fader;
class Panel;

/// "Count Beats": plays a track beside the programme and counts the taps of the space bar. While it counts,
/// the space bar taps wherever the keyboard is in the window. GUI thread.
class TapWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit TapWindow(TapCounter& counter);
  ~TapWindow() override;

  void TakeKeys() override;
  void TakeFiles(const QStringList& places) override;

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void Leave() override { counter_.Leave(); }

 private:
  void BuildPlayer();
  void BuildCount();
  void BuildHints();
  void BuildLayout();
  QLabel* AddFigure(const QString& name, const QString& accessible);
  QPushButton* AddUse(const QString& name, const QString& tooltip, std::function<void()> run);
  void TakeSpaceBar(bool take);
  void Show();
  void ShowFigures();
  void ShowBeat();

  TapCounter& counter_;
  ElidedLabel* track_;
  Fader* place_;
  QLabel* time_;
  QLineEdit* box_;
  BeatLamp* lamp_;
  QLabel* taps_;
  QLabel* median_;
  QLabel* heard_;
  Panel* countPanel_;
  Panel* hintPanel_;
  Panel* comparePanel_;
  QCheckBox* hide_ = nullptr;
  QPushButton* play_ = nullptr;
  QPushButton* stop_ = nullptr;
  QPushButton* count_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* half_ = nullptr;
  QPushButton* double_ = nullptr;
  QPushButton* useMedian_ = nullptr;
  QPushButton* useHeard_ = nullptr;
  bool takesSpace_ = false;
};

}  // namespace kelvo

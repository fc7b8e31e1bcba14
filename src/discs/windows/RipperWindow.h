#pragma once

#include "discs/Ripper.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace kelvo {

class PlaceBox;
class ProgressStrip;

/// The CD ripper: the tracks of a disc in a grid, to be named, ticked and ripped. While a rip goes on its
/// progress stands below the grid, and the window can't be closed. GUI thread.
class RipperWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit RipperWindow(Ripper& ripper);

  void TakeKeys() override { tracks_.Table().setFocus(); }
  void TakeFiles(const QStringList& places) override;

 protected:
  void Refresh() override { ripper_.Reload(); }
  void Enter() override { ripper_.Open(); }
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildCommands();
  void BuildLayout();
  [[nodiscard]] Panel* BuildProgress();
  [[nodiscard]] QComboBox* AddChoice(const QString& name, const QString& words);
  void FillChoices();
  void Show();
  void ShowRow();
  void ShowProgress();

  Ripper& ripper_;
  RowModel<cTrack> model_;
  ListPanel tracks_;
  RowModel<RipRun::Line> doneModel_;
  ListPanel done_;
  PlaceBox* drive_;
  QLabel* disc_;
  QComboBox* album_;
  QComboBox* artist_;
  QComboBox* date_;
  QCheckBox* inFront_;
  QLabel* rowWords_;
  QLabel* presets_;
  Panel* progress_ = nullptr;
  QLabel* info_ = nullptr;
  ProgressStrip* bar_ = nullptr;
  QPushButton* image_ = nullptr;
  QPushButton* tray_ = nullptr;
  QPushButton* insertArtist_ = nullptr;
  QPushButton* insertDate_ = nullptr;
  QPushButton* all_ = nullptr;
  QPushButton* invert_ = nullptr;
  QPushButton* tick_ = nullptr;
  QPushButton* rip_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace kelvo

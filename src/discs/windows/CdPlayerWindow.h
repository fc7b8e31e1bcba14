#pragma once

#include "discs/CdPlayer.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <vector>

class QComboBox;
class QLabel;
class QPushButton;

namespace kelvo {

class PlaceBox;
class TimeDisplay;

/// The CD player: the disc's tracks, the time of the one that plays, and what a player has buttons for.
/// Hidden by another form of the console it plays on; closed by hand it stops. GUI thread.
class CdPlayerWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit CdPlayerWindow(CdPlayer& player);

  void TakeKeys() override { tracks_.Table().setFocus(); }
  void TakeFiles(const QStringList& places) override;

 protected:
  void Refresh() override { player_.Shelf().Refresh(); }
  void Enter() override;
  void Leave() override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildCommands();
  void BuildLayout();
  [[nodiscard]] Panel* BuildDisplay();
  void RestorePlace();
  void Show();

  CdPlayer& player_;
  RowModel<CdTrackRow> model_;
  ListPanel tracks_;
  PlaceBox* drive_;
  QComboBox* output_;
  TimeDisplay* time_;
  QLabel* disc_;
  QLabel* track_;
  QLabel* words_;
  QPushButton* image_ = nullptr;
  QPushButton* play_ = nullptr;
  QPushButton* eject_ = nullptr;
  QPushButton* close_ = nullptr;
  QPushButton* speed_ = nullptr;
  std::vector<QPushButton*> transport_;  ///< in the order of the line, play among them
};

}  // namespace kelvo

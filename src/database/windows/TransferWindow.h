#pragma once

#include "database/Transfer.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QLabel;
class QPushButton;

namespace kelvo {

class JobStrip;
class ProgressStrip;

/// "Transfer To Data Base": the files that wait in the utility folder, to be completed and moved into the
/// database. A run goes on when the window is closed. GUI thread.
class TransferWindow : public ToolWindow {
  Q_OBJECT
 public:
  TransferWindow(EventLoop& loop, Transfer& transfer);

  void TakeKeys() override { files_.Table().setFocus(); }

  /// How files are encoded; without it there is no button for that.
  void SetEncode(std::function<void(const QStringList& files)> encode);

 protected:
  void Refresh() override { transfer_.List(); }

 private:
  [[nodiscard]] RowModel<TransferRow>::Columns Columns();
  void BuildCommands();
  void BuildLayout();
  [[nodiscard]] std::vector<int> PickedIds() const;
  void Encode();
  void Show();
  void ShowProgress();
  void ShowWords();

  Transfer& transfer_;
  std::function<void(const QStringList& files)> encodeFiles_;
  RowModel<TransferRow> model_;
  ListPanel files_;
  QLabel* words_;
  ProgressStrip* file_;
  JobStrip* run_;
  QPushButton* select_ = nullptr;
  QPushButton* delete_ = nullptr;
  QPushButton* encode_ = nullptr;
  QPushButton* move_ = nullptr;
};

}  // namespace kelvo

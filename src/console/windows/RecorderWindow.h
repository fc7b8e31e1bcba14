#pragma once

#include "console/recorder/RecordingList.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace kelvo {

/// "Recorder": starts and stops the recording of the programme, and lists the recordings that there are. It
/// may be closed while it records: the console goes on showing that. GUI thread.
class RecorderWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit RecorderWindow(RecordingList& recordings);

  void TakeKeys() override;

 protected:
  void Refresh() override { recordings_.List(); }
  void Enter() override;
  void Leave() override;

 private:
  [[nodiscard]] Panel* BuildRecorder();
  void OpenFolder();
  void Show();
  void ShowList();
  /// What is in hand: the state, how much, and what is wrong.
  [[nodiscard]] QString StateWords() const;
  [[nodiscard]] QString FactWords() const;

  RecordingList& recordings_;
  ProgrammeRecorder& recorder_;
  RowModel<KeptRecording> model_;
  ListPanel list_;
  QLabel* state_;
  QLabel* facts_;
  QLabel* warning_;
  QLabel* folder_;
  QComboBox* format_;
  QPushButton* record_;
  QPushButton* stop_;
  QPushButton* open_;
  QPushButton* choose_;
};

}  // namespace kelvo

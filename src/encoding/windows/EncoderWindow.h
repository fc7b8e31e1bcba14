#pragma once

#include "encoding/EncodeList.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace kelvo {

class JobStrip;

/// "Wave To Mp3 Encoder": the files to encode, the presets that count, how far it is, what became of each. A
/// run goes on when the window is closed. GUI thread.
class EncoderWindow : public ToolWindow {
  Q_OBJECT
 public:
  EncoderWindow(EventLoop& loop, EncodeList& list);

  void TakeKeys() override { files_.Table().setFocus(); }
  void TakeFiles(const QStringList& places) override { list_.Add(places); }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void BuildCommands();
  void BuildLayout();
  void StartOrCancel();
  void Show();

  EncodeList& list_;
  RowModel<EncodeRow> model_;
  RowModel<QString> logModel_;
  ListPanel files_;
  ListPanel log_;
  QLabel* lame_;
  QLabel* presets_;
  QLabel* plan_;
  QCheckBox* deletes_;
  JobStrip* progress_;
  QPushButton* addFile_ = nullptr;
  QPushButton* addFolder_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* remove_ = nullptr;
  QPushButton* decode_ = nullptr;
  QPushButton* start_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace kelvo

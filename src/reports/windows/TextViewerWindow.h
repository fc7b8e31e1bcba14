#pragma once

#include "reports/TextView.h"
#include "ui/ToolWindow.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace kelvo {

/// `TextViewer`: shows a text file. GUI thread.
class TextViewerWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit TextViewerWindow(TextView& view);

  void TakeKeys() override;
  void TakeFiles(const QStringList& places) override { view_.Open(places.value(0)); }

 protected:
  void Refresh() override { view_.Refresh(); }
  void Enter() override {}

 private:
  void Show();

  TextView& view_;
  QLabel* file_;
  QPlainTextEdit* text_;
  QPushButton* close_;
  QPushButton* print_;
};

}  // namespace kelvo

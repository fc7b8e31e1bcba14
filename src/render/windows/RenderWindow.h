#pragma once

#include "render/Renderer.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace kelvo {

class Form;
class JobStrip;

/// "Render To File": where to, in what format, how far it is, what came of it. GUI thread.
class RenderWindow : public ToolWindow {
  Q_OBJECT
 public:
  RenderWindow(EventLoop& loop, Renderer& renderer);

  void TakeKeys() override;

 protected:
  void Refresh() override { renderer_.Propose(); }

 private:
  void Show();

  Renderer& renderer_;
  RowModel<SkippedTitle> model_;
  ListPanel skipped_;
  Form* form_;
  QLineEdit* file_;
  QComboBox* kind_;
  QPushButton* folder_;
  QPushButton* render_;
  JobStrip* progress_;
};

}  // namespace kelvo

#pragma once

#include "console/transitions/PressToSpeak.h"
#include "ui/Panel.h"

class QLabel;
class QPushButton;

namespace kelvo {

class Fader;

/// "AUTO FADE": press-to-speak with its depth and speed. Owned by the console window; GUI thread.
class SpeakPanel : public Panel {
  Q_OBJECT
 public:
  explicit SpeakPanel(PressToSpeak& speak, QWidget* parent = nullptr);

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void Show();

  PressToSpeak& speak_;
  QPushButton* talk_;
  Fader* depth_;
  QLabel* depthWords_;
  Fader* speed_;
  QLabel* speedWords_;
};

}  // namespace kelvo

#pragma once

#include "ui/Fader.h"

#include <QWidget>

namespace kelvo {

/// The volume of a window's own player: a speaker and a lying fader, louder to the right. The level is a
/// loss, 0 loudest. GUI thread.
class SampleVolume : public QWidget {
  Q_OBJECT
 public:
  SampleVolume(int mostLoss, int loss, QWidget* parent = nullptr);

  [[nodiscard]] Fader& Slider() { return *slider_; }

 private:
  Fader* slider_;
};

}  // namespace kelvo

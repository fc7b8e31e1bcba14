#pragma once

#include "playlists/PlayEditor.h"
#include "ui/Panel.h"

#include <array>

class QButtonGroup;
class QLabel;
class QRadioButton;

namespace kelvo {

class Fader;
class WaveEndView;

/// "FADE IN" or "FADE OUT": kind, position and speed of a fade, and the end of the track in which it lies.
/// Owned by the editor's window; GUI thread.
class FadePanelView : public Panel {
  Q_OBJECT
 public:
  FadePanelView(PlayEditor& editor, FadePanel panel, QWidget* parent);

  void Show();

 private:
  struct Slider {
    QLabel* label;
    Fader* fader;
    QLabel* words;
  };
  [[nodiscard]] Slider AddSlider(const QString& what, const QString& name, const QString& fixedName,
                                 const QString& label, const QString& words, int most);
  void Lay(const QString& help);
  void SetPosition(int seconds);
  void ShowKind(const FadeEdit& fade, const QString& why);

  PlayEditor& editor_;
  FadePanel panel_;
  QButtonGroup* kinds_;
  std::array<QRadioButton*, 3> kindButtons_{};
  Slider position_{};
  Slider speed_{};
  WaveEndView* wave_;
};

}  // namespace kelvo

#pragma once

#include "playlists/windows/TempoChart.h"

#include <QWidget>

#include <array>

class QRadioButton;
class QSpinBox;
class QTimeEdit;

namespace kelvo {

class Fader;
class PlaylistGenerator;

/// The outline of the tempo: its chart, and each of its values with a box and the option that puts it in
/// hand. GUI thread.
class OutlinePanel : public QWidget {
  Q_OBJECT
 public:
  OutlinePanel(PlaylistGenerator& generator, QWidget* parent);

  void Show();

 private:
  void AddValue(TempoChart::Hand hand, const QString& name, const QString& words, const QString& tooltip);
  void BuildDuration();
  void Take(TempoChart::Hand hand, int value);
  void TakeSeconds(int seconds);

  PlaylistGenerator& generator_;
  TempoChart* chart_;
  std::array<QRadioButton*, 4> hands_{};
  std::array<QSpinBox*, 4> values_{};
  Fader* duration_;
  QTimeEdit* exact_;
};

}  // namespace kelvo

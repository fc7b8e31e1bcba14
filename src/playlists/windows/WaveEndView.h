#pragma once

#include "audio/WaveEnds.h"
#include "playlists/TrackWave.h"

#include <QAbstractSlider>

namespace kelvo {

/// The picture of one end of a track, with the fade's point on it: seconds from that end. The point is
/// dragged with the mouse, and moved by the keys: the arrows move it the way they point by a second, Page Up
/// and Down by five, Home to the track's end, End to the other side of the picture. Where there is no picture
/// words stand in its place, and the point can be moved all the same. Owned by the editor's window; GUI
/// thread.
class WaveEndView : public QAbstractSlider {
  Q_OBJECT
 public:
  enum class End { Start, Last };
  WaveEndView(End end, const TrackWave& wave, QWidget* parent);

  /// Places the point; one that lies beyond the picture is shown at its edge.
  void SetPoint(int seconds);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// A person moved it; SetPoint does not count.
  void MovedByHand(int seconds);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  [[nodiscard]] double PlaceOf(double seconds) const;
  [[nodiscard]] int SecondsAt(double place) const;
  void MoveTo(int seconds);
  void PaintWave(QPainter& painter) const;
  void PaintPoint(QPainter& painter) const;

  End end_;
  const TrackWave& wave_;
  bool beyond_ = false;
};

}  // namespace kelvo

#pragma once

#include <QAbstractSlider>

#include <optional>

namespace kelvo {

/// A fader of the desk, upright or lying. It takes hold like the real thing: a drag moves it from where it
/// is, wherever the mouse went down, so that no click makes the sound jump; Shift drags finely. A click
/// beside the handle without a drag goes one page towards it, the wheel goes in single steps, the middle
/// button sets it to the place, a double click to its rest value. Tab goes to it: arrows and Page Up and Down
/// move the handle the way they point, Home and End to its ends, Enter to its rest value. Levels kept as loss
/// (0 loudest) are shown loud side up with setInvertedAppearance. The owner names it with setAccessibleName.
/// sliderPressed and sliderReleased as in every slider. GUI thread.
class Fader : public QAbstractSlider {
  Q_OBJECT
 public:
  Fader(Qt::Orientation orientation, int lowest, int highest, QWidget* parent = nullptr);

  /// The value of a double click, marked on the scale. None at first.
  void SetRestValue(std::optional<int> value);
  /// Where the lit part of the groove begins; at first the lower or left end. The middle for a balance.
  void SetFillFrom(int value);
  /// A tick mark at every multiple of `interval` from the lowest value; 0 for none.
  void SetTickInterval(int interval);
  /// The colour of the lit part; the theme's accent at first.
  void SetColour(const QColor& colour);

  /// The middle of the handle, for those who draw or click at it.
  [[nodiscard]] QPoint HandleCentre() const;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// A person moved it; a setValue of the program is not reported here.
  void MovedByHand(int value);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] bool Lying() const { return orientation() == Qt::Horizontal; }
  [[nodiscard]] int Em() const;
  [[nodiscard]] QSizeF HandleSize() const;
  /// Pixels that the handle can travel.
  [[nodiscard]] double Travel() const;
  /// The place of a value, 0 at the left or lower end, 1 at the other.
  [[nodiscard]] double Place(int value) const;
  [[nodiscard]] QPointF PointOf(int value) const;
  /// The way from the grip to `point` as a share of the travel, positive to the right and up.
  [[nodiscard]] double Along(QPointF point) const;
  [[nodiscard]] int ValueAt(double place) const;
  void SetByHand(int value);
  void LetGo();

  struct Grip {
    QPointF start;
    QPointF last;
    double place;
    bool moved = false;
  };
  std::optional<Grip> grip_;
  std::optional<int> rest_;
  std::optional<int> fillFrom_;
  int tickInterval_ = 0;
  int wheelRest_ = 0;
  QColor colour_;
};

}  // namespace kelvo

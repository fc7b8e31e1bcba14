#pragma once

#include "playlists/TempoOutline.h"

#include <QAbstractSlider>
#include <QStringList>

namespace kelvo {

/// The chart of a tempo outline over the time of a list, with the line through its points and the two ends of
/// the tempo. One of its values is in hand: the mouse draws it, Up and Down and Page Up and Down change it;
/// Left and Right, Home and End go from point to point. For a screen reader it is a slider of that value,
/// named after the point that it is at. GUI thread.
class TempoChart : public QAbstractSlider {
  Q_OBJECT
 public:
  /// What the hand changes. With Time it chooses a point and changes nothing.
  enum class Hand { Bpm, HiBpm, LoBpm, Time };

  explicit TempoChart(QWidget* parent = nullptr);

  /// `seconds` is how long the list lasts.
  void Show(const TempoOutline& outline, int seconds);
  void SetHand(Hand hand);
  [[nodiscard]] int Point() const { return point_; }
  void ChoosePoint(int point);
  /// The time at a point of the outline, as minutes and seconds or with hours.
  [[nodiscard]] static QString TimeText(int point, int seconds);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// A person changed the outline.
  void Drawn(const TempoOutline& outline);
  void PointChosen(int point);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void sliderChange(SliderChange change) override;

 private:
  [[nodiscard]] QStringList Labels() const;
  /// Of labels side by side, with the room between them.
  [[nodiscard]] double WidthOf(const QStringList& labels) const;
  [[nodiscard]] bool LabelsFit() const;
  /// Where points and tempos are drawn.
  [[nodiscard]] QRectF Ground() const;
  [[nodiscard]] QPointF PlaceOf(int point, double bpm) const;
  [[nodiscard]] int PointAt(double x) const;
  [[nodiscard]] int BpmAt(double y) const;
  /// The value in hand takes what the mouse is at; points that it flew over lie on its way.
  void DrawTo(QPointF from, QPointF to);
  /// Takes a change by hand.
  void Set(int value);
  void Change(const TempoOutline& outline);
  /// Value, range and name of what is in hand.
  void ShowValue();

  TempoOutline outline_;
  int seconds_ = 3600;
  Hand hand_ = Hand::Bpm;
  int point_ = 0;
  QPointF last_;
  bool showing_ = false;
};

}  // namespace kelvo

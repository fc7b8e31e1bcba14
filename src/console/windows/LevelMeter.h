#pragma once

#include "console/scope/ProgrammeLevels.h"

#include <QPixmap>
#include <QWidget>

namespace kelvo {

/// The levels of the programme: a bar for each side, its bright part the average power and its dim part the
/// peak, with a mark at the peak that is held; and the loudness in digits. Follows the sound while it is on
/// the screen. Owned by its panel; GUI thread.
class LevelMeter : public QWidget {
  Q_OBJECT
 public:
  explicit LevelMeter(ProgrammeLevels& levels, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int BarHeight() const;
  [[nodiscard]] QRect BarOf(int side) const;
  [[nodiscard]] QRect Digits() const;
  [[nodiscard]] int PlaceOf(double decibels) const;
  /// A bar as it looks when it is lit from end to end.
  [[nodiscard]] QPixmap LitBar(double brightness) const;
  void DrawGround();
  void Show();

  ProgrammeLevels& levels_;
  const int digitWidth_;
  std::shared_ptr<void> watch_;
  QString shown_;  ///< the digits on the screen
  QPixmap ground_;
  QPixmap bright_;
  QPixmap dim_;
};

}  // namespace kelvo

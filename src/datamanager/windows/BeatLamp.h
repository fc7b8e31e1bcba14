#pragma once

#include <QWidget>

namespace kelvo {

/// A lamp that goes on with the beat. GUI thread.
class BeatLamp : public QWidget {
  Q_OBJECT
 public:
  explicit BeatLamp(QWidget* parent);

  void SetOn(bool on);
  [[nodiscard]] bool On() const { return on_; }
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool on_ = false;
};

}  // namespace kelvo

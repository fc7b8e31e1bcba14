#pragma once

#include <QLabel>

namespace kelvo {

class StatusTick;

/// The word that says by what rule the desk runs, as large as its place allows: a lit plate
/// while the desk plays by itself, a yellow word that blinks softly while it is run by hand. Shows the
/// DeskStatus; owned by the console window, GUI thread.
class ModeLabel : public QLabel {
  Q_OBJECT
 public:
  explicit ModeLabel(const StatusTick& tick, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Show();

  const StatusTick& tick_;
};

}  // namespace kelvo

#pragma once

#include <QWidget>

namespace kelvo {

struct DeskStatus;

/// "THE AIR IS SILENT": a plate over the head of the desk while nothing goes out that should. It is read from
/// three metres, and also by those who see no red: the words are white on dark in both halves of the
/// beat, and the lamp and the edge turn white in the lit one. It lies over words only, so nothing on the desk
/// moves under the operator's hand; a click on it says that the silence is wanted. Owned by the console
/// window; GUI thread.
class AirAlarm : public QWidget {
  Q_OBJECT
 public:
  explicit AirAlarm(QWidget* parent);

  /// Shows or hides it.
  void Show(const DeskStatus& status);
  /// The bright half of the beat.
  [[nodiscard]] bool Lit() const { return lit_; }

 Q_SIGNALS:
  /// The operator wants the silence.
  void Accepted();

 public Q_SLOTS:
  /// The beat that it blinks to.
  void SetLit(bool lit);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void DrawLamp(QPainter& painter, const QRectF& square) const;

  bool lit_ = true;
};

}  // namespace kelvo

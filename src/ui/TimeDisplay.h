#pragma once

#include <QWidget>

namespace kelvo {

/// The time left of a deck, as large as its place allows: digits of even width that do not tremble. What the
/// time means is the owner's to say (SetState); it is shown by colour and, in the last seconds, by blinking,
/// never by hiding the digits; a locked console goes on showing it. Name it with setAccessibleName; the time
/// is spoken as its description. GUI thread.
class TimeDisplay : public QWidget {
  Q_OBJECT
 public:
  enum class State { Dim, Calm, Amber, BlinkRed };

  explicit TimeDisplay(QWidget* parent = nullptr);

  /// "mm:ss", or any other digits and signs.
  void SetText(const QString& text);
  [[nodiscard]] const QString& Text() const { return text_; }
  void SetState(State state);
  [[nodiscard]] State TimeState() const { return state_; }
  /// "3 minutes 25 seconds" for "03:25"; other texts as they are.
  [[nodiscard]] static QString Spoken(const QString& text);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 public Q_SLOTS:
  /// The beat to blink to (see Pulse).
  void SetLit(bool lit);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString text_ = QStringLiteral("00:00");
  State state_ = State::Dim;
  bool lit_ = true;
};

}  // namespace kelvo

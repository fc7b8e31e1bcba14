#pragma once

#include <QWidget>

namespace kelvo {

/// The lamp that tells from three metres what a deck does: by word, by shape and by colour. On air is the
/// only solid red on the desk; what plays while the sound device is lost is not on air. A locked console goes
/// on showing it. GUI thread.
class DeckTally : public QWidget {
  Q_OBJECT
 public:
  enum class State { Empty, Loaded, OnAir, Ending, Done, NoDevice };

  explicit DeckTally(QWidget* parent = nullptr);

  void SetState(State state);
  [[nodiscard]] State TallyState() const { return state_; }
  [[nodiscard]] static QString Word(State state);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 public Q_SLOTS:
  /// The beat to blink to while ending (see Pulse).
  void SetLit(bool lit);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  State state_ = State::Empty;
  bool lit_ = true;
};

}  // namespace kelvo

#pragma once

#include "console/desk/ConsoleState.h"
#include "console/decks/DeckEngine.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QObject>
#include <QString>

namespace kelvo {

/// "AUTO FADE": while the operator holds the button or the space bar and talks, both decks are at most at
/// the depth that was set; let go, they come back to where they were. Every write of a deck's level goes
/// through SetLevel, so that a fade which runs meanwhile neither lifts a deck over the voice nor is undone
/// afterwards. Whoever shows the button lets go of it when it loses the focus or is hidden. Owned by the
/// Console; logic thread.
class PressToSpeak : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    ConsoleState& state;
    DeckEngine& decks;
  };

  explicit PressToSpeak(Services services) : services_(services) {}

  /// `AfadePress`: ignored during a transition, while a dip or a rise runs and while the decks are down. So a
  /// key that repeats may call it each time.
  void Press();
  /// `AfadeRelease`: the decks come back, from wherever they are. Without a dip it does nothing.
  void Release();

  /// Something else is heard over the decks for as long as `held`: they are down as behind a voice, and a
  /// voice that ends meanwhile does not bring them up. A transition is waited for.
  void SetHeld(bool held);

  /// The level that a deck has apart from a dip, as a loss 0..2000 (clamped).
  void SetLevel(Deck deck, int loss);

  /// `SldAfade`, 0..2000 (clamped): 2000 less the loss to which the decks fall. Moves decks that are down.
  void SetDepthSlider(int value);
  /// `SldAfSpd`, 1..10 (clamped).
  void SetSpeedSlider(int value);
  [[nodiscard]] int DepthSlider() const { return depthSlider_; }
  [[nodiscard]] int SpeedSlider() const { return speedSlider_; }
  /// What the labels beside the sliders show.
  [[nodiscard]] QString DepthText() const;
  [[nodiscard]] QString SpeedText() const { return QString::number(speedSlider_); }

  /// The loss to which the decks fall, 0..2000.
  [[nodiscard]] int AfadeDepth() const { return afadeDepth_; }
  [[nodiscard]] bool AfadeDown() const { return afadeDown_; }
  /// A dip or a rise runs: the displays may tick at their slow pace.
  [[nodiscard]] bool AfadeRunning() const { return afadeRunning_; }
  /// While a dip or a rise runs the commands of the decks are out of reach.
  [[nodiscard]] bool SectionDisabled() const { return afadeRunning_; }
  /// The loss to which the deck comes back (`AfadeSavedLeft`, `AfadeSavedRight`).
  [[nodiscard]] int AfadeSaved(Deck deck) const { return services_.decks.Record(deck).Level; }

 Q_SIGNALS:
  void Changed();

 private:
  enum class Direction { Down, Up };
  void GoDown();
  void GoUp();
  [[nodiscard]] Job<> RunFade(Direction direction);
  [[nodiscard]] bool Arrived(Direction direction) const;
  void Move(Direction direction, int by);
  void Write(Deck deck);
  /// A dip has the levels.
  [[nodiscard]] bool Dipped() const { return afadeDown_ || afadeRunning_; }
  void EndDip();

  Services services_;
  int depthSlider_ = 1000;
  int speedSlider_ = 5;
  int afadeDepth_ = 1000;
  bool afadeDown_ = false;
  bool afadeRunning_ = false;
  PerDeck<int> dip_;  ///< the least loss that a deck has for the dip's sake; 0 without a dip
  bool pressed_ = false;
  bool held_ = false;
  Timer retry_;  ///< while it is held: brings the decks down after what stands in the way
  Job<> fade_;
};

}  // namespace kelvo

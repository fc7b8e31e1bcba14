#pragma once

#include "console/SoakScene.h"

#include <optional>

namespace kelvo::testing {

/// Follows the slider and the levels of both decks: at each look they must be where the transition that
/// runs, or the last one, has brought them.
class SoakLevels {
 public:
  explicit SoakLevels(SoakScene& scene) : scene_(scene), law_{0, Deck::One, scene.settings.panFadeBias} {}

  /// The slider was put there by hand.
  void OnSlider(int place);
  /// A deck was started: with `kind`, at the speed that the slider has from now on. With an excuse its course
  /// is not compared.
  void OnStart(Deck deck, int kind, int speed, const QString& excuse, const SoakLook& look);
  void Look(const SoakLook& look);

  /// A start or a fade runs, which no other start may overtake while there is sound.
  [[nodiscard]] bool Runs(double now) const;
  /// The deck that comes in by the fade that runs.
  [[nodiscard]] bool ComesIn(Deck deck) const { return fade_ && fade_->kind != kDub && fade_->deck == deck; }
  /// A deck is started and it is not known yet whether it is heard.
  [[nodiscard]] bool Starting(double now) const { return fade_ && now < fade_->from + 1; }
  /// Why the course of the fade that runs is not compared; empty when it is.
  [[nodiscard]] QString Excused() const { return fade_ ? fade_->excuse : QString(); }
  /// The fade that runs, or the last one, was touched by a fault before its deck was heard.
  [[nodiscard]] bool Disturbed() const { return disturbed_; }
  /// The slider lets something be heard of the deck.
  [[nodiscard]] bool Lets(Deck deck, const DeskSight& sight) const {
    return LossAt(law_, sight.slider, deck) < 2000;
  }

 private:
  struct Fade {
    Deck deck = Deck::One;
    int kind = kDub;
    int slider = 0;  ///< its place
    double from = 0;
    FadeCourse course;
    QString excuse;
    bool stoodBy = false;  ///< the slider was seen where the fade begins
    bool moved = false;
    bool walks = false;  ///< the desk says so
  };
  void Follow(const SoakLook& look);
  void End(const DeskSight& now);
  void Excuse(const QString& reason);
  void CheckLosses(const DeskSight& now);

  SoakScene& scene_;
  LawOfLevels law_;
  LawOfLevels lawBefore_;
  std::optional<int> lawFrom_;  ///< the slider has been there since the law changed
  int home_ = 0;                ///< where the slider is while nothing runs
  std::optional<Fade> fade_;
  bool disturbed_ = false;
};

}  // namespace kelvo::testing

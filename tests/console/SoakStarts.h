#pragma once

#include "console/SoakLevels.h"
#include "console/SoakRounds.h"
#include "console/SoakScene.h"

#include <QHash>

#include <optional>

namespace kelvo::testing {

/// Follows both decks from load to end, works out when the next start is due and how, and compares it with
/// what the desk does.
class SoakStarts {
 public:
  SoakStarts(SoakScene& scene, SoakLevels& levels, SoakRounds& rounds);

  void Look(const SoakLook& look);

  /// An info file was written or is gone.
  void OnInfoChanged(const QString& infoPath) { infoChanged_[infoPath] = scene_.desk.Now(); }
  /// The stream of a deck broke off: for the desk it has ended.
  void OnBrokeOff(Deck deck) { decks_[deck].brokeOff = true; }
  /// The desk was switched on by hand: it starts a deck as it finds them.
  void OnSwitch() { switched_ = true; }

  /// A deck moves on and the slider lets it be heard.
  [[nodiscard]] bool Sounds(Deck deck, const SoakLook& look) const;
  /// A deck has just begun to wait for its next track.
  [[nodiscard]] bool LoadDue() const { return loadDue_; }

 private:
  struct DeckCourse {
    QString path;
    TrackRules rules;
    QString unknown;  ///< why its rules are not known
    double loadedAt = 0;
    double loadingFrom = 0;  ///< the last look at which no load was under way
    bool started = false;
    bool done = false;  ///< ended, stopped, or fading out
    bool ended = false;
    bool brokeOff = false;
    bool sounded = false;  ///< at the last look
    double dueFrom = -1;   ///< the start of this deck is due since then
    double freeFrom = -1;  ///< it waits for a load since then
    bool told = false;
  };
  void SeeDeck(Deck deck, const SoakLook& look);
  void OnLoaded(Deck deck, const SoakLook& look);
  void OnStarted(Deck deck, const SoakLook& look);
  void OnEnded(Deck deck, const SoakLook& look);
  void CheckDue(Deck deck, const SoakLook& look);
  void CheckFree(Deck deck, const SoakLook& look);
  void CheckPlan(const SoakLook& look);
  [[nodiscard]] bool Due(Deck deck, const SoakLook& look) const;
  [[nodiscard]] double DurationOf(Deck deck, const DeskSight& now) const;
  [[nodiscard]] bool Silent(const SoakLook& look) const;
  void Resync(const QString& reason);

  SoakScene& scene_;
  SoakLevels& levels_;
  SoakRounds& rounds_;
  PerDeck<DeckCourse> decks_;
  StartPlan plan_;
  QString planUnknown_;
  double planFrom_ = 0;  ///< the desk may work on it until a moment later
  QHash<QString, double> infoChanged_;
  bool switched_ = false;
  bool firstStart_ = false;  ///< the last one was that with which the desk was switched on
  bool loadDue_ = false;
  bool disturbed_ = false;
};

}  // namespace kelvo::testing

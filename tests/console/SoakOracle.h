#pragma once

#include "console/desk/DeckTypes.h"

#include <QByteArray>

#include <optional>

namespace kelvo::testing {

/// The rules of automatic play, written a second time: when a start is due, with which transition and at
/// which speed, and how high the levels of the decks are meanwhile. They are worked out from the files of a
/// database alone and know nothing of how the desk does it.

/// How the desk plays.
enum class SoakMode { Kelvo, Jukebox, Preview, Random };

inline constexpr int kDub = 1;
inline constexpr int kPartFade = 2;
inline constexpr int kPan = 3;

/// What an info file says of a track's start and end.
struct TrackRules {
  bool custom = false;
  int kind = kDub;
  int fadeOutAt = 0;  ///< seconds before the end
  int fadeInAt = 0;
  int fadeOutSpeed = 0;
  int fadeInSpeed = 0;
  std::optional<int> loadedSpeed;  ///< a load puts the fade speed slider here
  int startStyle = 1;
  int endStyle = 0;
};
/// The default settings of a track without an info file are used where there is none (empty).
[[nodiscard]] TrackRules RulesOf(const std::optional<QByteArray>& infoFile, int defaultDelta);

/// When and how the next deck starts.
struct StartPlan {
  int delta = 0;  ///< seconds before the end of the playing track
  int kind = kDub;
  int speed = 0;  ///< the fade speed slider, 0..50
  bool operator==(const StartPlan&) const = default;
};

/// A deck was started: what that makes of the plan.
struct Started {
  TrackRules track;
  TrackRules other;  ///< of the other deck's track; the same one where that deck holds none
  int length = 0;    ///< of the track, whole seconds
  int prevSecs = 15;
};
[[nodiscard]] StartPlan PlanAfterStart(SoakMode mode, StartPlan plan, const Started& started);
/// A deck was loaded while the other one held a track or not.
[[nodiscard]] StartPlan PlanAfterLoad(SoakMode mode, StartPlan plan, const TrackRules& loaded,
                                      bool otherHolds);
/// The playing track, `duration` seconds long, has reached the point where the next one starts.
[[nodiscard]] bool IsDue(const StartPlan& plan, double duration, double position);

/// Losses of the two decks for a place of the slider, -200..200.
struct LawOfLevels {
  int kind = 0;  ///< of the last transition
  Deck side = Deck::One;
  int panFadeBias = 12;
};
[[nodiscard]] int LossAt(const LawOfLevels& law, int slider, Deck deck);

/// How the slider goes once a deck was started, in seconds from the start.
struct FadeCourse {
  int home = 0;           ///< where the slider ends
  double endsAfter = 0;   ///< at the earliest; a quarter of a second more at the latest
  std::optional<int> by;  ///< the place from which it moves, where that is not where it was
};
[[nodiscard]] FadeCourse CourseOf(int kind, Deck side, int slider, int speed);

}  // namespace kelvo::testing

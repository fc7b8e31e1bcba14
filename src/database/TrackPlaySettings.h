#pragma once

#include "database/TransitionKind.h"

#include <optional>

namespace kelvo {

/// The greatest place of a fade, in seconds, and the greatest fade speed.
inline constexpr int kMostFadePosition = 32767;
inline constexpr int kMostFadeSpeed = 50;

/// Whether a track has fades of its own, and of which kind.
struct PlayMode {
  bool custom = false;  ///< its own settings count; otherwise the default table of automatic play
  TransitionKind fadeOut = TransitionKind::Dub;  ///< None where the file says neither 1, 2 nor 3
  TransitionKind fadeIn = TransitionKind::Dub;
  bool operator==(const PlayMode&) const = default;
};

/// A number for the fade-out and one for the fade-in.
struct FadePair {
  int fadeOut = 0;
  std::optional<int> ownFadeIn;  ///< none where one value serves for both

  [[nodiscard]] int FadeIn() const { return ownFadeIn.value_or(fadeOut); }
  bool operator==(const FadePair&) const = default;
};

/// How a track is to be started and ended. A value.
struct TrackPlaySettings {
  PlayMode Mode;
  FadePair FadePosition;  ///< seconds, 0..32767
  FadePair FadeSpeed;     ///< 0..50
  int StartStyle = 1;     ///< 0 soft, 1 strong; the file may hold any other number, which is neither
  int EndStyle = 0;       ///< the same
  bool operator==(const TrackPlaySettings&) const = default;
};

}  // namespace kelvo

#include "playlists/GroupClips.h"

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

constexpr std::array kPlayers{2, 3};

/// The deck as it is while the steps are gone through.
struct Lane {
  DeckClip clip;
  bool loaded = false;
  bool heard = false;
  bool falls = false;
  int length = 0;
  int last = 0;  ///< the track is over then, if nothing ends it before
};

class Walk {
 public:
  explicit Walk(const GroupEdit& edit) : edit_(edit) {}

  std::vector<DeckClip> Clips() {
    for (int row = 0; row < edit_.Count(); ++row) Take(row);
    for (const int player : kPlayers) {
      Lane& lane = Of(player);
      End(lane, lane.length > 0 || edit_.Count() == 0 ? lane.last : edit_.Rows().back().element.seconds);
    }
    return std::move(clips_);
  }

 private:
  Lane& Of(int player) { return lanes_[player == kPlayers[0] ? 0 : 1]; }

  void Take(int row) {
    const GroupElement& step = edit_.At(row);
    Lane& lane = Of(step.deck);
    Lane& other = Of(step.deck == kPlayers[0] ? kPlayers[1] : kPlayers[0]);
    switch (step.code) {
      case SessionCode::Loaded:
        End(lane, step.seconds);
        lane = {.clip = {.deck = step.deck, .track = step.track}, .loaded = true, .length = step.length};
        break;
      case SessionCode::TrackStarted:
      case SessionCode::DubStarted:
        Begin(lane, step.seconds);
        break;
      case SessionCode::FadeStarted:
        Begin(lane, step.seconds);
        Fade(row, lane, other);
        break;
      case SessionCode::FadeEnded:
        if (other.falls) End(other, step.seconds);
        break;
      case SessionCode::TrackStopped:
      case SessionCode::EndOfTrack:
        End(lane, step.seconds);
        break;
      case SessionCode::PositionChangedDeckOne:
      case SessionCode::PositionChangedDeckTwo:
        lane.last = step.seconds + std::max(lane.length - static_cast<int>(step.position), 0);
        break;
      case SessionCode::DubEnded:
      case SessionCode::Repeat:
        break;
    }
  }

  static void Begin(Lane& lane, int seconds) {
    if (!lane.loaded || lane.heard) return;
    lane.heard = true;
    lane.clip.from = lane.clip.risesUntil = seconds;
    lane.last = seconds + lane.length;
  }

  void Fade(int row, Lane& coming, Lane& going) const {
    const GroupElement& step = edit_.At(row);
    const std::optional<int> end = edit_.FadeEndOf(row);
    // The start of the coming deck is noted within the second; a part fade brings it in at once.
    const bool fresh = step.seconds - coming.clip.from <= 1;
    if (coming.heard && fresh && step.fade != TransitionKind::PartFade)
      coming.clip.risesUntil = end ? edit_.At(*end).seconds : edit_.Begin(row).endSeconds;
    if (!going.heard) return;
    going.falls = true;
    going.clip.fallsFrom = step.seconds;
  }

  void End(Lane& lane, int seconds) {
    if (lane.heard) {
      DeckClip clip = lane.clip;
      clip.to = lane.length > 0 ? std::min(seconds, std::max(lane.last, clip.from)) : seconds;
      clip.risesUntil = std::min(clip.risesUntil, clip.to);
      clip.fallsFrom = lane.falls ? std::min(clip.fallsFrom, clip.to) : clip.to;
      if (clip.to > clip.from) clips_.push_back(clip);
    }
    lane = {};
  }

  const GroupEdit& edit_;
  std::array<Lane, 2> lanes_;
  std::vector<DeckClip> clips_;
};

}  // namespace

std::vector<DeckClip> DeckClips(const GroupEdit& edit) {
  return Walk(edit).Clips();
}

}  // namespace kelvo

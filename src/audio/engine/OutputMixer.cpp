#include "audio/engine/OutputMixer.h"

#include "audio/engine/RealtimeScope.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

/// Far above what players can add up to: only what is broken is beyond it.
constexpr float kMostLevel = 256;

}  // namespace

bool OutputMixer::Add(PlayerCore& core) {
  const auto place = std::find_if(players_.begin(), players_.end(), [](const auto& each) {
    return each.load(std::memory_order_relaxed) == nullptr;
  });
  if (place == players_.end()) return false;
  place->store(&core);
  return true;
}

void OutputMixer::Remove(const PlayerCore& core) {
  for (auto& place : players_) {
    if (place.load(std::memory_order_relaxed) == &core) place.store(nullptr);
  }
}

bool OutputMixer::Render(std::span<float> target) noexcept {
  if (rendering_.test_and_set(std::memory_order_acquire)) {
    std::fill(target.begin(), target.end(), 0.0F);
    return false;
  }
  if (!feedsInline_) {
    Mix(target);
  } else {
    // A stretch at a time, so that the filled rings last for it at any rate.
    constexpr std::size_t kStretch = 8 * kBlockFrames * kChannels;
    for (std::size_t at = 0; at < target.size(); at += kStretch) {
      for (const auto& place : players_) {
        if (PlayerCore* const core = place.load()) core->feeder.FillNow();
      }
      Mix(target.subspan(at, std::min(kStretch, target.size() - at)));
    }
  }
  rendering_.clear(std::memory_order_release);
  return true;
}

void OutputMixer::Mix(std::span<float> target) noexcept {
  const RealtimeScope scope;
  // The places are looked at after the count has turned odd, and cleared before it is asked for: so a render
  // either is seen by the one who removes a player, or does not see the player.
  renders_.fetch_add(1);
  std::fill(target.begin(), target.end(), 0.0F);
  for (const auto& place : players_) {
    PlayerCore* const core = place.load();
    if (core && !core->voice.Mix(target)) underruns_.fetch_add(1, std::memory_order_relaxed);
  }
  for (float& sample : target) {
    if (!(std::abs(sample) <= kMostLevel))
      sample = std::isnan(sample) ? 0.0F : std::copysign(kMostLevel, sample);
  }
  limiter_.Process(target);
  gain_.store(limiter_.Gain(), std::memory_order_relaxed);
  renders_.fetch_add(1);
}

}  // namespace kelvo

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

std::shared_ptr<const Tap> OutputMixer::OpenTap() {
  if (!ownTap_) {
    ownTap_ = std::make_shared<Tap>();
    tap_.store(ownTap_.get(), std::memory_order_release);
  }
  return ownTap_;
}

bool OutputMixer::Render(std::span<float> target, FrameIndex revocable, FrameIndex unheard) noexcept {
  if (rendering_.test_and_set(std::memory_order_acquire)) {
    std::fill(target.begin(), target.end(), 0.0F);
    return false;
  }
  if (!feedsInline_) {
    Mix(target, revocable);
  } else {
    // A stretch at a time, so that the filled rings last for it at any rate.
    constexpr std::size_t kStretch = 8 * kBlockFrames * kChannels;
    for (std::size_t at = 0; at < target.size(); at += kStretch) {
      for (const auto& place : players_) {
        if (PlayerCore* const core = place.load()) core->feeder.FillNow();
      }
      const auto part = target.subspan(at, std::min(kStretch, target.size() - at));
      const auto behind = static_cast<FrameIndex>((target.size() - at - part.size()) / kChannels);
      Mix(part, std::max<FrameIndex>(revocable - behind, 0));
    }
  }
  if (Tap* const tap = tap_.load(std::memory_order_acquire)) tap->Publish(settled_, frame_ - unheard);
  rendering_.clear(std::memory_order_release);
  return true;
}

void OutputMixer::Mix(std::span<float> target, FrameIndex revocable) noexcept {
  const RealtimeScope scope;
  // The places are looked at after the count has turned odd, and cleared before it is asked for: so a render
  // either is seen by the one who removes a player, or does not see the player.
  renders_.fetch_add(1);
  settled_ = std::max(settled_, frame_ + static_cast<FrameIndex>(target.size() / kChannels) - revocable);
  const std::size_t step = revocable > 0 ? kMarkFrames * kChannels : target.size();
  for (std::size_t at = 0; at < target.size(); at += step) {
    if (revocable > 0) KeepMark();
    MixPart(target.subspan(at, std::min(step, target.size() - at)));
  }
  const bool waits = std::any_of(players_.begin(), players_.end(), [](const auto& place) {
    const PlayerCore* const core = place.load();
    return core && core->voice.Waits();
  });
  waits_.store(waits, std::memory_order_relaxed);
  Tell();
  renders_.fetch_add(1);
}

void OutputMixer::MixPart(std::span<float> target) noexcept {
  std::fill(target.begin(), target.end(), 0.0F);
  // What is rendered again has been counted.
  const bool counts = frame_ >= furthest_;
  for (const auto& place : players_) {
    PlayerCore* const core = place.load();
    if (core && !core->voice.Mix(target, frame_) && counts)
      underruns_.fetch_add(1, std::memory_order_relaxed);
  }
  for (float& sample : target) {
    if (!(std::abs(sample) <= kMostLevel))
      sample = std::isnan(sample) ? 0.0F : std::copysign(kMostLevel, sample);
  }
  limiter_.Process(target);
  if (Tap* const tap = tap_.load(std::memory_order_acquire)) tap->Write(frame_, target);
  frame_ += static_cast<FrameIndex>(target.size() / kChannels);
  furthest_ = std::max(furthest_, frame_);
}

void OutputMixer::KeepMark() noexcept {
  if (next_ - first_ == kMostMarks) {
    ++first_;
    settled_ = std::max(settled_, At(first_).frame);
  }
  At(next_) = {frame_, limiter_};
  for (const auto& place : players_) {
    if (PlayerCore* const core = place.load()) core->voice.Keep(next_);
  }
  ++next_;
}

void OutputMixer::Tell() noexcept {
  const bool all = settled_ >= frame_;
  if (all) {
    settled_ = frame_;
    first_ = next_;
    gain_.store(limiter_.Gain(), std::memory_order_relaxed);
  } else {
    while (first_ + 1 < next_ && At(first_ + 1).frame <= settled_) ++first_;
    if (first_ == next_ || At(first_).frame > settled_) return;
    gain_.store(At(first_).limiter.Gain(), std::memory_order_relaxed);
  }
  for (const auto& place : players_) {
    PlayerCore* const core = place.load();
    if (!core) continue;
    if (all) {
      core->voice.TellAll();
    } else {
      core->voice.TellUpTo(first_);
    }
  }
}

bool OutputMixer::AllCanGoBack(MarkNumber mark) const noexcept {
  return std::all_of(players_.begin(), players_.end(), [mark](const auto& place) {
    const PlayerCore* const core = place.load();
    return !core || core->voice.CanGoBack(mark);
  });
}

FrameIndex OutputMixer::TakeBack(FrameIndex most) noexcept {
  if (rendering_.test_and_set(std::memory_order_acquire)) return 0;
  const RealtimeScope scope;
  renders_.fetch_add(1);
  const FrameIndex from = frame_;
  const FrameIndex least = std::max(settled_, frame_ - most);
  MarkNumber mark = first_;
  while (mark < next_ && (At(mark).frame < least || !AllCanGoBack(mark))) ++mark;
  if (mark < next_) {
    frame_ = At(mark).frame;
    limiter_ = At(mark).limiter;
    next_ = mark;
    for (const auto& place : players_) {
      if (PlayerCore* const core = place.load()) core->voice.GoBack(mark);
    }
  }
  renders_.fetch_add(1);
  rendering_.clear(std::memory_order_release);
  return from - frame_;
}

}  // namespace kelvo

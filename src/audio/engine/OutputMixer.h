#pragma once

#include "audio/engine/Limiter.h"
#include "audio/engine/Marks.h"
#include "audio/engine/PlayerCore.h"
#include "audio/engine/Tap.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace kelvo {

/// The bus of one output: adds up its voices and keeps the sum below the limiter's ceiling. A device's
/// callback and the silent clock may both ask for sound: one gets it, the other learns it at once. Kept alive
/// by everyone who may render.
class OutputMixer {
 public:
  static constexpr std::size_t kMostPlayers = 64;

  /// `feedsInline`: there are no decoder threads, so the rings are filled before each stretch.
  explicit OutputMixer(bool feedsInline) : feedsInline_(feedsInline) {}

  /// Returns false when there is no place left. Logic thread, as the next three.
  [[nodiscard]] bool Add(PlayerCore& core);
  /// From the next render on `core` is not touched; see MayFree.
  void Remove(const PlayerCore& core);
  /// A mark to ask MayFree with, taken after Remove.
  [[nodiscard]] std::uint64_t RenderMark() const { return renders_.load(); }
  /// True once no render that was under way at `mark` can still be.
  [[nodiscard]] bool MayFree(std::uint64_t mark) const { return mark % 2 == 0 || renders_.load() != mark; }

  /// What this output plays, from the first call on. Logic thread.
  [[nodiscard]] std::shared_ptr<const Tap> OpenTap();

  /// Fills `target` (interleaved stereo, within the limiter's ceiling). Of all that has been rendered then,
  /// the last `revocable` frames may be asked for again with TakeBack; what came of the others is told.
  /// `unheard` of it wait on their way to the loudspeaker. Returns false, and silence, when another thread is
  /// rendering.
  bool Render(std::span<float> target, FrameIndex revocable = 0, FrameIndex unheard = 0) noexcept;
  /// Takes back up to `most` of the frames rendered last: the next Render begins with them, and follows the
  /// orders of its own time. Returns how many; 0 also when another thread is rendering.
  [[nodiscard]] FrameIndex TakeBack(FrameIndex most) noexcept;

  /// True when a player that is to play has not got its data yet. Any thread.
  [[nodiscard]] bool Waits() const { return waits_.load(std::memory_order_relaxed); }

  /// The limiter's gain at the last frame that is settled; 1 when it has nothing to do. Any thread.
  [[nodiscard]] float LimiterGain() const { return gain_.load(std::memory_order_relaxed); }

  /// The device that plays this ran dry. Any thread.
  void CountDropout() noexcept { dropouts_.fetch_add(1, std::memory_order_relaxed); }
  /// How often a device ran dry, as far as devices tell.
  [[nodiscard]] std::uint64_t Dropouts() const { return dropouts_.load(std::memory_order_relaxed); }

  /// Stretches in which a voice that should have sounded had no data.
  [[nodiscard]] std::uint64_t Underruns() const { return underruns_.load(std::memory_order_relaxed); }

 private:
  struct Mark {
    FrameIndex frame = 0;
    Limiter limiter;
  };

  void Mix(std::span<float> target, FrameIndex revocable) noexcept;
  void MixPart(std::span<float> target) noexcept;
  void KeepMark() noexcept;
  [[nodiscard]] bool AllCanGoBack(MarkNumber mark) const noexcept;
  void Tell() noexcept;
  [[nodiscard]] Mark& At(MarkNumber mark) { return marks_[mark % kMostMarks]; }

  const bool feedsInline_;
  std::array<std::atomic<PlayerCore*>, kMostPlayers> players_{};
  std::atomic_flag rendering_;
  std::atomic<std::uint64_t> renders_{0};  ///< odd while a render is under way
  std::atomic<std::uint64_t> underruns_{0};
  std::atomic<std::uint64_t> dropouts_{0};
  std::atomic<float> gain_{1};
  std::atomic<bool> waits_{false};
  std::shared_ptr<Tap> ownTap_;  ///< the logic thread's; what it points to stays as long as the mixer
  std::atomic<Tap*> tap_{nullptr};

  // The rendering thread's:
  Limiter limiter_;
  FrameIndex frame_ = 0;     ///< rendered so far
  FrameIndex furthest_ = 0;  ///< the highest that it ever was
  FrameIndex settled_ = 0;   ///< what is before it is never taken back
  // The marks from first_ to before next_ are kept. The first is the last one that is settled, or there is
  // none.
  MarkNumber first_ = 1;
  MarkNumber next_ = 1;
  std::array<Mark, kMostMarks> marks_{};
};

}  // namespace kelvo

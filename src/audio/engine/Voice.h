#pragma once

#include "audio/engine/Ramp.h"
#include "audio/engine/SoundBlock.h"
#include "audio/engine/VarispeedReader.h"

#include <array>
#include <atomic>
#include <optional>
#include <span>

namespace kelvo {

/// What one player sounds like. The logic's thread says what is wanted and reads what came of it, each in a
/// single atomic word; Mix runs in the device's callback and takes a ramp to every change. Owned by a
/// player's core.
class Voice {
 public:
  explicit Voice(SoundRing& ring) : reader_(ring) {}

  // The logic's thread.
  void Want(Generation generation, bool playing);
  void SetGains(float left, float right);
  void SetRate(double rate) { wantedRate_.store(rate, std::memory_order_relaxed); }
  /// The voice's position in `generation`; nothing before it has reached it.
  [[nodiscard]] std::optional<FrameIndex> PositionIn(Generation generation) const;
  /// True when `generation` has been played to its end.
  [[nodiscard]] bool HasEnded(Generation generation) const;
  /// True when nothing of it sounds any more.
  [[nodiscard]] bool Silent() const { return silent_.load(std::memory_order_acquire); }

  /// Adds `target.size() / 2` frames to `target`. Returns false when it ran dry: it should have sounded and
  /// its ring was empty.
  bool Mix(std::span<float> target) noexcept;

 private:
  struct Frame {
    float left = 0;
    float right = 0;
  };
  /// Reads up to `frames` frames, levels them and adds them at `target`; returns how many there were.
  std::size_t Sound(float* target, std::size_t frames);
  void AddTail(std::span<float> target);
  void Publish();

  std::atomic<std::uint64_t> wanted_{0};       ///< generation << 1 | playing
  std::atomic<std::uint64_t> wantedGains_{0};  ///< two floats; starts silent
  std::atomic<double> wantedRate_{1.0};
  std::atomic<std::uint64_t> position_{0};  ///< low 24 bits of the generation, then 40 bits of frame
  std::atomic<std::uint64_t> ended_{0};     ///< generation << 1 | 1
  std::atomic<bool> silent_{true};

  // The callback alone:
  VarispeedReader reader_;
  Ramp<float> envelope_{0.0F};
  Ramp<float> left_{0.0F};
  Ramp<float> right_{0.0F};
  static constexpr std::size_t kChunk = 256;
  std::array<float, kChunk * kChannels> chunk_{};
  Frame last_;        ///< the last frame that was added
  Frame tail_;        ///< what an abrupt silence starts from, and
  int tailLeft_ = 0;  ///< how much of its ramp to zero is left
};

}  // namespace kelvo

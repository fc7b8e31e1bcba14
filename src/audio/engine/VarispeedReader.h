#pragma once

#include "audio/engine/Ramp.h"
#include "audio/engine/SincTable.h"
#include "audio/engine/SoundBlock.h"

#include <array>
#include <span>

namespace kelvo {

/// Reads one generation out of a ring at a rate that may glide from 0.5 to 2. At rate 1 it copies, bit for
/// bit; going over to it and away from it is seamless. Part of a voice; runs in the device's callback.
class VarispeedReader {
 public:
  explicit VarispeedReader(SoundRing& ring) : ring_(ring), sinc_(SincTable::Get()) {}

  [[nodiscard]] Generation Current() const { return generation_; }
  /// Forgets what it holds and goes on with `generation`, at once at `rate`.
  void Begin(Generation generation, double rate);
  /// Empties the ring of blocks that nobody will hear.
  void DropOlder();
  /// True when a newer generation is next in the ring: of this one nothing more comes.
  [[nodiscard]] bool Overtaken() const;
  void SetRate(double rate);

  /// Stereo frames into `target`; fewer than asked for when the ring is empty or at the end.
  [[nodiscard]] std::size_t Read(std::span<float> target);
  /// True when the last frame of the generation has been read.
  [[nodiscard]] bool AtEnd() const { return ended_ && index_ >= size_; }
  /// True once the generation's first block has come.
  [[nodiscard]] bool Started() const { return started_; }
  /// The stream's frame that is read next. Only when Started.
  [[nodiscard]] FrameIndex Position() const { return base_ + static_cast<FrameIndex>(index_); }

 private:
  /// The widest kernel, at rate 2, and the frame in the middle.
  static constexpr std::size_t kHistory = SincTable::kReach * 2 + 2;
  static constexpr std::size_t kWindowFrames = 2048;

  [[nodiscard]] bool Pull();
  void MakeRoom();
  /// Pulls until `frames` are ready at and behind the read position, or no more come.
  void Ensure(std::size_t frames);
  [[nodiscard]] std::size_t Copy(std::span<float> target);
  [[nodiscard]] bool Interpolate(float* frame);
  void Advance();

  SoundRing& ring_;
  const SincTable& sinc_;
  Generation generation_ = 0;
  Ramp<double> rate_{1.0};
  std::array<float, kWindowFrames * kChannels> window_{};
  std::size_t index_ = 0;
  std::size_t size_ = 0;
  double fraction_ = 0;
  FrameIndex base_ = 0;
  bool started_ = false;
  bool ended_ = false;
};

}  // namespace kelvo

#pragma once

#include "audio/engine/Ramp.h"
#include "audio/engine/SincTable.h"
#include "audio/engine/SoundTape.h"

#include <span>

namespace kelvo {

/// Reads one generation out of a ring at a rate that may glide from 0.5 to 2. At rate 1 it copies, bit for
/// bit; going over to it and away from it is seamless. Part of a voice; runs in the device's callback.
class VarispeedReader {
 public:
  /// All that it needs to go on from where it is now, as long as the tape keeps the place.
  struct Mark {
    Generation generation = 0;
    bool started = false;
    Ramp<double> rate{1.0};
    SoundTape::Place index = 0;
    double fraction = 0;
  };

  explicit VarispeedReader(SoundRing& ring) : tape_(ring), sinc_(SincTable::Get()) {}

  [[nodiscard]] Generation Current() const { return at_.generation; }
  /// Forgets where it is and goes to the first frame of `generation`, at once at `rate`.
  void Begin(Generation generation, double rate);
  /// Empties the ring of blocks that nobody will hear.
  void DropOlder() { tape_.DropOlder(at_.generation); }
  /// True when a newer generation is next in the ring: of this one nothing more comes.
  [[nodiscard]] bool Overtaken() const { return tape_.Overtaken(at_.generation); }
  void SetRate(double rate);

  /// Stereo frames into `target`; fewer than asked for when the ring is empty or at the end.
  [[nodiscard]] std::size_t Read(std::span<float> target);
  /// True when the last frame of the generation has been read.
  [[nodiscard]] bool AtEnd() const { return stretch_ && stretch_->complete && at_.index >= stretch_->end; }
  /// True once the generation's first block has come.
  [[nodiscard]] bool Started() const { return stretch_ != nullptr; }
  /// The stream's frame that is read next. Only when Started.
  [[nodiscard]] FrameIndex Position() const {
    return stretch_->start + static_cast<FrameIndex>(at_.index - stretch_->begin);
  }

  [[nodiscard]] const Mark& Here() const { return at_; }
  [[nodiscard]] bool CanGoTo(const Mark& mark) const { return !mark.started || tape_.Keeps(mark.index); }
  /// Goes on as it did from `mark` on.
  void GoTo(const Mark& mark);

 private:
  /// The widest kernel, at rate 2, and the frame in the middle.
  static constexpr std::size_t kHistory = SincTable::kReach * 2 + 2;
  static_assert(kHistory <= SoundTape::kLeader);

  [[nodiscard]] bool Pull();
  /// Looks for the present generation on the tape.
  void FindStretch();
  /// Frames at and behind the read position.
  [[nodiscard]] std::size_t Ready() const { return stretch_ ? stretch_->end - at_.index : 0; }
  /// Pulls until `frames` are ready, or no more come.
  void Ensure(std::size_t frames);
  [[nodiscard]] std::size_t Copy(std::span<float> target);
  [[nodiscard]] bool Interpolate(float* frame);
  void Advance();

  SoundTape tape_;
  const SincTable& sinc_;
  Mark at_;
  const SoundTape::Stretch* stretch_ = nullptr;  ///< the present generation's, once it has begun
};

}  // namespace kelvo

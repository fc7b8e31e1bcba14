#pragma once

#include "audio/engine/SoundBlock.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kelvo {

/// What a voice took out of its ring last, more than a second of it at any rate, so that the voice can go
/// back and read it again. Blocks are copied from the ring and freed there at once. Part of a voice; runs in
/// the device's callback.
class SoundTape {
 public:
  /// A place on the tape. Counts up from the voice's first frame on.
  using Place = std::uint64_t;

  /// What of a generation is on the tape.
  struct Stretch {
    Generation generation = 0;
    Place begin = 0;
    Place end = 0;
    FrameIndex start = 0;   ///< place of its first frame in the stream
    bool complete = false;  ///< nothing follows in this generation
  };

  /// Silent frames that stand before each stretch.
  static constexpr std::size_t kLeader = 64;

  explicit SoundTape(SoundRing& ring);

  /// Takes the next block of `generation` out of the ring, older ones are dropped. Returns false when the
  /// next is of another one, or none has come.
  [[nodiscard]] bool Pull(Generation generation);
  /// Empties the ring of blocks that nobody will hear.
  void DropOlder(Generation generation);
  /// True when a newer generation has come: of this one nothing more does.
  [[nodiscard]] bool Overtaken(Generation generation) const;
  /// The stretch of `generation`; null before its first block, and when it was long ago. Valid until eight
  /// newer generations have come.
  [[nodiscard]] const Stretch* Find(Generation generation) const;

  /// True while nothing has been written over `place` and the leader before it.
  [[nodiscard]] bool Keeps(Place place) const { return place + kFrames >= end_ + kLeader; }
  /// The two samples of the frame at `place`.
  [[nodiscard]] const float* Frame(Place place) const {
    return &samples_[(place & (kFrames - 1)) * kChannels];
  }
  /// How many frames from `place` on lie one behind the other in memory.
  [[nodiscard]] std::size_t Together(Place place) const { return kFrames - (place & (kFrames - 1)); }

 private:
  /// Holds what the largest reserve takes at twice the speed, and what seeks leave unread.
  static constexpr std::size_t kFrames = 65536;
  static constexpr std::size_t kStretches = 8;

  [[nodiscard]] const Stretch& Newest() const { return stretches_[begun_ % kStretches]; }
  void Append(const float* samples, std::size_t frames);

  SoundRing& ring_;
  std::vector<float> samples_;
  std::array<Stretch, kStretches> stretches_{};
  std::size_t begun_ = 0;  ///< stretches begun so far, the empty first one not counted
  Place end_ = 0;
};

}  // namespace kelvo

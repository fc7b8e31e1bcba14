#pragma once

#include "audio/engine/Tap.h"
#include "platform/EventLoop.h"

#include <array>
#include <memory>
#include <vector>

namespace kelvo {

/// What an output plays, in levels. 0 dB is full scale; what is silent is kSilence.
struct MeterLevels {
  static constexpr double kSilence = -120;
  struct Side {
    double peak = kSilence;  ///< rises at once, falls by 20 dB in 1.5 s
    double hold = kSilence;  ///< the highest peak of the last two seconds
    double rms = kSilence;   ///< over 300 ms
  };
  std::array<Side, kChannels> sides;
  double momentary = kSilence;  ///< loudness over 400 ms, in LUFS
};

/// Works the levels out from a tap, up to what is heard now, each time it is asked. Owned by whoever shows
/// them; one thread.
class ProgrammeMeter {
 public:
  explicit ProgrammeMeter(std::shared_ptr<const Tap> tap);
  ~ProgrammeMeter();

  /// The levels at this moment. After a pause it begins anew.
  [[nodiscard]] const MeterLevels& Look();

 private:
  /// What falls and is averaged, of one side.
  struct Fall {
    double peak = 0;
    double hold = 0;
    FrameIndex heldFor = 0;
    double square = 0;
  };
  struct Loudness;

  void Begin(FrameIndex at);
  void Take(std::span<const float> sound);

  const std::shared_ptr<const Tap> tap_;
  std::unique_ptr<Loudness> loudness_;
  FrameIndex next_ = -1;
  std::array<Fall, kChannels> falls_;
  std::vector<float> part_;
  MeterLevels levels_;
};

}  // namespace kelvo

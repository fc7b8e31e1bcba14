#pragma once

#include "audio/AudioSystem.h"
#include "audio/ProgrammeMeter.h"
#include "console/scope/MovingPicture.h"

#include <deque>
#include <memory>

namespace kelvo {

/// The levels of what is heard on air, and the limiter's lamp. Owned by the Console; logic thread.
class ProgrammeLevels : public MovingPicture {
  Q_OBJECT
 public:
  ProgrammeLevels(PictureBeat& beat, EventLoop& loop, AudioSystem& audio);
  ~ProgrammeLevels() override;

  [[nodiscard]] const MeterLevels& Levels() const { return levels_; }
  /// Momentary loudness as digits that an eye can read: they change five times a second.
  [[nodiscard]] const QString& LoudnessWords() const { return loudness_; }
  /// The limiter works on what is heard, or has a moment ago.
  [[nodiscard]] bool LampLit() const { return reduction_ > 0; }
  /// The most that it turned the programme down by while the lamp is lit, in decibels.
  [[nodiscard]] double Reduction() const { return reduction_; }

  /// The way along a meter's scale, 0 to 1, for a level: the upper 20 dB take half of it.
  [[nodiscard]] static double Deflection(double decibels);

 Q_SIGNALS:
  void LampChanged();

 protected:
  void Renew() override;
  void Rest() override;

 private:
  struct LimiterWork {
    Nanoseconds heardAt;
    double decibels;
  };
  void FollowLimiter(const Tap& tap, Nanoseconds now);

  EventLoop& loop_;
  AudioSystem& audio_;
  std::shared_ptr<const Tap> tap_;
  std::unique_ptr<ProgrammeMeter> meter_;
  MeterLevels levels_;
  QString loudness_;
  Nanoseconds loudnessAt_{0};
  std::deque<LimiterWork> unheard_;  ///< what the limiter did to sound that is still on its way
  double reduction_ = 0;
  Nanoseconds litUntil_{0};
};

}  // namespace kelvo

#pragma once

#include "platform/EventLoop.h"

namespace kelvo {

/// What the desk knows of the air at a moment.
struct AirFacts {
  bool sounds = false;   ///< something moves on and can be heard
  bool wanted = false;   ///< the desk plays by itself
  bool planned = false;  ///< silence was asked for: a pause, the gap of the jukebox
};

/// Tells when the programme is silent and nobody planned it. Silence is planned until something has been
/// heard, and from the moment on at which the operator stops what plays. A value; the Console asks it each
/// second.
class AirWatch {
 public:
  /// Longer silence than this is reported.
  static constexpr Nanoseconds kBearable = std::chrono::seconds(2);

  /// Something is to be heard from now on: a deck was started.
  void Expect(Nanoseconds now) {
    if (!expected_) silentSince_ = now;
    expected_ = true;
  }
  /// The operator wants silence.
  void Accept() { expected_ = false; }

  /// To be called a few times a second.
  void Look(const AirFacts& facts, Nanoseconds now) {
    if (facts.sounds || facts.wanted) Expect(now);
    if (facts.sounds || facts.planned || !expected_) silentSince_ = now;
    silent_ = now - silentSince_ > kBearable;
  }
  [[nodiscard]] bool Silent() const { return silent_; }

 private:
  bool expected_ = false;
  bool silent_ = false;
  Nanoseconds silentSince_{0};
};

}  // namespace kelvo

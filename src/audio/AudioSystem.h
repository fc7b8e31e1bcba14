#pragma once

#include "audio/MediaPlayer.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>

namespace kelvo {

class Tap;

/// The state of an output.
struct OutputStatus {
  enum class Kind {
    OnAir,          ///< its device plays
    OnSilentClock,  ///< its device is gone: time goes on, nothing is heard
    OnDefault,      ///< its device is gone, the default one has taken over
  };
  Kind kind = Kind::OnAir;
  QString device;  ///< the name of the device that was asked for
  bool operator==(const OutputStatus&) const = default;
};

/// Where players come from. Owned by the program's entry; outlives its players. Logic thread.
class AudioSystem {
 public:
  virtual ~AudioSystem() = default;

  /// A player on the output with that name or id; empty is the default output. A named output is never replaced by
  /// another device: without its device it is silent.
  [[nodiscard]] virtual std::unique_ptr<MediaPlayer> MakePlayer(const QString& output = {}) = 0;

  /// The names of the sound outputs, the default one first; empty when there is none. Refreshed as devices
  /// come and go. Devices are looked for beside the logic, so right after the start the list is empty: see
  /// OutputsKnown.
  [[nodiscard]] virtual QStringList OutputNames() const = 0;
  /// What the output with that name is remembered by: it stays the device's own in every run, also where two
  /// devices are named alike. MakePlayer takes it as it takes a name.
  [[nodiscard]] virtual QString OutputId(const QString& name) const { return name; }
  /// The name of the output with that id; empty when it is not there.
  [[nodiscard]] virtual QString OutputNamed(const QString& id) const {
    return OutputNames().contains(id) ? id : QString();
  }
  /// Ends when the outputs have been looked for once, or when that takes longer than anybody should wait.
  [[nodiscard]] virtual Job<> OutputsKnown() { co_return; }

  /// Seconds of sound in `path`, read off the logic's thread. Throws Failure when it is no sound file.
  [[nodiscard]] virtual Job<double> DurationOf(QString path) = 0;

  /// The state of the default output, and a call each time that changes. It starts on the silent clock and
  /// goes on air when its device has been opened.
  [[nodiscard]] virtual OutputStatus DefaultOutputStatus() const = 0;
  std::function<void(const OutputStatus&)> OnDefaultOutputChanged;

  // What a system with sound tells of `output`; empty is the default one.
  /// What it plays, for meters, scope and recorder; null where there is none.
  [[nodiscard]] virtual std::shared_ptr<const Tap> TapOf(const QString& output = {}) const;
  /// How often its device ran dry, as far as devices tell it.
  [[nodiscard]] virtual std::uint64_t Dropouts(const QString& output = {}) const;
  /// How much sound waits in front of its device.
  [[nodiscard]] virtual Nanoseconds ReserveOf(const QString& output = {}) const;
  /// By how many decibels its limiter turns it down now; 0 when it has nothing to do.
  [[nodiscard]] virtual double GainReduction(const QString& /*output*/ = {}) const { return 0; }
};

inline std::shared_ptr<const Tap> AudioSystem::TapOf(const QString& /*output*/) const {
  return nullptr;
}
inline std::uint64_t AudioSystem::Dropouts(const QString& /*output*/) const {
  return 0;
}
inline Nanoseconds AudioSystem::ReserveOf(const QString& /*output*/) const {
  return Nanoseconds(0);
}

}  // namespace kelvo

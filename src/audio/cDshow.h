#pragma once

#include "audio/MediaPlayer.h"

#include <QString>

#include <memory>

namespace kelvo {

class AudioSystem;

/// Plays one file on a named output. A name whose device is missing is silent, and time goes on; it is never
/// replaced by the default output. Logic thread.
class cDshow {
 public:
  /// The values of the graph's own states.
  enum class State { Stopped = 0, Paused = 1, Running = 2 };

  explicit cDshow(AudioSystem& audio);
  ~cDshow();

  /// Where the next GraphFile plays, by name or id. Empty and "Default WaveOut Device" are the default output.
  void SetOutPutDevice(const QString& name);
  [[nodiscard]] QString OutPutDevice() const { return device_; }
  /// True when the named output is not there: what is played is not heard.
  [[nodiscard]] bool DeviceMissing() const;

  /// Opens `path`, stopped at its start. On the same output a failure leaves the open file as it is; a change
  /// of output lets go of it at once.
  [[nodiscard]] Job<OpenResult> SetGraphFile(QString path);
  [[nodiscard]] QString GraphFile() const;
  [[nodiscard]] double GraphDuration() const;
  /// Seconds; setting it seeks.
  [[nodiscard]] double GraphPosition() const;
  void SetGraphPosition(double seconds);
  /// Hundredths of a decibel, as a player's.
  [[nodiscard]] int GraphVolume() const { return volume_; }
  void SetGraphVolume(int hundredthsOfDecibel);
  [[nodiscard]] int GraphBalance() const { return balance_; }
  void SetGraphBalance(int hundredthsOfDecibel);
  [[nodiscard]] double GraphRate() const { return rate_; }
  void SetGraphRate(double rate);
  [[nodiscard]] bool GraphMuted() const { return muted_; }
  void GraphMute(bool mute);

  [[nodiscard]] State GraphPlayState() const;
  void GraphPlay();
  void GraphPause();
  void GraphStop();

 private:
  void ApplyLevels();

  AudioSystem& audio_;
  QString device_;
  std::unique_ptr<MediaPlayer> player_;
  QString playerDevice_;  ///< the output that `player_` was made on
  int volume_ = 0;
  int balance_ = 0;
  double rate_ = 1;
  bool muted_ = false;
  bool paused_ = false;
};

}  // namespace kelvo

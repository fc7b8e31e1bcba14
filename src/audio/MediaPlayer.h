#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace kelvo {

/// What a player says of itself. Every value but Playing counts as not playing.
enum class PlayState { Stopped = 0, Playing = 2 };

/// How an Open ended.
struct OpenResult {
  enum class Kind { Opened, Failed, Superseded };
  Kind kind = Kind::Failed;
  QString error;  ///< one sentence that names the cause, when it failed
  [[nodiscard]] bool Ok() const { return kind == Kind::Opened; }
};

/// Plays one file at a time on one output. Made by an AudioSystem, owned by whoever plays; must not outlive
/// that system. Every call is made on the logic's thread and returns at once; a start, a stop and a
/// level are heard a period or two of the device later, whatever waits in its queue. Every start, stop, seek
/// and change of level is a short ramp.
class MediaPlayer {
 public:
  virtual ~MediaPlayer() = default;

  /// Opens `path` and leaves it stopped at position 0. Until the file is known to be good the player keeps
  /// what it has; a failure changes nothing. An Open that is overtaken by another ends as Superseded.
  [[nodiscard]] virtual Job<OpenResult> Open(QString path) = 0;
  /// Counts up while an Open is under way and its disk answers: a long file on a slow disk can be
  /// distinguished from a disk that hangs.
  [[nodiscard]] virtual std::uint64_t OpenSteps() const = 0;
  /// Closes the file: silent, no duration, position 0.
  virtual void Close() = 0;

  /// The open file; empty when there is none.
  [[nodiscard]] virtual QString FileName() const = 0;
  /// Length of the open file in seconds; 0 without a file.
  [[nodiscard]] virtual double Duration() const = 0;
  /// Whether anything can be heard in the open file; false for one that is silent from end to end.
  [[nodiscard]] virtual bool HasSound() const = 0;
  /// Seconds from the start of the file to the place at which an order acts now, which is heard at once;
  /// while a seek is on its way, its target.
  [[nodiscard]] virtual double CurrentPosition() const = 0;
  /// Seeks, to the sample; outside 0..Duration clamps. A player that plays goes on playing from there.
  virtual void SetCurrentPosition(double seconds) = 0;
  [[nodiscard]] virtual PlayState State() const = 0;
  /// Starts from the current position. Without a file it does nothing; at the end of the file the end of the
  /// stream comes at once.
  virtual void Play() = 0;
  /// Stops and keeps the position.
  virtual void Stop() = 0;

  /// The frame of its output's tap in which the present file began to sound last, exact to the sample;
  /// nothing while it may still be taken back, and where there is no sound.
  [[nodiscard]] virtual std::optional<std::int64_t> OnAirFrom() const { return std::nullopt; }

  /// How long the file's disk has owed data that is needed for what comes next; 0 when it owes none. A few
  /// seconds of sound are at hand when it begins to count.
  [[nodiscard]] virtual Nanoseconds DataLateFor() const = 0;

  /// Attenuation in hundredths of a decibel: 0 is full, -10000 and below is silent; above 0 counts as 0.
  virtual void SetVolume(int hundredthsOfDecibel) = 0;
  [[nodiscard]] virtual int Volume() const = 0;
  /// -10000 (left alone) to 10000 (right alone); 0 is both full. The other side loses that many hundredths of
  /// a decibel.
  virtual void SetBalance(int hundredthsOfDecibel) = 0;
  [[nodiscard]] virtual int Balance() const = 0;
  /// 1 is as recorded; 0.5 to 2.
  virtual void SetRate(double rate) = 0;
  [[nodiscard]] virtual double Rate() const = 0;

  /// Called once each time the stream runs out, from the loop, never from inside another call of this player.
  /// By then the player is stopped and its position is where the data ended.
  std::function<void()> OnEndOfStream;
};

}  // namespace kelvo

#pragma once

#include "audio/CueSheet.h"
#include "audio/Recording.h"
#include "audio/engine/ThreadYard.h"
#include "platform/EventLoop.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvo {

/// Records what goes on air into a file, with a cue sheet of the titles beside it. Owned by the desk; logic
/// thread. The work is done on a thread of its own, so a disk that is slow or full holds up nothing but the
/// recording.
class Recorder : public QObject {
  Q_OBJECT
 public:
  enum class State {
    Idle,
    Recording,
    Closing,  ///< stopped; what remains is being written
  };
  /// So much has to be free on the disk, or SpaceIsLow.
  static constexpr std::int64_t kLowSpace = std::int64_t{1} << 30;

  static constexpr Nanoseconds kNoAnswer = std::chrono::seconds(10);

  explicit Recorder(EventLoop& loop) : loop_(loop) {}
  /// Closes the file, and waits a moment for that.
  ~Recorder() override;

  /// Begins to record what `tap` gets from now on into `path`, which must not be there. Only when Idle; that
  /// it can't be done is told by Ended. A disk that does not answer when the recording begins or ends is left
  /// to itself after kNoAnswer; while it runs it is waited for.
  void Start(std::shared_ptr<const Tap> tap, const QString& path, RecordingFile::Kind kind);
  void Stop();

  /// A title is on air. `from` gives the tap's frame in which it began, as soon as that is known (see
  /// MediaPlayer::OnAirFrom); it is asked until it answers, for a second at most. Without it the title begins
  /// now.
  void NoteTitle(const QString& performer, const QString& title,
                 std::function<std::optional<FrameIndex>()> from = {});

  [[nodiscard]] State Now() const { return state_; }
  [[nodiscard]] const QString& Path() const { return path_; }
  /// The length of the recording in seconds, also of the last one.
  [[nodiscard]] double Seconds() const;
  [[nodiscard]] std::int64_t Bytes() const { return recording_ ? recording_->Bytes() : 0; }
  /// Free bytes on its disk; nothing while that is not known.
  [[nodiscard]] std::optional<std::int64_t> BytesLeft() const;
  [[nodiscard]] bool SpaceIsLow() const { return BytesLeft().value_or(kLowSpace) < kLowSpace; }
  /// How long its disk has taken nothing; well below a second while all is well.
  [[nodiscard]] Nanoseconds StuckFor() const;
  /// Seconds that the disk was too slow for: they are silent in the file.
  [[nodiscard]] double SecondsLost() const;

 Q_SIGNALS:
  /// The state, or whether space is low. Length and size move all the time and are asked for.
  void Changed();
  /// The file is closed. `error` is why the recording ended by itself; empty when it was stopped.
  void Ended(const QString& error);

 private:
  struct Title {
    CueTitle title;
    std::function<std::optional<FrameIndex>()> from;
    Nanoseconds notedAt;
    FrameIndex now;  ///< the tap's frame at that time
  };

  void Tick();
  /// Where there are no threads: does what the recording's thread would have done by now.
  void Work();
  void End(const QString& error);
  /// Moves titles whose frame is known to the sheet.
  void SettleTitles();

  EventLoop& loop_;
  ThreadYard yard_;
  State state_ = State::Idle;
  QString path_;
  std::shared_ptr<const Tap> tap_;
  std::shared_ptr<Recording> recording_;
  std::stop_source stop_;
  std::vector<Title> noted_;
  std::vector<CueTitle> titles_;
  bool low_ = false;
  FrameIndex seen_ = 0;  ///< of the recording's frames
  int stuck_ = 0;        ///< looks since they were more than before
  Timer tick_;
};

}  // namespace kelvo

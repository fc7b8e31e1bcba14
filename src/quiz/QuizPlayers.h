#pragma once

#include "audio/AudioSystem.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "quiz/QuizSetup.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace kelvo {

/// The stretch of a track that sounds, for the bar of the quiz.
struct SnippetBar {
  QString words;
  int number = 0;       ///< of the snippet, from 1; 0 when it is none
  SnippetSpan span;     ///< what the bar shows, in seconds of the track
  SnippetSpan inner;    ///< the snippet within it
  double position = 0;  ///< in seconds of the track
};

/// What of a track is played by hand: all of it, or the snippet alone.
enum class PlayPart { WholeTrack, Snippet };

/// The two players of the quiz: one for mixers and introductions, one for tracks. All sound on the default
/// output. One job of it runs at a time. Owned by the PopQuiz; logic thread.
class QuizPlayers : public QObject {
  Q_OBJECT

 public:
  QuizPlayers(EventLoop& loop, AudioSystem& audio);

  /// The operator's STOP: whatever sounds fades out and its job ends soon.
  void Stop() { stopped_ = true; }
  [[nodiscard]] bool Stopped() const { return stopped_; }
  /// Forgets a stop.
  void Arm();
  /// Silence, at once.
  void Quiet();

  /// Why the file can't be played, in words; empty when it is open. A stop ends it too.
  [[nodiscard]] Job<QString> OpenMixer(QString path);
  [[nodiscard]] Job<QString> OpenTrack(QString path);
  void CloseMixer() { mixer_->Close(); }
  /// Seconds; 0 without a track.
  [[nodiscard]] double TrackSeconds() const { return track_->Duration(); }
  [[nodiscard]] double MixerSeconds() const { return mixer_->Duration(); }

  /// Fades the snippet in and out, and plays the mixer behind it, to its end.
  [[nodiscard]] Job<> PlaySnippet(int number, SnippetSpan span, double rate);
  /// Plays the open mixer or introduction from its beginning to its end.
  [[nodiscard]] Job<> PlayMixer();
  /// Plays the open track, or the snippet of it; the mixer, where one is open, marks the snippet's ends.
  [[nodiscard]] Job<> PlayByHand(PlayPart part, SnippetSpan span);
  /// While PlayByHand runs: goes back (-1) or forward (1) by two seconds each turn, until 0.
  void Hold(int direction) { held_ = direction; }

  /// What the bar shows; none while no track sounds.
  [[nodiscard]] const std::optional<SnippetBar>& Bar() const { return bar_; }

 Q_SIGNALS:
  void BarChanged();

 private:
  /// Ends a wait for a player that does not go on.
  class Watchdog;
  [[nodiscard]] Job<QString> Open(MediaPlayer& player, QString path);
  [[nodiscard]] Job<> Fade(int from, int to);
  void ShowBar(std::optional<SnippetBar> bar);
  void Follow();
  void MarkEnds(SnippetSpan span, int second);

  EventLoop& loop_;
  std::unique_ptr<MediaPlayer> mixer_;
  std::unique_ptr<MediaPlayer> track_;
  std::optional<SnippetBar> bar_;
  bool stopped_ = false;
  int held_ = 0;
};

}  // namespace kelvo

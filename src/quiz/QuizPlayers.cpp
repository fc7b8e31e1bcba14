#include "quiz/QuizPlayers.h"

#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

// The fades of a snippet, in hundredths of a decibel.
constexpr int kFull = 0;
constexpr int kFaded = -2500;
constexpr int kFadeSteps = 25;
constexpr Nanoseconds kFadeStep = 5ms;

constexpr Nanoseconds kBeat = 20ms;
/// How often a track that is played by hand looks for the hand.
constexpr Nanoseconds kHandBeat = 200ms;
constexpr double kHandStep = 2;  // seconds
/// A disk that gives nothing is waited for no longer.
constexpr Nanoseconds kPatience = 10s;

}  // namespace

class QuizPlayers::Watchdog {
 public:
  Watchdog(EventLoop& loop, const MediaPlayer& player)
      : loop_(loop), player_(player), since_(loop.Elapsed()), position_(player.CurrentPosition()) {}

  /// Whether it still plays. One that stands still for too long counts as ended, and that is logged.
  [[nodiscard]] bool Plays() {
    if (player_.State() != PlayState::Playing) return false;
    const double position = player_.CurrentPosition();
    if (position != position_) {
      position_ = position;
      since_ = loop_.Elapsed();
    }
    if (loop_.Elapsed() - since_ < kPatience) return true;
    NoteInLog(QStringLiteral("The quiz gave up %1 at %2 s: its disk does not answer")
                  .arg(player_.FileName())
                  .arg(position));
    return false;
  }

 private:
  EventLoop& loop_;
  const MediaPlayer& player_;
  Nanoseconds since_;
  double position_;
};

QuizPlayers::QuizPlayers(EventLoop& loop, AudioSystem& audio)
    : loop_(loop), mixer_(audio.MakePlayer()), track_(audio.MakePlayer()) {}

void QuizPlayers::Arm() {
  stopped_ = false;
  held_ = 0;
}

void QuizPlayers::Quiet() {
  mixer_->Stop();
  track_->Stop();
  ShowBar(std::nullopt);
}

void QuizPlayers::ShowBar(std::optional<SnippetBar> bar) {
  bar_ = std::move(bar);
  Q_EMIT BarChanged();
}

void QuizPlayers::Follow() {
  if (!bar_) return;
  bar_->position = track_->CurrentPosition();
  Q_EMIT BarChanged();
}

Job<QString> QuizPlayers::OpenMixer(QString path) {
  return Open(*mixer_, std::move(path));
}

Job<QString> QuizPlayers::OpenTrack(QString path) {
  return Open(*track_, std::move(path));
}

Job<QString> QuizPlayers::Open(MediaPlayer& player, QString path) {
  struct Opening {
    static Job<> Run(MediaPlayer& player, QString path, std::shared_ptr<std::optional<OpenResult>> result) {
      *result = co_await player.Open(std::move(path));
    }
  };
  const auto result = std::make_shared<std::optional<OpenResult>>();
  player.Stop();
  const Job<> opening = Opening::Run(player, path, result);
  std::uint64_t steps = player.OpenSteps();
  Nanoseconds since = loop_.Elapsed();
  while (opening.Running() && !stopped_) {
    co_await loop_.Sleep(kBeat);
    if (player.OpenSteps() != std::exchange(steps, player.OpenSteps())) since = loop_.Elapsed();
    if (loop_.Elapsed() - since >= kPatience) co_return tr("Its disk does not answer");
  }
  if (!result->has_value()) co_return tr("Stopped");
  co_return (*result)->Ok() ? QString() : (*result)->error;
}

Job<> QuizPlayers::Fade(int from, int to) {
  const Nanoseconds begin = loop_.Elapsed();
  for (;;) {
    const std::int64_t due = std::min<std::int64_t>((loop_.Elapsed() - begin) / kFadeStep, kFadeSteps);
    track_->SetVolume(from + (to - from) / kFadeSteps * static_cast<int>(due));
    Follow();
    if (due == kFadeSteps) co_return;
    co_await loop_.Sleep(begin + (due + 1) * kFadeStep - loop_.Elapsed());
  }
}

Job<> QuizPlayers::PlaySnippet(int number, SnippetSpan span, double rate) {
  mixer_->SetCurrentPosition(0);
  track_->SetRate(rate);
  track_->SetCurrentPosition(span.start);
  ShowBar(SnippetBar{.words = QStringLiteral("Playing Snippet %1").arg(number),
                     .number = number,
                     .span = span,
                     .inner = span,
                     .position = static_cast<double>(span.start)});
  track_->SetVolume(kFaded);
  track_->Play();
  co_await Fade(kFaded, kFull);
  Watchdog watchdog(loop_, *track_);
  // A track that ends before its snippet ends the snippet.
  while (!stopped_ && watchdog.Plays() && track_->CurrentPosition() < span.end) {
    Follow();
    const double left = span.end - track_->CurrentPosition();
    const Nanoseconds rest(std::llround(std::max(left, 0.001) * 1e9));
    co_await loop_.Sleep(std::min(kBeat, rest));
  }
  co_await Fade(kFull, kFaded);
  track_->Stop();
  if (!stopped_) co_await PlayMixer();
  Quiet();
}

Job<> QuizPlayers::PlayMixer() {
  mixer_->SetCurrentPosition(0);
  mixer_->SetVolume(kFull);
  mixer_->Play();
  Watchdog watchdog(loop_, *mixer_);
  while (!stopped_ && watchdog.Plays()) co_await loop_.Sleep(kBeat);
  mixer_->Stop();
}

void QuizPlayers::MarkEnds(SnippetSpan span, int second) {
  if (mixer_->Duration() <= 0 || (second != span.start && second != span.end)) return;
  mixer_->SetCurrentPosition(0);
  mixer_->Play();
}

Job<> QuizPlayers::PlayByHand(PlayPart part, SnippetSpan span) {
  const int whole = static_cast<int>(track_->Duration());
  const bool all = part == PlayPart::WholeTrack;
  const double end = all ? track_->Duration() : span.end;
  mixer_->SetVolume(kFull);
  track_->SetRate(1);
  track_->SetCurrentPosition(all ? 0 : span.start);
  track_->SetVolume(kFull);
  ShowBar(SnippetBar{.words = all ? tr("Playing Whole Track") : tr("Playing Snippet"),
                     .number = 0,
                     .span = all ? SnippetSpan{0, whole} : span,
                     .inner = span,
                     .position = track_->CurrentPosition()});
  track_->Play();
  Watchdog watchdog(loop_, *track_);
  int second = -1;
  Nanoseconds hand = loop_.Elapsed();
  while (!stopped_ && watchdog.Plays() && track_->CurrentPosition() < end) {
    const double position = track_->CurrentPosition();
    if (held_ != 0 && loop_.Elapsed() - hand >= kHandBeat) {
      const double target = position + held_ * kHandStep;
      if (target > 0 && target < end) track_->SetCurrentPosition(target);
      hand = loop_.Elapsed();
    }
    const int now = static_cast<int>(track_->CurrentPosition());
    if (now != std::exchange(second, now)) MarkEnds(span, now);
    Follow();
    co_await loop_.Sleep(kBeat);
  }
  if (stopped_) {
    co_await Fade(kFull, kFaded);
    mixer_->Stop();
  }
  track_->Stop();
  ShowBar(std::nullopt);
}

}  // namespace kelvo

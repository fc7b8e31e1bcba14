#include "audio/ClockAudio.h"

#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

/// How often a file that is being opened can be seen to get on.
constexpr Nanoseconds kOpenStep = std::chrono::milliseconds(500);

}  // namespace

class ClockPlayer : public MediaPlayer {
 public:
  explicit ClockPlayer(ClockAudio& audio) : audio_(audio) {}

  Job<OpenResult> Open(QString path) override {
    const int mine = ++opens_;
    for (Nanoseconds left = audio_.openTime; left > Nanoseconds(0);) {
      const Nanoseconds part = std::min(left, kOpenStep);
      co_await audio_.loop_.Sleep(part);
      if (audio_.Hangs && audio_.Hangs(path)) continue;
      left -= part;
      ++openSteps_;
    }
    OpenResult result;
    const double seconds = audio_.SecondsOf(path);
    if (mine != opens_) {
      result.kind = OpenResult::Kind::Superseded;
    } else if (seconds < 0) {
      result.error = QStringLiteral("Not a sound file: ") + path;
    } else {
      result.kind = OpenResult::Kind::Opened;
      Halt();
      fileName_ = path;
      duration_ = seconds;
      hasSound_ = !audio_.silent_.contains(path);
      base_ = 0;
    }
    co_return result;
  }
  [[nodiscard]] std::uint64_t OpenSteps() const override { return openSteps_; }
  [[nodiscard]] Nanoseconds DataLateFor() const override { return Nanoseconds(0); }
  void Close() override {
    ++opens_;
    Halt();
    fileName_.clear();
    duration_ = 0;
    hasSound_ = false;
    base_ = 0;
  }

  [[nodiscard]] QString FileName() const override { return fileName_; }
  [[nodiscard]] double Duration() const override { return duration_; }
  [[nodiscard]] bool HasSound() const override { return hasSound_; }
  [[nodiscard]] double CurrentPosition() const override {
    if (!playing_) return base_;
    const double passed = std::chrono::duration<double>(audio_.loop_.Elapsed() - startedAt_).count();
    return std::min(duration_, base_ + passed * rate_);
  }
  void SetCurrentPosition(double seconds) override {
    base_ = std::isfinite(seconds) ? std::clamp(seconds, 0.0, duration_) : 0.0;
    if (playing_) Run();
  }
  [[nodiscard]] PlayState State() const override {
    return playing_ ? PlayState::Playing : PlayState::Stopped;
  }
  void Play() override {
    if (fileName_.isEmpty() || playing_) return;
    Run();
  }
  void Stop() override {
    base_ = CurrentPosition();
    Halt();
  }
  void SetVolume(int hundredths) override { volume_ = std::clamp(hundredths, -10000, 0); }
  [[nodiscard]] int Volume() const override { return volume_; }
  void SetBalance(int hundredths) override { balance_ = std::clamp(hundredths, -10000, 10000); }
  [[nodiscard]] int Balance() const override { return balance_; }
  void SetRate(double rate) override {
    base_ = CurrentPosition();
    rate_ = std::clamp(rate, 0.5, 2.0);
    if (playing_) Run();
  }
  [[nodiscard]] double Rate() const override { return rate_; }

 private:
  void Run() {
    playing_ = true;
    startedAt_ = audio_.loop_.Elapsed();
    const double left = (duration_ - base_) / rate_;
    end_ = audio_.loop_.After(Nanoseconds(static_cast<std::int64_t>(left * 1e9)), [this] {
      base_ = duration_;
      Halt();
      if (OnEndOfStream) OnEndOfStream();
    });
  }
  void Halt() {
    playing_ = false;
    end_.Stop();
  }

  ClockAudio& audio_;
  QString fileName_;
  double duration_ = 0;
  bool hasSound_ = false;
  double base_ = 0;
  double rate_ = 1;
  int volume_ = 0;
  int balance_ = 0;
  int opens_ = 0;
  std::uint64_t openSteps_ = 0;
  bool playing_ = false;
  Nanoseconds startedAt_{0};
  Timer end_;
};

std::unique_ptr<MediaPlayer> ClockAudio::MakePlayer(const QString& /*output*/) {
  return std::make_unique<ClockPlayer>(*this);
}

double ClockAudio::SecondsOf(const QString& path) const {
  if (const auto known = durations_.constFind(path); known != durations_.constEnd()) return *known;
  return QFileInfo(path).isFile() ? defaultDuration : -1.0;
}

Job<double> ClockAudio::DurationOf(QString path) {
  co_await loop_.Yield();
  const double seconds = SecondsOf(path);
  if (seconds < 0) throw Failure(QStringLiteral("Not a sound file: ") + path, 0, path);
  co_return seconds;
}

void ClockAudio::SetDefaultOutputStatus(const OutputStatus& status) {
  if (status_ == status) return;
  status_ = status;
  if (OnDefaultOutputChanged) OnDefaultOutputChanged(status_);
}

}  // namespace kelvo

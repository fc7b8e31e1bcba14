#include "audio/engine/EnginePlayer.h"

#include "audio/engine/Levels.h"
#include "audio/engine/OpenDecoder.h"
#include "platform/ErrorLog.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

/// A file on its way. Shared by the job that waits, the player and the thread that opens.
struct EnginePlayer::OpenRequest {
  OpeningPtr opening = std::make_shared<Opening>();
  std::atomic<bool> done{false};
  // Written by the thread before `done`:
  std::unique_ptr<EngineSource> source;
  bool hasSound = false;
  QString error;

  OneShot<OpenResult::Kind> verdict;

  void Work(const QString& path) {
    try {
      auto decoder = OpenDecoder(path, opening);
      hasSound = HoldsSound(*decoder, opening);
      source = std::make_unique<EngineSource>(std::move(decoder));
    } catch (const std::exception& failure) {
      error = QString::fromUtf8(failure.what());
    }
    done.store(true, std::memory_order_release);
  }
};

EnginePlayer::EnginePlayer(PlayerHost& engine, std::shared_ptr<Output> output,
                           std::shared_ptr<PlayerCore> core)
    : engine_(engine), output_(std::move(output)), core_(std::move(core)) {
  ApplyGains();
  core_->voice.Want(generation_, false);
}

EnginePlayer::~EnginePlayer() {
  Supersede();
  engine_.Forget(*this);
  core_->voice.Want(generation_, false);
  output_->Hasten(DeviceLink::Hurry::Start);
  engine_.Retire(std::move(output_), std::move(core_));
}

void EnginePlayer::Supersede() {
  if (!opening_) return;
  opening_->opening->cancelled.store(true, std::memory_order_relaxed);
  // From the loop: whoever waits must not run inside the call that overtook it.
  engine_.Loop().Post(
      [request = std::move(opening_)] { request->verdict.Set(OpenResult::Kind::Superseded); });
  opening_ = nullptr;
}

Job<OpenResult> EnginePlayer::Open(QString path) {
  Supersede();
  const auto request = std::make_shared<OpenRequest>();
  opening_ = request;
  struct CancelAtEnd {
    OpeningPtr opening;
    ~CancelAtEnd() { opening->cancelled.store(true, std::memory_order_relaxed); }
  };
  const CancelAtEnd whenDropped{request->opening};
  engine_.OpenApart([request, path] { request->Work(path); });

  OpenResult result;
  result.kind = co_await request->verdict.Wait();
  // Overtaken may mean that the player is gone: nothing of it may be touched then.
  if (result.kind == OpenResult::Kind::Superseded) co_return result;
  result.error = request->error;
  if (result.Ok()) {
    hasSound_ = request->hasSound;
    Install(path, std::move(request->source));
  }
  co_return result;
}

std::uint64_t EnginePlayer::OpenSteps() const {
  return opening_ ? opening_->opening->steps.load(std::memory_order_relaxed) : 0;
}

void EnginePlayer::RenewCore() {
  auto fresh = engine_.MakeCore(*output_);
  core_->voice.Want(generation_, false);
  output_->Hasten(DeviceLink::Hurry::Start);
  engine_.Retire(output_, std::exchange(core_, std::move(fresh)));
  ApplyGains();
  core_->voice.SetRate(rate_);
  reads_ = 0;
  dataLateFor_ = Nanoseconds(0);
}

void EnginePlayer::Install(const QString& path, std::unique_ptr<EngineSource> source) {
  file_ = path;
  duration_ = source->Seconds();
  state_ = PlayState::Stopped;
  RenewCore();
  GoTo(0, std::move(source));
}

void EnginePlayer::Close() {
  Supersede();
  file_.clear();
  duration_ = 0;
  hasSound_ = false;
  state_ = PlayState::Stopped;
  ++generation_;
  target_ = 0;
  endDelivered_ = endAgain_ = false;
  core_->voice.Want(generation_, false);
  output_->Hasten(DeviceLink::Hurry::Start);
  core_->feeder.Empty(generation_);
}

void EnginePlayer::GoTo(FrameIndex frame, std::unique_ptr<EngineSource> source) {
  ++generation_;
  target_ = static_cast<double>(frame) / kEngineRate;
  endDelivered_ = endAgain_ = false;
  // The voice first: it must know the generation before the ring holds it.
  core_->voice.Want(generation_, state_ == PlayState::Playing);
  // Not in a hurry: until the new place is decoded the old one plays on, out of what is queued.
  core_->feeder.Begin(generation_, frame, std::move(source));
}

double EnginePlayer::CurrentPosition() const {
  if (file_.isEmpty()) return 0;
  const auto frame = core_->voice.PositionIn(generation_);
  return frame ? std::min(static_cast<double>(*frame) / kEngineRate, duration_) : target_;
}

void EnginePlayer::SetCurrentPosition(double seconds) {
  if (file_.isEmpty() || std::isnan(seconds)) return;
  const double within = std::clamp(seconds, 0.0, duration_);
  GoTo(std::llround(within * kEngineRate), nullptr);
  target_ = within;
}

void EnginePlayer::ApplyState(PlayState state) {
  state_ = state;
  core_->voice.Want(generation_, state == PlayState::Playing);
  core_->feeder.SetPlaying(state == PlayState::Playing);
  output_->Hasten(DeviceLink::Hurry::Start);
}

void EnginePlayer::Play() {
  if (file_.isEmpty() || state_ == PlayState::Playing) return;
  if (!PlayedOut()) {
    ApplyState(PlayState::Playing);
    return;
  }
  state_ = PlayState::Playing;
  endAgain_ = true;
  engine_.PollSoon();
}

void EnginePlayer::Stop() {
  if (state_ == PlayState::Playing) ApplyState(PlayState::Stopped);
}

std::optional<FrameIndex> EnginePlayer::OnAirFrom() const {
  const auto began = core_->voice.Began();
  return began ? std::optional(*began + static_cast<FrameIndex>(Limiter::kLookAhead)) : std::nullopt;
}

void EnginePlayer::SetVolume(int hundredthsOfDecibel) {
  volume_ = std::clamp(hundredthsOfDecibel, kSilentLevel, 0);
  ApplyGains();
}

void EnginePlayer::SetBalance(int hundredthsOfDecibel) {
  balance_ = std::clamp(hundredthsOfDecibel, kSilentLevel, -kSilentLevel);
  ApplyGains();
}

void EnginePlayer::ApplyGains() {
  const float level = GainOf(volume_);
  core_->voice.SetGains(level * GainOf(std::min(-balance_, 0)), level * GainOf(std::min(balance_, 0)));
  output_->Hasten(DeviceLink::Hurry::Level);
}

void EnginePlayer::SetRate(double rate) {
  rate_ = std::isnan(rate) ? 1.0 : std::clamp(rate, 0.5, 2.0);
  core_->voice.SetRate(rate_);
  output_->Hasten(DeviceLink::Hurry::Level);
}

void EnginePlayer::WatchData() {
  const Nanoseconds now = engine_.Loop().Elapsed();
  const std::uint64_t reads = core_->feeder.Reads();
  const bool asking = reads % 2 == 1;
  if (std::exchange(reads_, reads) != reads || !asking) readsMovedAt_ = now;
  dataLateFor_ = now - readsMovedAt_;
}

void EnginePlayer::Poll() {
  WatchData();
  if (opening_ && opening_->done.load(std::memory_order_acquire)) {
    const auto request = std::exchange(opening_, nullptr);
    request->verdict.Set(request->source ? OpenResult::Kind::Opened : OpenResult::Kind::Failed);
    return;
  }
  const bool ended = !endDelivered_ && core_->voice.HasEnded(generation_);
  if (file_.isEmpty() || (!ended && !endAgain_)) return;
  endDelivered_ = true;
  endAgain_ = false;
  ApplyState(PlayState::Stopped);
  if (const auto call = OnEndOfStream) call();
}

}  // namespace kelvo

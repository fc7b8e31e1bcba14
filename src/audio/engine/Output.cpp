#include "audio/engine/Output.h"

#include "audio/engine/ClockFrames.h"

#include <algorithm>
#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// A server that falls behind for a moment is not taken for a lost one, nor is one that still has sound.
constexpr Nanoseconds kSilentAfter = 250ms;
constexpr Nanoseconds kSilentAfterReserve = 100ms;
constexpr Nanoseconds kLostAfterSilence = 250ms;
constexpr Nanoseconds kFirstCallWithin = 1250ms;
constexpr Nanoseconds kTryEvery = 1s;
constexpr std::size_t kClockFrames = 1024;

constexpr FrameIndex kMostToMakeUp = kEngineRate;

/// A tick that comes late says nothing about the device: a busy or sleeping machine delays both.
constexpr Nanoseconds kMostInATick = 50ms;

}  // namespace

Output::Output(EventLoop& loop, OutputBackend& backend, QString name)
    : loop_(loop),
      backend_(backend),
      name_(std::move(name)),
      mixer_(std::make_shared<OutputMixer>(!backend.Threaded())),
      lastTick_(loop.Elapsed()),
      clockBuffer_(kClockFrames * kChannels) {
  TryToOpen(lastTick_);
}

Output::~Output() {
  LetGo();
}

OutputStatus Output::Status() const {
  OutputStatus status;
  const QStringList names = backend_.Names();
  status.device = !name_.isEmpty() ? name_ : !asked_.isEmpty() ? asked_ : names.value(0);
  if (backend_.MeantSilent() && names.contains(status.device)) {
    status.kind = OutputStatus::Kind::OnAir;
  } else if (!link_ || !ran_ || onClock_) {
    status.kind = OutputStatus::Kind::OnSilentClock;
  } else if (name_.isEmpty() && !names.isEmpty() && !names.contains(asked_)) {
    status.kind = OutputStatus::Kind::OnDefault;
  } else {
    status.kind = OutputStatus::Kind::OnAir;
  }
  return status;
}

void Output::Tick() {
  const Nanoseconds now = loop_.Elapsed();
  WatchDevice(std::min(now - lastTick_, kMostInATick));
  lastTick_ = now;
  if (!link_ && now >= nextTry_) TryToOpen(now);
  RunClock(now);
  if (name_.isEmpty() && ran_) KnowDefault();
}

void Output::Hasten(DeviceLink::Hurry hurry) {
  if (!link_ || !link_->TakesBack()) return;
  hurry_ = std::max(hurry_, hurry);
  if (hasten_.Active()) return;
  hasten_ = loop_.After(0ns, [this] {
    const auto asked = std::exchange(hurry_, DeviceLink::Hurry::None);
    if (!link_) return;
    link_->Ask(asked);
    backend_.Wake();
  });
}

void Output::KnowDefault() {
  const QStringList names = backend_.Names();
  if (std::exchange(epoch_, backend_.NamesEpoch()) != epoch_) asked_.clear();
  // As long as the device that it plays on is there, another default is the operator's choice. A device that
  // is gone is waited for under its name, while the sound server plays on another.
  if (!names.isEmpty() && (asked_.isEmpty() || names.contains(asked_))) asked_ = names.front();
}

Nanoseconds Output::Patience() const {
  return std::max(kSilentAfter, link_->Reserve() + kSilentAfterReserve);
}

void Output::WatchDevice(Nanoseconds passed) {
  // Opening may take its time, and says nothing about whether the device is well.
  if (!link_ || link_->GetState() == DeviceLink::State::Opening) return;
  const std::uint64_t calls = link_->Calls();
  quietFor_ = calls == seenCalls_ ? quietFor_ + passed : 0ns;
  seenCalls_ = calls;
  if (link_->GetState() == DeviceLink::State::Gone) {
    // The default output may have another device to go to, so it does not wait.
    if (ran_ && name_.isEmpty()) nextTry_ = 0ns;
    LetGo();
    return;
  }
  ran_ = ran_ || quietFor_ == 0ns;
  if (quietFor_ >= (ran_ ? Patience() + kLostAfterSilence : kFirstCallWithin)) {
    nextTry_ = 0ns;
    LetGo();
  }
}

void Output::TryToOpen(Nanoseconds now) {
  nextTry_ = now + kTryEvery;
  ran_ = false;
  quietFor_ = 0ns;
  seenCalls_ = 0;
  link_ = std::make_shared<DeviceLink>(name_, mixer_);
  backend_.Open(link_);
  if (link_->GetState() == DeviceLink::State::Gone) LetGo();
}

void Output::LetGo() {
  if (link_) link_->Detach();
  link_.reset();
}

void Output::RunClock(Nanoseconds now) {
  const bool silent = !link_ || !ran_ || quietFor_ >= Patience();
  if (silent && !onClock_) {
    clockStart_ = now;
    clockFrames_ = 0;
  }
  onClock_ = silent;
  if (!onClock_) return;
  const FrameIndex due = FramesIn(now - clockStart_);
  // Behind a standstill of the whole program there is no use in making up for all of it at once.
  clockFrames_ = std::max(clockFrames_, due - kMostToMakeUp);
  while (clockFrames_ < due) {
    const auto frames = std::min<FrameIndex>(due - clockFrames_, kClockFrames);
    mixer_->Render(std::span(clockBuffer_).first(static_cast<std::size_t>(frames) * kChannels));
    clockFrames_ += frames;
  }
}

}  // namespace kelvo

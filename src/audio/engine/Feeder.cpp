#include "audio/engine/Feeder.h"

#include <QScopeGuard>

#include <chrono>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// A full ring lasts for seconds, so a look now and then is enough...
constexpr auto kLookWhilePlaying = 40ms;
/// ... but when blocks of an older generation block a new one, they go with the next callback.
constexpr auto kLookWhileWaiting = 2ms;
/// Whoever waits for the thread hears of it with so many blocks.
constexpr std::size_t kTellEvery = 32;

}  // namespace

void Feeder::Give(Command command) {
  std::optional<Command> dropped;
  {
    const std::lock_guard lock(mutex_);
    dropped = std::exchange(command_, std::nullopt);
    // A seek right behind an open must not lose the new file.
    if (dropped && dropped->source && !command.source && !command.empty)
      command.source = std::move(dropped->source);
    ++given_;
    command_.emplace(std::move(command));
  }
  changed_.notify_one();
}

void Feeder::Begin(Generation generation, FrameIndex start, std::unique_ptr<EngineSource> source) {
  Command command;
  command.generation = generation;
  command.start = start;
  command.source = std::move(source);
  Give(std::move(command));
}

void Feeder::Empty(Generation generation) {
  Command command;
  command.generation = generation;
  command.empty = true;
  Give(std::move(command));
}

void Feeder::SetPlaying(bool playing) {
  {
    const std::lock_guard lock(mutex_);
    playing_ = playing;
    woken_ = true;
  }
  changed_.notify_one();
}

void Feeder::Wake() {
  {
    const std::lock_guard lock(mutex_);
    woken_ = true;
  }
  changed_.notify_one();
}

template <typename Work>
auto Feeder::Ask(Work&& work) {
  // Whoever waits for it in simulated time must not take milliseconds of the disk for seconds.
  if (threaded_) return work();
  reads_.fetch_add(1, std::memory_order_relaxed);
  const auto asked = qScopeGuard([this] { reads_.fetch_add(1, std::memory_order_relaxed); });
  return work();
}

void Feeder::TakeCommand() {
  std::optional<Command> command;
  std::uint64_t number = 0;
  {
    const std::lock_guard lock(mutex_);
    command = std::exchange(command_, std::nullopt);
    number = given_;
  }
  if (!command) return;
  if (command->source || command->empty) source_ = std::move(command->source);
  block_.generation = command->generation;
  block_.start = command->start;
  block_.frames = 0;
  block_.end = false;
  pushed_ = 0;
  ended_ = source_ == nullptr;
  if (source_) Ask([&] { source_->Seek(command->start); });
  taken_.store(number, std::memory_order_release);
}

Feeder::Outcome Feeder::Step() {
  TakeCommand();
  if (ended_) return Outcome::Done;
  const std::size_t kept = pushed_ < kRingReserve ? 0 : kRingReserve;
  if (ring_.write_available() <= kept) return Outcome::RingIsFull;
  block_.frames = static_cast<std::uint32_t>(Ask([this] { return source_->Read(block_.samples); }));
  block_.end = block_.frames < kBlockFrames;
  ring_.push(block_);
  block_.start += block_.frames;
  ended_ = block_.end;
  ++pushed_;
  return Outcome::Pushed;
}

void Feeder::Run(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    const Outcome outcome = Step();
    if (threaded_ && (outcome != Outcome::Pushed || pushed_ % kTellEvery == 0)) {
      steps_.fetch_add(1, std::memory_order_release);
      steps_.notify_one();
    }
    if (outcome == Outcome::Pushed) continue;
    std::unique_lock lock(mutex_);
    const auto news = [this] { return command_.has_value() || std::exchange(woken_, false); };
    if (outcome == Outcome::Done || (!playing_ && pushed_ >= kRingTarget)) {
      changed_.wait(lock, stop, news);
    } else {
      changed_.wait_for(lock, stop, pushed_ < kRingTarget ? kLookWhileWaiting : kLookWhilePlaying, news);
    }
  }
}

bool Feeder::HasEnough(std::size_t blocks) const {
  // The commands come from the thread that waits here.
  if (taken_.load(std::memory_order_acquire) != given_) return false;
  const std::size_t ready = ring_.read_available();
  return ended_ || ready >= kRingTarget || (pushed_ >= kRingReserve && ready >= blocks);
}

void Feeder::FillNow() {
  if (!threaded_) {
    while (Step() == Outcome::Pushed) {
    }
    return;
  }
  std::size_t blocks = kRingReserve;
  for (;;) {
    const std::uint32_t seen = steps_.load(std::memory_order_acquire);
    if (HasEnough(blocks)) break;
    // Who waits waits for more: to change places with every block costs more than the blocks.
    blocks = kRingTarget / 2;
    Wake();
    steps_.wait(seen, std::memory_order_acquire);
  }
  // Simulated seconds pass in milliseconds: the thread must not sleep until the ring is empty.
  if (!ended_ && ring_.read_available() < kRingTarget / 2) Wake();
}

}  // namespace kelvo

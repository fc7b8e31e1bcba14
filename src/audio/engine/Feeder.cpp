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

}  // namespace

void Feeder::Give(Command command) {
  std::optional<Command> dropped;
  {
    const std::lock_guard lock(mutex_);
    dropped = std::exchange(command_, std::nullopt);
    // A seek right behind an open must not lose the new file.
    if (dropped && dropped->source && !command.source && !command.empty)
      command.source = std::move(dropped->source);
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

template <typename Work>
auto Feeder::Ask(Work&& work) {
  reads_.fetch_add(1, std::memory_order_relaxed);
  const auto asked = qScopeGuard([this] { reads_.fetch_add(1, std::memory_order_relaxed); });
  return work();
}

void Feeder::TakeCommand() {
  std::optional<Command> command;
  {
    const std::lock_guard lock(mutex_);
    command = std::exchange(command_, std::nullopt);
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

void Feeder::FillNow() {
  while (Step() == Outcome::Pushed) {
  }
}

}  // namespace kelvo

#include "platform/EventLoop.h"

namespace kelvo {

using namespace std::chrono_literals;

struct Timer::Entry {
  std::weak_ptr<EventLoop::Queue> queue;
  EventLoop::Key key;
  Nanoseconds interval{0};
  EventLoop::Callback callback;
  bool active = true;
};

struct EventLoop::Queue {
  std::map<Key, std::shared_ptr<Timer::Entry>> entries;
  std::uint64_t nextSequence = 0;
};

Timer::Timer(Timer&& other) noexcept : entry_(std::move(other.entry_)) {}

Timer& Timer::operator=(Timer&& other) noexcept {
  if (this != &other) {
    Stop();
    entry_ = std::move(other.entry_);
  }
  return *this;
}

void Timer::Stop() {
  const std::shared_ptr<Entry> entry = std::move(entry_);
  entry_ = nullptr;
  if (!entry || !entry->active) return;
  entry->active = false;
  if (const auto queue = entry->queue.lock()) queue->entries.erase(entry->key);
}

bool Timer::Active() const {
  return entry_ && entry_->active;
}

EventLoop::EventLoop() : queue_(std::make_shared<Queue>()) {}
EventLoop::~EventLoop() {
  Clear();
}

void EventLoop::Clear() {
  // A callback may own what owns further timers, so the map must not be in use while they are destroyed.
  while (!queue_->entries.empty()) {
    const auto dropped = std::exchange(queue_->entries, {});
    for (const auto& [key, entry] : dropped) entry->active = false;
  }
}

Timer EventLoop::Schedule(Nanoseconds delay, Nanoseconds interval, Callback callback) {
  auto entry = std::make_shared<Timer::Entry>();
  entry->queue = queue_;
  entry->key = {Elapsed() + std::max(delay, 0ns), queue_->nextSequence++};
  entry->interval = interval;
  entry->callback = std::move(callback);
  queue_->entries.emplace(entry->key, entry);
  QueueChanged();
  return Timer(std::move(entry));
}

Timer EventLoop::Every(Nanoseconds interval, Callback callback) {
  const Nanoseconds atLeast = std::max<Nanoseconds>(interval, 100us);
  return Schedule(atLeast, atLeast, std::move(callback));
}

Timer EventLoop::After(Nanoseconds delay, Callback callback) {
  return Schedule(delay, 0ns, std::move(callback));
}

void EventLoop::Post(Callback callback) {
  Timer timer = Schedule(0ns, 0ns, std::move(callback));
  timer.entry_ = nullptr;
}

EventLoop::SleepAwaiter EventLoop::Sleep(Nanoseconds duration) {
  return {*this, duration};
}
EventLoop::SleepAwaiter EventLoop::Yield() {
  return {*this, 0ns};
}

bool EventLoop::TurnIsOver(Nanoseconds turnStart) {
  return TurnClock() - turnStart >= 4ms;
}

std::optional<Nanoseconds> EventLoop::NextDue() const {
  if (queue_->entries.empty()) return std::nullopt;
  return queue_->entries.begin()->first.first;
}

void EventLoop::RunDue(Nanoseconds now) {
  const std::shared_ptr<Queue> queue = queue_;
  const std::uint64_t addedMeanwhile = queue->nextSequence;
  Key passed{Nanoseconds::min(), 0};
  for (;;) {
    auto next = queue->entries.upper_bound(passed);
    while (next != queue->entries.end() && next->first.second >= addedMeanwhile) ++next;
    if (next == queue->entries.end() || next->first.first > now) return;
    passed = next->first;
    const std::shared_ptr<Timer::Entry> entry = next->second;
    queue->entries.erase(next);
    if (entry->interval > 0ns) {
      const Nanoseconds due = entry->key.first;
      const Nanoseconds behind = now - due;
      const auto beats = behind / entry->interval + 1;
      entry->key = {due + beats * entry->interval, queue->nextSequence++};
      queue->entries.emplace(entry->key, entry);
      entry->callback();
    } else {
      entry->active = false;
      const Callback callback = std::move(entry->callback);
      callback();
    }
  }
}

}  // namespace kelvo

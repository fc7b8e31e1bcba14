#include "platform/SimulatedEventLoop.h"

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// What a turn of the loop costs in simulated time: little, but enough that a job which yields until
/// something happens lets time pass.
constexpr Nanoseconds kTurn = 20us;

}  // namespace

SimulatedEventLoop::SimulatedEventLoop(QDateTime start) : start_(std::move(start)) {}
SimulatedEventLoop::~SimulatedEventLoop() {
  Clear();
}

QDateTime SimulatedEventLoop::Now() const {
  return start_.addMSecs(elapsed_ / 1ms);
}

Nanoseconds SimulatedEventLoop::TurnClock() {
  looked_ += 50us;
  return looked_;
}

void SimulatedEventLoop::RunOffThread(Lane /*lane*/, std::function<void()> work, Callback done) {
  work();
  Post(std::move(done));
}

QString SimulatedEventLoop::HungPlaceOf(const QString& path) const {
  const auto holds = [&path](const QString& place) {
    return path == place || path.startsWith(place + QLatin1Char('/'));
  };
  const auto found = std::find_if(hanging_.begin(), hanging_.end(), holds);
  return found == hanging_.end() ? QString() : *found;
}

EventLoop::Disk SimulatedEventLoop::DiskOf(const QString& path) const {
  const QString place = HungPlaceOf(path);
  return place.isEmpty() ? Disk{QStringLiteral("/"), QStringLiteral("/")} : Disk{place, place};
}

void SimulatedEventLoop::RunLook(const QString& path, std::function<void()> work, Callback done) {
  if (Hangs(path)) {
    hungLooks_.push_back({path, std::move(work), std::move(done)});
  } else {
    RunOffThread(Lane::Apart, std::move(work), std::move(done));
  }
}

void SimulatedEventLoop::AnswerAgain(const QString& place) {
  hanging_.remove(place);
  for (HungLook& each : std::exchange(hungLooks_, {})) {
    RunLook(each.path, std::move(each.work), std::move(each.done));
  }
}

void SimulatedEventLoop::MoveTo(Nanoseconds to) {
  if (to <= elapsed_) return;
  for (const auto& [owner, follower] : followers_) follower(to);
  elapsed_ = to;
}

bool SimulatedEventLoop::Step(Nanoseconds limit) {
  const auto due = NextDue();
  if (!due || *due > limit) return false;
  MoveTo(std::min(std::max(*due, elapsed_ + kTurn), limit));
  RunDue(elapsed_);
  return true;
}

void SimulatedEventLoop::RunFor(Nanoseconds duration) {
  const Nanoseconds end = elapsed_ + duration;
  while (elapsed_ < end && Step(end)) {
  }
  MoveTo(end);
}

bool SimulatedEventLoop::RunUntil(const std::function<bool()>& condition, Nanoseconds limit) {
  const Nanoseconds end = elapsed_ + limit;
  while (!condition()) {
    if (elapsed_ >= end || !Step(end)) return condition();
  }
  return true;
}

void SimulatedEventLoop::AddFollower(const void* owner, Follower follower) {
  followers_.emplace_back(owner, std::move(follower));
}

void SimulatedEventLoop::RemoveFollower(const void* owner) {
  std::erase_if(followers_, [owner](const auto& each) { return each.first == owner; });
}

}  // namespace kelvo

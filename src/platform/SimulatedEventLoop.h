#pragma once

#include "platform/EventLoop.h"

#include <QSet>

#include <deque>
#include <vector>

namespace kelvo {

/// A loop whose clock stops while work is done and jumps from one due event to the next: hours pass in
/// seconds, twice with the same result. Who follows the clock (the simulated sound device) hears of each
/// jump before the event at its end runs.
class SimulatedEventLoop : public EventLoop {
 public:
  /// `start` is what Now() says at first.
  explicit SimulatedEventLoop(QDateTime start = QDateTime(QDate(2007, 6, 1), QTime(20, 0)));
  ~SimulatedEventLoop() override;

  [[nodiscard]] QDateTime Now() const override;
  [[nodiscard]] Nanoseconds Elapsed() const override { return elapsed_; }
  [[nodiscard]] Nanoseconds TurnClock() override;
  [[nodiscard]] bool Simulated() const override { return true; }
  /// Does the work at once; `done` comes at the next turn.
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override;

  [[nodiscard]] Disk DiskOf(const QString& path) const override;
  void RunLook(const QString& path, std::function<void()> work, Callback done) override;

  /// From now on a look at `place`, or at anything in it, does not come back until AnswerAgain.
  void HangDisk(const QString& place) { hanging_.insert(place); }
  /// What hung at `place` is done now.
  void AnswerAgain(const QString& place);
  [[nodiscard]] bool Hangs(const QString& path) const override { return !HungPlaceOf(path).isEmpty(); }

  /// Lets `duration` pass.
  void RunFor(Nanoseconds duration);
  /// Lets time pass until `condition` holds after an event, `limit` at most. Returns whether it holds.
  bool RunUntil(const std::function<bool()>& condition, Nanoseconds limit = std::chrono::minutes(10));

  /// Told of every move of the clock, with the time that it moves to, before Elapsed() says so.
  using Follower = std::function<void(Nanoseconds to)>;
  /// `owner` names the follower for RemoveFollower.
  void AddFollower(const void* owner, Follower follower);
  void RemoveFollower(const void* owner);

 protected:
  void QueueChanged() override {}

 private:
  struct HungLook {
    QString path;
    std::function<void()> work;
    Callback done;
  };
  [[nodiscard]] QString HungPlaceOf(const QString& path) const;
  bool Step(Nanoseconds limit);
  void MoveTo(Nanoseconds to);

  QDateTime start_;
  Nanoseconds elapsed_{0};
  Nanoseconds looked_{0};
  std::deque<std::pair<const void*, Follower>> followers_;
  QSet<QString> hanging_;
  std::vector<HungLook> hungLooks_;
};

}  // namespace kelvo

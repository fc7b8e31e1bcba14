#pragma once

#include <QDateTime>

#include <chrono>
#include <coroutine>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace kelvo {

using Nanoseconds = std::chrono::nanoseconds;

class EventLoop;

/// A running timer. Owned by whoever wants its calls; dropping it ends them, also from inside its own call.
/// Must not outlive its loop's use: after the loop is gone it is inert.
class [[nodiscard]] Timer {
 public:
  Timer() = default;
  Timer(Timer&& other) noexcept;
  Timer& operator=(Timer&& other) noexcept;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer() { Stop(); }

  void Stop();
  [[nodiscard]] bool Active() const;

 private:
  friend class EventLoop;
  struct Entry;
  explicit Timer(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
  std::shared_ptr<Entry> entry_;
};

/// The only source of time, and the order in which the logic's work is done. One thread: every call is made
/// on the logic's thread, every callback comes there. Two kinds exist: QtEventLoop for the running program,
/// and SimulatedEventLoop, whose clock jumps from one due event to the next.
class EventLoop {
 public:
  using Callback = std::function<void()>;

  /// Where work off the logic's thread is done. `Files` writes what the program keeps, in the order in which
  /// it was given. `Apart` keeps no order: each work has a thread of its own, so one that hangs on a disk
  /// blocks its caller only. See Disks for looks at disks that may not answer.
  enum class Lane { Files, Apart };

  EventLoop();
  virtual ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  /// The present date and local time.
  [[nodiscard]] virtual QDateTime Now() const = 0;
  /// Monotonic time since an arbitrary start; never goes back.
  [[nodiscard]] virtual Nanoseconds Elapsed() const = 0;

  /// Calls back each `interval`, first after one interval. Beats that were missed by a whole interval are
  /// dropped, not made up for.
  Timer Every(Nanoseconds interval, Callback callback);
  /// Calls back once, `delay` from now (at the loop's next turn when it is zero).
  Timer After(Nanoseconds delay, Callback callback);
  /// Calls back once at the loop's next turn; cannot be cancelled.
  void Post(Callback callback);

  class SleepAwaiter;
  /// `co_await`: goes on after `duration`; windows, timers and other jobs go on meanwhile.
  [[nodiscard]] SleepAwaiter Sleep(Nanoseconds duration);
  /// `co_await`: goes on at the loop's next turn.
  [[nodiscard]] SleepAwaiter Yield();

  template <typename Result>
  class OffloadAwaiter;
  /// `co_await loop.Offload(lane, work)`: does `work` on another thread and gives its result or rethrows its
  /// failure. The work owns all that it touches; when the waiting job is cancelled the work still ends,
  /// unheard. `work` is a named variable: GCC 12 destroys twice what a closure captures when it is made
  /// inside the `co_await`.
  template <typename Work>
  [[nodiscard]] auto Offload(Lane lane, Work&& work) -> OffloadAwaiter<decltype(work())>;

  /// True when a job that began its turn at `turnStart` (see TurnClock) has used its 4 ms and should yield.
  [[nodiscard]] bool TurnIsOver(Nanoseconds turnStart);
  /// The clock that turns are measured by. The simulated one moves a little at each look, so that a job which
  /// only asks still finishes its turn.
  [[nodiscard]] virtual Nanoseconds TurnClock() = 0;

  /// True when the clock doesn't follow the world outside: whoever waits for another process must then wait
  /// for it on the spot, or simulated hours would pass meanwhile.
  [[nodiscard]] virtual bool Simulated() const { return false; }

  /// Does `work` off the logic's thread, then calls `done` on it. See Offload.
  virtual void RunOffThread(Lane lane, std::function<void()> work, Callback done) = 0;

  /// A file system, by what tells it from any other that was or will be mounted in its place.
  struct Disk {
    QString key;   ///< empty: unknown
    QString name;  ///< where it is mounted, for people
  };
  /// The disk that `path` names, links not followed. Asks no disk anything.
  [[nodiscard]] virtual Disk DiskOf(const QString& path) const = 0;
  /// RunOffThread in Lane::Apart, for work that looks at `path`: in simulated time its disk can be made to
  /// hang.
  virtual void RunLook(const QString& path, std::function<void()> work, Callback done) = 0;
  /// Whether a look at `path` would hang; known in simulated time alone.
  [[nodiscard]] virtual bool Hangs(const QString& /*path*/) const { return false; }

 protected:
  /// Runs what is due at `now`, except what is added meanwhile: that waits for the next turn.
  void RunDue(Nanoseconds now);
  /// When the next event is due; none when there is none.
  [[nodiscard]] std::optional<Nanoseconds> NextDue() const;
  /// The queue changed: an event may be due earlier than before.
  virtual void QueueChanged() = 0;
  /// Drops all that waits. Called by the destructor of the derived loop.
  void Clear();

 private:
  friend class Timer;
  using Key = std::pair<Nanoseconds, std::uint64_t>;
  struct Queue;
  Timer Schedule(Nanoseconds delay, Nanoseconds interval, Callback callback);
  std::shared_ptr<Queue> queue_;
};

class EventLoop::SleepAwaiter {
 public:
  SleepAwaiter(EventLoop& loop, Nanoseconds duration) : loop_(&loop), duration_(duration) {}
  [[nodiscard]] bool await_ready() const { return false; }
  void await_suspend(std::coroutine_handle<> waiting) {
    timer_ = loop_->After(duration_, [waiting] { waiting.resume(); });
  }
  void await_resume() {}

 private:
  EventLoop* loop_;
  Nanoseconds duration_;
  Timer timer_;
};

/// A job's allowance of the logic's thread: `co_await turn.Yield()` costs next to nothing until 4 ms are used
/// up, and then lets the loop take a turn.
class Turn {
 public:
  explicit Turn(EventLoop& loop) : loop_(loop), start_(loop.TurnClock()) {}

  class Awaiter {
   public:
    explicit Awaiter(Turn& turn) : turn_(turn), sleep_(turn.loop_.Yield()) {}
    [[nodiscard]] bool await_ready() const { return !turn_.loop_.TurnIsOver(turn_.start_); }
    void await_suspend(std::coroutine_handle<> waiting) {
      yielded_ = true;
      sleep_.await_suspend(waiting);
    }
    void await_resume() {
      if (yielded_) turn_.start_ = turn_.loop_.TurnClock();
    }

   private:
    Turn& turn_;
    EventLoop::SleepAwaiter sleep_;
    bool yielded_ = false;
  };
  [[nodiscard]] Awaiter Yield() { return Awaiter(*this); }

 private:
  EventLoop& loop_;
  Nanoseconds start_;
};

template <typename Result>
class EventLoop::OffloadAwaiter {
 public:
  OffloadAwaiter(EventLoop& loop, Lane lane, std::function<Result()> work)
      : loop_(&loop), lane_(lane), work_(std::move(work)) {}
  OffloadAwaiter(OffloadAwaiter&&) noexcept = default;
  ~OffloadAwaiter() {
    if (shared_) shared_->waiting = nullptr;
  }
  [[nodiscard]] bool await_ready() const { return false; }
  void await_suspend(std::coroutine_handle<> waiting) {
    shared_ = std::make_shared<Shared>();
    shared_->waiting = waiting;
    loop_->RunOffThread(
        lane_,
        [shared = shared_, work = std::move(work_)]() mutable {
          try {
            if constexpr (std::is_void_v<Result>) {
              work();
            } else {
              shared->result.emplace(work());
            }
          } catch (...) {
            shared->failure = std::current_exception();
          }
          work = nullptr;
        },
        [shared = shared_] {
          if (shared->waiting) std::exchange(shared->waiting, nullptr).resume();
        });
  }
  Result await_resume() {
    const std::shared_ptr<Shared> shared = std::move(shared_);
    if (shared->failure) std::rethrow_exception(shared->failure);
    if constexpr (!std::is_void_v<Result>) return std::move(*shared->result);
  }

 private:
  struct Nothing {};
  struct Shared {
    std::optional<std::conditional_t<std::is_void_v<Result>, Nothing, Result>> result;
    std::exception_ptr failure;
    std::coroutine_handle<> waiting;
  };
  EventLoop* loop_;
  Lane lane_;
  std::function<Result()> work_;
  std::shared_ptr<Shared> shared_;
};

template <typename Work>
auto EventLoop::Offload(Lane lane, Work&& work) -> OffloadAwaiter<decltype(work())> {
  static_assert(std::is_lvalue_reference_v<Work> || std::is_trivially_destructible_v<Work>,
                "put the closure into a named local before the co_await: a temporary one is destroyed twice");
  return OffloadAwaiter<decltype(work())>(*this, lane, std::forward<Work>(work));
}

}  // namespace kelvo

#pragma once

#include <algorithm>
#include <coroutine>
#include <exception>
#include <functional>
#include <list>
#include <optional>
#include <type_traits>
#include <utility>

namespace kelvo {

template <typename T = void>
class Job;

/// Called with the failure of a job that nobody awaits: when it fails, or, when it fails before its first
/// suspension, as soon as its handle is stored in another or dropped without being awaited. Set once a thread
/// (see ErrorLog); when unset, the failure ends the process.
void SetJobFailureHandler(std::function<void(std::exception_ptr)> handler);

namespace detail {

void ReportJobFailure(std::exception_ptr failure);

/// What every job's frame keeps beside its result. A frame can only be destroyed while it is suspended, so an
/// owner that lets go of a job whose body is on the stack at that moment only marks it; the body then ends at
/// its next suspension.
struct JobPromiseBase {
  std::coroutine_handle<> continuation;
  std::exception_ptr failure;
  bool onStack = true;
  bool abandoned = false;
  /// The starter has the handle only after the first suspension; whether it awaits cannot be known before.
  bool inFirstRun = true;
  bool reported = false;

  /// Hands a failure that nobody awaited to the handler, once. The frame may be gone afterwards.
  void ReportUnheard() {
    if (failure && !std::exchange(reported, true)) ReportJobFailure(failure);
  }

  struct FinalAwaiter {
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    template <typename Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> self) const noexcept {
      JobPromiseBase& promise = self.promise();
      promise.onStack = false;
      if (promise.abandoned) {
        const std::exception_ptr failure = promise.failure;
        self.destroy();
        if (failure) ReportJobFailure(failure);
        return std::noop_coroutine();
      }
      if (promise.continuation) return promise.continuation;
      if (!promise.inFirstRun) promise.ReportUnheard();
      return std::noop_coroutine();
    }
    void await_resume() const noexcept {}
  };

  /// Wraps every awaiter of a job, to know whether the body is on the stack.
  template <typename Awaiter>
  struct Suspension {
    Awaiter awaiter;
    JobPromiseBase& promise;

    bool await_ready() { return !promise.abandoned && awaiter.await_ready(); }
    template <typename Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> self) {
      if (promise.abandoned) {
        promise.onStack = false;
        self.destroy();
        return std::noop_coroutine();
      }
      promise.onStack = false;
      promise.inFirstRun = false;
      try {
        awaiter.await_suspend(self);
      } catch (...) {
        promise.onStack = true;
        throw;
      }
      return std::noop_coroutine();
    }
    decltype(auto) await_resume() {
      promise.onStack = true;
      return awaiter.await_resume();
    }
  };

  std::suspend_never initial_suspend() noexcept { return {}; }
  FinalAwaiter final_suspend() noexcept { return {}; }
  void unhandled_exception() noexcept { failure = std::current_exception(); }

  /// An awaiter is moved into the frame; its `await_suspend` takes a `std::coroutine_handle<>` and returns
  /// nothing.
  template <typename Awaitable>
  auto await_transform(Awaitable&& awaitable) {
    auto awaiter = ToAwaiter(std::forward<Awaitable>(awaitable));
    return Suspension<decltype(awaiter)>{std::move(awaiter), *this};
  }

 private:
  template <typename T>
  static auto ToAwaiter(Job<T>&& job);
  template <typename Awaiter>
  static Awaiter ToAwaiter(Awaiter&& awaiter) {
    return std::forward<Awaiter>(awaiter);
  }
};

template <typename T>
struct JobPromise : JobPromiseBase {
  std::optional<T> result;
  Job<T> get_return_object();
  template <typename U>
  void return_value(U&& value) {
    result.emplace(std::forward<U>(value));
  }
};

template <>
struct JobPromise<void> : JobPromiseBase {
  Job<void> get_return_object();
  void return_void() noexcept {}
};

}  // namespace detail

/// A coroutine of the logic's thread, owned by whoever holds this handle. It runs at once, up to its first
/// suspension. Dropping the handle cancels it: the destructors in its frame run, nothing after the present
/// `co_await` does. `co_await std::move(job)` gives its result or rethrows its failure.
/// GCC 12 destroys twice what a temporary closure with captures, or a temporary aggregate, holds inside a
/// `co_await` expression: such an argument needs a name before it.
template <typename T>
class [[nodiscard]] Job {
 public:
  using promise_type = detail::JobPromise<T>;

  Job() = default;
  explicit Job(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
  Job(Job&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Job& operator=(Job&& other) noexcept {
    if (this != &other) {
      Cancel();
      handle_ = std::exchange(other.handle_, nullptr);
      // A job that is stored is not awaited at once, so a failure at its very start is reported now.
      if (handle_ && handle_.done()) handle_.promise().ReportUnheard();
    }
    return *this;
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  ~Job() { Cancel(); }

  /// Ends the job at the point that it has reached. Safe from inside the job itself.
  void Cancel() {
    const auto handle = std::exchange(handle_, nullptr);
    if (!handle) return;
    if (handle.promise().onStack) {
      handle.promise().abandoned = true;
      handle.promise().continuation = nullptr;
    } else {
      if (handle.done()) handle.promise().ReportUnheard();
      handle.destroy();
    }
  }

  /// True while there is work left: started, not cancelled, not at its end.
  [[nodiscard]] bool Running() const { return handle_ && !handle_.done(); }

  struct Awaiter {
    Job job;
    [[nodiscard]] bool await_ready() const { return job.handle_.done(); }
    void await_suspend(std::coroutine_handle<> waiting) { job.handle_.promise().continuation = waiting; }
    T await_resume() {
      auto& promise = job.handle_.promise();
      if (promise.failure) std::rethrow_exception(std::exchange(promise.failure, nullptr));
      if constexpr (!std::is_void_v<T>) return std::move(*promise.result);
    }
  };

 private:
  std::coroutine_handle<promise_type> handle_;
};

namespace detail {

template <typename T>
auto JobPromiseBase::ToAwaiter(Job<T>&& job) {
  return typename Job<T>::Awaiter{std::move(job)};
}

template <typename T>
Job<T> JobPromise<T>::get_return_object() {
  return Job<T>(std::coroutine_handle<JobPromise<T>>::from_promise(*this));
}
inline Job<void> JobPromise<void>::get_return_object() {
  return Job<void>(std::coroutine_handle<JobPromise<void>>::from_promise(*this));
}

}  // namespace detail

/// The jobs that an object has running: they end with it. Finished ones are let go at the next Add.
class JobList {
 public:
  void Add(Job<> job) {
    jobs_.remove_if([](const Job<>& each) { return !each.Running(); });
    if (job.Running()) jobs_.push_back(std::move(job));
  }
  void CancelAll() { std::exchange(jobs_, {}).clear(); }
  [[nodiscard]] bool Running() const {
    return std::any_of(jobs_.begin(), jobs_.end(), [](const Job<>& each) { return each.Running(); });
  }

 private:
  std::list<Job<>> jobs_;
};

/// One answer that comes later: a job awaits it, an event handler gives it. The first Set counts. The object
/// must outlive the job that waits, or be destroyed with it; only one job may wait.
template <typename T>
class OneShot {
 public:
  OneShot() = default;
  OneShot(const OneShot&) = delete;
  OneShot& operator=(const OneShot&) = delete;

  void Set(T value) {
    if (value_) return;
    value_.emplace(std::move(value));
    if (waiting_) std::exchange(waiting_, nullptr).resume();
  }
  [[nodiscard]] bool IsSet() const { return value_.has_value(); }

  struct Awaiter {
    OneShot* shot;
    bool registered = false;
    explicit Awaiter(OneShot* owner) : shot(owner) {}
    Awaiter(Awaiter&& other) noexcept : shot(other.shot) {}
    ~Awaiter() {
      if (registered) shot->waiting_ = nullptr;
    }
    [[nodiscard]] bool await_ready() const { return shot->value_.has_value(); }
    void await_suspend(std::coroutine_handle<> waiting) {
      registered = true;
      shot->waiting_ = waiting;
    }
    T await_resume() {
      registered = false;
      return std::move(*shot->value_);
    }
  };
  [[nodiscard]] Awaiter Wait() { return Awaiter(this); }

 private:
  std::optional<T> value_;
  std::coroutine_handle<> waiting_;
};

}  // namespace kelvo

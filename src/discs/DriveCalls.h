#pragma once

#include "discs/DiscDrive.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace kelvo {

/// Calls drives: each call off the logic's thread on a thread of its own, so a drive that hangs holds up
/// nobody but its caller, and him for half a minute. Logic thread.
class DriveCalls {
 public:
  /// A drive that counts nothing for so long is given up. To wake one up and to let it find the beginning of
  /// a disc takes up to twenty seconds.
  static constexpr Nanoseconds kLimit = std::chrono::seconds(30);

  explicit DriveCalls(EventLoop& loop) : loop_(loop) {}

  /// Does `work` at the drive of `place` and gives its result, or rethrows its failure. Throws DriveFailure
  /// when the drive hangs. `beat` counts what the work gets done; without one it has the limit as a whole.
  /// `work` owns all that it touches: it may end long after.
  template <typename Work>
  [[nodiscard]] Job<std::invoke_result_t<Work>> Do(QString place, Work work, DriveBeatPtr beat = {});

 private:
  struct Watched {
    std::exception_ptr failure;
    OneShot<bool> answered;
  };
  [[nodiscard]] Job<bool> Run(QString place, std::shared_ptr<Watched> watched, std::function<void()> work,
                              DriveBeatPtr beat);

  EventLoop& loop_;
};

template <typename Work>
Job<std::invoke_result_t<Work>> DriveCalls::Do(QString place, Work work, DriveBeatPtr beat) {
  using Result = std::invoke_result_t<Work>;
  struct Nothing {};
  using Kept = std::conditional_t<std::is_void_v<Result>, Nothing, Result>;
  const auto watched = std::make_shared<Watched>();
  const auto result = std::make_shared<std::optional<Kept>>();
  const std::function<void()> call = [watched, result, work = std::move(work)]() mutable {
    try {
      if constexpr (std::is_void_v<Result>) {
        work();
      } else {
        result->emplace(work());
      }
    } catch (...) {
      watched->failure = std::current_exception();
    }
  };
  const bool answered = co_await Run(place, watched, call, beat);
  if (!answered)
    throw DriveFailure(DriveFailure::Kind::Refused,
                       QStringLiteral("The drive %1 does not answer.").arg(place), place);
  if (watched->failure) std::rethrow_exception(watched->failure);
  if constexpr (!std::is_void_v<Result>) co_return std::move(**result);
}

}  // namespace kelvo

#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace kelvo {

/// Does `work` on a thread of its own and gives its result, or none when that takes longer than `limit`: for
/// looks at disks that may not answer. What comes after the limit is unheard. Rethrows its failure.
template <typename Work>
[[nodiscard]] Job<std::optional<std::invoke_result_t<Work>>> OffloadWithin(EventLoop& loop, Nanoseconds limit,
                                                                           Work work) {
  struct Shared {
    std::optional<std::invoke_result_t<Work>> result;
    std::exception_ptr failure;
    OneShot<bool> inTime;
  };
  const auto shared = std::make_shared<Shared>();
  const auto begin = [shared, work = std::move(work)] {
    try {
      shared->result.emplace(work());
    } catch (...) {
      shared->failure = std::current_exception();
    }
  };
  loop.RunOffThread(EventLoop::Lane::Apart, begin, [shared] { shared->inTime.Set(true); });
  const Timer timer = loop.After(limit, [shared] { shared->inTime.Set(false); });
  const bool inTime = co_await shared->inTime.Wait();
  if (!inTime) co_return std::nullopt;
  if (shared->failure) std::rethrow_exception(shared->failure);
  co_return std::move(shared->result);
}

}  // namespace kelvo

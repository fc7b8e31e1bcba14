#include "discs/DriveCalls.h"

namespace kelvo {

using namespace std::chrono_literals;

Job<bool> DriveCalls::Run(QString place, std::shared_ptr<Watched> watched, std::function<void()> work,
                          DriveBeatPtr beat) {
  struct Seen {
    std::uint64_t steps = 0;
    Nanoseconds quiet{0};
  };
  Seen seen;
  if (beat) seen.steps = beat->steps.load(std::memory_order_relaxed);
  const Timer watch = loop_.Every(1s, [&seen, &watched, &beat] {
    const std::uint64_t steps = beat ? beat->steps.load(std::memory_order_relaxed) : 0;
    seen.quiet = steps == seen.steps ? seen.quiet + 1s : Nanoseconds(0);
    seen.steps = steps;
    if (seen.quiet >= kLimit) watched->answered.Set(false);
  });
  loop_.RunLook(place, std::move(work), [watched] { watched->answered.Set(true); });
  const bool answered = co_await watched->answered.Wait();
  co_return answered;
}

}  // namespace kelvo

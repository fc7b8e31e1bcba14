#include "audio/engine/ThreadYard.h"

namespace kelvo {

ThreadYard::~ThreadYard() {
  for (Entry& each : threads_) each.thread.request_stop();
  threads_.clear();
}

std::stop_source ThreadYard::Start(std::function<void(std::stop_token)> work) {
  auto done = std::make_shared<std::atomic<bool>>(false);
  std::jthread thread([work = std::move(work), done](std::stop_token stop) mutable {
    work(std::move(stop));
    work = nullptr;
    done->store(true, std::memory_order_release);
  });
  std::stop_source source = thread.get_stop_source();
  threads_.push_back({std::move(done), std::move(thread)});
  return source;
}

void ThreadYard::Sweep() {
  std::erase_if(threads_, [](const Entry& each) { return each.done->load(std::memory_order_acquire); });
}

}  // namespace kelvo

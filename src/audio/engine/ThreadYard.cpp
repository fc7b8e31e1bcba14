#include "audio/engine/ThreadYard.h"

#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>

namespace kelvo {

struct ThreadYard::Shared {
  std::mutex mutex;
  std::condition_variable ended;
  std::list<std::stop_source> running;
};

ThreadYard::ThreadYard() : shared_(std::make_shared<Shared>()) {}

ThreadYard::~ThreadYard() {
  std::unique_lock lock(shared_->mutex);
  // Copies: whoever is stopped may end, and leave the list, at once.
  const std::list<std::stop_source> running = shared_->running;
  lock.unlock();
  for (std::stop_source each : running) each.request_stop();
  lock.lock();
  shared_->ended.wait_for(lock, kEndAllowance, [this] { return shared_->running.empty(); });
}

std::stop_source ThreadYard::Start(std::function<void(std::stop_token)> work) {
  std::stop_source source;
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->running.push_back(source);
  }
  std::thread([shared = shared_, source, work = std::move(work)]() mutable {
    work(source.get_token());
    work = nullptr;
    const std::lock_guard lock(shared->mutex);
    shared->running.remove(source);
    shared->ended.notify_all();
  }).detach();
  return source;
}

int ThreadYard::Running() const {
  const std::lock_guard lock(shared_->mutex);
  return static_cast<int>(shared_->running.size());
}

}  // namespace kelvo

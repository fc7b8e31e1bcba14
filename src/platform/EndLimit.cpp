#include "platform/EndLimit.h"

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <stop_token>

namespace kelvo {

EndLimit::EndLimit(Nanoseconds limit)
    : exitCode_(std::make_shared<std::atomic<int>>(EXIT_FAILURE)),
      watch_([limit, exitCode = exitCode_](const std::stop_token& stop) {
        std::mutex mutex;
        std::condition_variable_any never;
        std::unique_lock lock(mutex);
        never.wait_for(lock, stop, limit, [] { return false; });
        if (stop.stop_requested()) return;
        std::fputs("kelvo: a disk does not answer, the program ends without waiting for it\n", stderr);
        std::_Exit(*exitCode);
      }) {}

std::function<void()> EndLimit::WhenWritten(int exitCode) const {
  return [result = exitCode_, exitCode] { *result = exitCode; };
}

}  // namespace kelvo

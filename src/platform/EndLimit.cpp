#include "platform/EndLimit.h"

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <stop_token>

namespace kelvo {

EndLimit::EndLimit(Nanoseconds limit)
    : watch_([limit](const std::stop_token& stop) {
        std::mutex mutex;
        std::condition_variable_any never;
        std::unique_lock lock(mutex);
        never.wait_for(lock, stop, limit, [] { return false; });
        if (stop.stop_requested()) return;
        std::fputs("kelvo: a disk does not answer, the program ends without waiting for it\n", stderr);
        std::_Exit(EXIT_FAILURE);
      }) {}

}  // namespace kelvo

#include "ui/Pulse.h"

#include "platform/EventLoop.h"

namespace kelvo {

Pulse::Pulse(EventLoop& loop) {
  timer_ = std::make_unique<Timer>(loop.Every(std::chrono::milliseconds(400), [this] {
    lit_ = !lit_;
    Q_EMIT Beat(lit_);
  }));
}

Pulse::~Pulse() = default;

}  // namespace kelvo

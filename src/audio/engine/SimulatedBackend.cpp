#include "audio/engine/SimulatedBackend.h"

#include "audio/engine/ClockFrames.h"

#include <algorithm>

namespace kelvo {

namespace {

constexpr std::size_t kStretch = 4096;

}  // namespace

SimulatedBackend::SimulatedBackend(SimulatedEventLoop& loop, Sink sink, QStringList names)
    : loop_(loop),
      sink_(std::move(sink)),
      names_(std::move(names)),
      rendered_(FramesIn(loop.Elapsed())),
      buffer_(kStretch * kChannels) {
  loop_.AddFollower(this, [this](Nanoseconds to) { RenderTo(to); });
}

SimulatedBackend::~SimulatedBackend() {
  loop_.RemoveFollower(this);
}

void SimulatedBackend::Open(std::shared_ptr<DeviceLink> link) {
  const bool exists = link->Name().isEmpty() ? !names_.isEmpty() : names_.contains(link->Name());
  link->SetState(exists ? DeviceLink::State::Running : DeviceLink::State::Gone);
  if (exists) links_.push_back(std::move(link));
}

void SimulatedBackend::RenderTo(Nanoseconds to) {
  std::erase_if(links_, [](const auto& link) { return link->Detached(); });
  while (rendered_ < FramesIn(to)) {
    const auto frames = std::min<FrameIndex>(FramesIn(to) - rendered_, kStretch);
    const auto part = std::span(buffer_).first(static_cast<std::size_t>(frames) * kChannels);
    for (const auto& link : links_) {
      link->Deliver(part);
      if (sink_) sink_(link->Name(), part);
    }
    rendered_ += frames;
  }
}

}  // namespace kelvo

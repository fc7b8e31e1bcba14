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
  if (exists) devices_.push_back({std::move(link)});
}

void SimulatedBackend::RenderTo(Nanoseconds to) {
  std::erase_if(devices_, [](const Device& device) { return device.link->Detached(); });
  while (rendered_ < FramesIn(to)) {
    const auto frames = std::min<FrameIndex>(FramesIn(to) - rendered_, kStretch);
    for (Device& device : devices_) {
      device.ahead += static_cast<double>(frames) * drifts_.value(device.link->Name()) / 1e6;
      const auto extra = static_cast<FrameIndex>(device.ahead);
      device.ahead -= static_cast<double>(extra);
      Play(device, frames + extra);
    }
    rendered_ += frames;
  }
}

void SimulatedBackend::Play(Device& device, FrameIndex frames) {
  while (frames > 0) {
    const FrameIndex part = std::min<FrameIndex>(frames, kStretch);
    const auto sound = std::span(buffer_).first(static_cast<std::size_t>(part) * kChannels);
    device.link->Deliver(sound);
    if (sink_) sink_(device.link->Name(), sound);
    frames -= part;
  }
}

}  // namespace kelvo

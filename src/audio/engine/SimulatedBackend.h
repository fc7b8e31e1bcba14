#pragma once

#include "audio/engine/OutputBackend.h"
#include "platform/SimulatedEventLoop.h"

#include <functional>
#include <span>
#include <vector>

namespace kelvo {

/// Devices that play exactly the frames that a simulated clock passes, as fast as the machine can.
class SimulatedBackend : public OutputBackend {
 public:
  /// Gets what each output plays, in order, interleaved stereo; `output` is the name that was asked for.
  using Sink = std::function<void(const QString& output, std::span<const float> sound)>;

  /// `names`: the devices that exist, the default one first. Without a sink the sound is mixed and dropped.
  explicit SimulatedBackend(SimulatedEventLoop& loop, Sink sink = {},
                            QStringList names = {QStringLiteral("Simulated")});
  ~SimulatedBackend() override;

  [[nodiscard]] QStringList Names() const override { return names_; }
  void Open(std::shared_ptr<DeviceLink> link) override;
  [[nodiscard]] bool Threaded() const override { return false; }

 private:
  void RenderTo(Nanoseconds to);

  SimulatedEventLoop& loop_;
  Sink sink_;
  QStringList names_;
  std::vector<std::shared_ptr<DeviceLink>> links_;
  FrameIndex rendered_ = 0;
  std::vector<float> buffer_;
};

}  // namespace kelvo

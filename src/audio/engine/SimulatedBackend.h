#pragma once

#include "audio/engine/OutputBackend.h"
#include "platform/SimulatedEventLoop.h"

#include <QHash>

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
  [[nodiscard]] bool DecodesAhead() const override { return decodesAhead_; }
  /// Before an engine has it.
  void SetDecodesAhead() { decodesAhead_ = true; }
  /// From now on the device of that name runs fast by so many millionths; slow if negative.
  void SetDrift(const QString& name, double millionths) { drifts_[name] = millionths; }

 private:
  struct Device {
    std::shared_ptr<DeviceLink> link;
    double ahead = 0;  ///< of the loop's clock, frames
  };
  void RenderTo(Nanoseconds to);
  void Play(Device& device, FrameIndex frames);

  SimulatedEventLoop& loop_;
  Sink sink_;
  QStringList names_;
  QHash<QString, double> drifts_;
  std::vector<Device> devices_;
  FrameIndex rendered_ = 0;
  bool decodesAhead_ = false;
  std::vector<float> buffer_;
};

}  // namespace kelvo

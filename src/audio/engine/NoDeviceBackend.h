#pragma once

#include "audio/engine/OutputBackend.h"

namespace kelvo {

/// No device at all: every output runs on the silent clock. With names it replaces devices that nobody
/// wants to hear, and tells its outputs as being on air.
class NoDeviceBackend : public OutputBackend {
 public:
  /// `names`: what it calls itself where a machine without sound is to be worked on all the same. `threaded`
  /// is false where time is simulated.
  explicit NoDeviceBackend(QStringList names = {}, bool threaded = true)
      : names_(std::move(names)), threaded_(threaded) {}

  [[nodiscard]] QStringList Names() const override { return names_; }
  void Open(std::shared_ptr<DeviceLink> link) override { link->SetState(DeviceLink::State::Gone); }
  [[nodiscard]] bool MeantSilent() const override { return !names_.isEmpty(); }
  [[nodiscard]] bool Threaded() const override { return threaded_; }

 private:
  const QStringList names_;
  const bool threaded_;
};

}  // namespace kelvo

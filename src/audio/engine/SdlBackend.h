#pragma once

#include "audio/engine/OutputBackend.h"

#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace kelvo {

/// The sound devices of a machine without a sound server, through SDL. Every call of SDL is made on one
/// thread of its own, so a device that is slow or dead blocks nothing else. Owned by the engine; logic
/// thread.
class SdlBackend : public OutputBackend {
 public:
  /// `bufferFrames`: what a device asks for at a time; a power of two. Smaller is quicker and gaps
  /// sooner: on a machine whose processors are all busy, 1024 does.
  explicit SdlBackend(int bufferFrames = 2048);
  /// Closes what is open, and waits for that.
  ~SdlBackend() override;

  [[nodiscard]] QStringList Names() const override;
  [[nodiscard]] bool HasLooked() const override { return looked_.load(std::memory_order_acquire); }
  void Open(std::shared_ptr<DeviceLink> link) override;

 private:
  // The device thread:
  void Run(const std::stop_token& stop);
  void Initialise();
  void ShutDown();
  void CloseDetached();
  void OpenDevice(const std::shared_ptr<DeviceLink>& link);
  /// Returns whether devices came or went.
  bool HandleEvents();
  void ReadNames();

  const int bufferFrames_;
  mutable std::mutex mutex_;
  std::condition_variable_any wake_;
  std::vector<std::shared_ptr<DeviceLink>> requests_;
  QStringList names_;
  std::atomic<bool> looked_{false};

  // The device thread alone:
  bool initialised_ = false;
  std::map<unsigned, std::shared_ptr<DeviceLink>> devices_;  ///< by SDL's id of the open device

  std::jthread thread_;
};

}  // namespace kelvo

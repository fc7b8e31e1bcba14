#pragma once

#include "audio/AudioSystem.h"
#include "audio/engine/OutputBackend.h"
#include "platform/EventLoop.h"

#include <memory>
#include <vector>

namespace kelvo {

/// One output by name: keeps a device open for it, tries again while there is none, and lets time go on
/// without one. A named output is only ever played by the device of that name. Owned by the engine and its
/// players; logic thread.
class Output {
 public:
  /// `name` is empty for the default output.
  Output(EventLoop& loop, OutputBackend& backend, QString name);
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  [[nodiscard]] const QString& Name() const { return name_; }
  [[nodiscard]] OutputMixer& Mixer() { return *mixer_; }
  [[nodiscard]] OutputStatus Status() const;
  /// How much sound waits in front of the device; 0 where none does.
  [[nodiscard]] Nanoseconds Reserve() const { return link_ ? link_->Reserve() : Nanoseconds(0); }

  /// Looks after the device and the silent clock; to be called every 10 ms.
  void Tick();
  /// A player has new orders: what is queued is rendered anew, once all that this turn of the loop has to say
  /// is said.
  void Hasten(DeviceLink::Hurry hurry);

 private:
  void WatchDevice(Nanoseconds passed);
  void TryToOpen(Nanoseconds now);
  void LetGo();
  void KnowDefault();
  /// How long the device of the present link may be quiet before time goes on without it.
  [[nodiscard]] Nanoseconds Patience() const;
  void RunClock(Nanoseconds now);

  EventLoop& loop_;
  OutputBackend& backend_;
  const QString name_;
  std::shared_ptr<OutputMixer> mixer_;
  std::shared_ptr<DeviceLink> link_;
  bool ran_ = false;  ///< the present link has been heard of
  QString asked_;     ///< for the default output: the device that it is meant to play on
  int epoch_ = 0;     ///< of the names that asked_ is one of
  Nanoseconds nextTry_{0};
  Nanoseconds lastTick_;
  Nanoseconds quietFor_{0};  ///< how long the device has not called
  std::uint64_t seenCalls_ = 0;
  bool onClock_ = false;
  Nanoseconds clockStart_{0};
  FrameIndex clockFrames_ = 0;  ///< rendered since clockStart_
  std::vector<float> clockBuffer_;
  DeviceLink::Hurry hurry_ = DeviceLink::Hurry::None;
  Timer hasten_;
};

}  // namespace kelvo

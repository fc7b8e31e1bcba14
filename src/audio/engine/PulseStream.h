#pragma once

#include "audio/engine/OutputBackend.h"

#include <pulse/pulseaudio.h>

#include <memory>

namespace kelvo {

/// How much sound waits in the server for a device. What it takes depends on the machine and the device, so
/// it grows for good when it was too little. One a device; the device thread.
class PulseReserve {
 public:
  [[nodiscard]] std::uint32_t Frames() const { return frames_; }
  /// For a queue of `frames` that ran dry.
  void Grow(std::uint32_t frames);

 private:
  std::uint32_t frames_ = 6 * 1024;  ///< 139 ms
};

/// The sound of one link on its way into a server. Made, used and dropped on the device thread, the callbacks
/// included.
class PulseStream {
 public:
  /// Begins to play on `sink`, or where `sink` is empty on what the server holds for its default, also when
  /// that changes. `context` must be ready; both it and `reserve` outlive the stream.
  PulseStream(pa_context& context, PulseReserve& reserve, std::shared_ptr<DeviceLink> link,
              const QByteArray& sink);
  /// What is queued is dropped.
  ~PulseStream();
  PulseStream(const PulseStream&) = delete;
  PulseStream& operator=(const PulseStream&) = delete;

  /// False once the server has ended it, or when what its link left behind has been played.
  [[nodiscard]] bool Wanted() const;
  /// Tells the link that its device is gone.
  void GiveUp() { link_->SetState(DeviceLink::State::Gone); }

 private:
  void TakeState();
  void Write(std::size_t bytes);
  void RanDry();
  void Forget();
  [[nodiscard]] pa_buffer_attr Buffer() const;

  PulseReserve& reserve_;
  const std::shared_ptr<DeviceLink> link_;
  pa_stream* stream_;
  std::uint32_t frames_;  ///< of reserve that this stream asked for
  bool primed_ = false;
  std::size_t tail_ = 0;  ///< bytes written since the link wanted no more
};

}  // namespace kelvo

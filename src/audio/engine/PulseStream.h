#pragma once

#include "audio/engine/OutputBackend.h"

#include <pulse/pulseaudio.h>

#include <memory>

namespace kelvo {

/// How much sound waits in the server for the device. What it takes depends on the machine, so it grows for
/// good when it was too little. One for all streams of a server; the device thread.
class PulseReserve {
 public:
  [[nodiscard]] std::uint32_t Frames() const { return frames_; }
  /// For a queue of `frames` that ran dry. Streams that hold as little should ask for Frames() now.
  void Grow(std::uint32_t frames);

 private:
  std::uint32_t frames_ = 6 * 1024;  ///< 139 ms
};

/// The sound of one link on its way into a server. Made, used and dropped on the device thread, the callbacks
/// included.
class PulseStream {
 public:
  /// Begins to play on `sink`, or where `sink` is empty on what the server holds for its default, also when
  /// that changes. `context` must be ready and outlive the stream, `reserve` too.
  PulseStream(pa_context& context, PulseReserve& reserve, std::shared_ptr<DeviceLink> link,
              const QByteArray& sink);
  /// What is queued is dropped.
  ~PulseStream();
  PulseStream(const PulseStream&) = delete;
  PulseStream& operator=(const PulseStream&) = delete;

  /// False once the server has ended it, or when its link wants no more of it.
  [[nodiscard]] bool Wanted() const;
  /// Tells the link that its device is gone.
  void GiveUp() { link_->SetState(DeviceLink::State::Gone); }

 private:
  void TakeState();
  void Write(std::size_t bytes);
  void RanDry();
  [[nodiscard]] pa_buffer_attr Buffer() const;

  PulseReserve& reserve_;
  const std::shared_ptr<DeviceLink> link_;
  pa_stream* stream_;
  std::uint32_t frames_;  ///< of reserve that this stream asked for
  bool primed_ = false;
};

}  // namespace kelvo

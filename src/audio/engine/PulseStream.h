#pragma once

#include "audio/engine/OutputBackend.h"

#include <pulse/pulseaudio.h>

#include <memory>

namespace kelvo {

/// How much sound waits in the server for a device. What it takes depends on the machine and the device, so
/// it grows when it was too little, and goes back step by step while nothing happens. One a device; the
/// device thread.
class PulseReserve {
 public:
  [[nodiscard]] std::uint32_t Frames() const { return frames_; }
  /// For a queue of `frames` that ran dry.
  void Grow(std::uint32_t frames, Nanoseconds now);
  /// Returns whether it has become smaller, which it does after three quiet minutes.
  [[nodiscard]] bool Shrink(Nanoseconds now);

 private:
  static constexpr std::uint32_t kLeast = 6 * 1024;  ///< 139 ms
  std::uint32_t frames_ = kLeast;
  Nanoseconds changedAt_{0};
};

/// The sound of one link on its way into a server. What is queued there and not heard is rendered anew when
/// there are orders, so the reserve is not felt. Made, used and dropped on the device thread, the callbacks
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
  /// Sees to the orders that the link has been told of. Called at each turn of the thread's loop.
  void Serve();
  /// Tells the link that its device is gone.
  void GiveUp() { link_->SetState(DeviceLink::State::Gone); }

 private:
  void TakeState();
  /// Fills `bytes` of the queue, from `back` bytes before its end on.
  void Write(std::size_t bytes, std::int64_t back = 0);
  void TakeTiming();
  void RanDry();
  void ApplyReserve();
  /// What lies in the server's queue when it is full, in frames.
  [[nodiscard]] FrameIndex QueueFrames() const;
  void Forget();
  [[nodiscard]] pa_buffer_attr Buffer() const;

  struct Drop {
    void operator()(pa_operation* question) const {
      pa_operation_cancel(question);
      pa_operation_unref(question);
    }
  };

  PulseReserve& reserve_;
  const std::shared_ptr<DeviceLink> link_;
  pa_stream* stream_;
  std::uint32_t frames_;  ///< of reserve that this stream asked for
  bool primed_ = false;
  std::unique_ptr<pa_operation, Drop> timing_;  ///< asked for, so that the queue can be written anew
  pa_usec_t askedAt_ = 0;
  pa_usec_t rewrittenAt_ = 0;
  FrameIndex inDevice_ = 1024;  ///< taken by the device and not heard yet, as the server told last
  int waited_ = 0;              ///< rewrites in a row for a player whose data had not come
  std::size_t tail_ = 0;        ///< bytes written since the link wanted no more
};

}  // namespace kelvo

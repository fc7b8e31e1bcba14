#include "audio/engine/PulseStream.h"

#include <algorithm>
#include <span>
#include <utility>

namespace kelvo {

namespace {

constexpr std::uint32_t kFrameBytes = kChannels * sizeof(float);

/// What the server asks for at a time, 23 ms: the pace of positions and of reports to the desk.
constexpr std::uint32_t kPeriodFrames = 1024;

/// 557 ms: more would be felt as a desk that doesn't answer.
constexpr std::uint32_t kMostReserveFrames = 24 * 1024;

Nanoseconds InTime(std::uint32_t frames) {
  return Nanoseconds(std::int64_t{frames} * 1'000'000'000 / kEngineRate);
}

}  // namespace

void PulseReserve::Grow(std::uint32_t frames) {
  frames_ = std::clamp(frames + frames / 2, frames_, kMostReserveFrames);
}

PulseStream::PulseStream(pa_context& context, PulseReserve& reserve, std::shared_ptr<DeviceLink> link,
                         const QByteArray& sink)
    : reserve_(reserve), link_(std::move(link)), frames_(reserve.Frames()) {
  const pa_sample_spec form{.format = PA_SAMPLE_FLOAT32NE, .rate = kEngineRate, .channels = kChannels};
  pa_proplist* const properties = pa_proplist_new();
  // Volume and mute are the server's, by this name: the monitor's are not those of the air. No role is given,
  // for a server may turn a role down for a telephone call.
  const QByteArray key = "kelvo-output:" + link_->Name().toUtf8();
  pa_proplist_sets(properties, "module-stream-restore.id", key.constData());
  const QByteArray title = link_->Name().isEmpty() ? "On Air" : link_->Name().toUtf8();
  stream_ = pa_stream_new_with_proplist(&context, title.constData(), &form, nullptr, properties);
  pa_proplist_free(properties);
  if (!stream_) return;
  pa_stream_set_state_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->TakeState(); }, this);
  pa_stream_set_write_callback(
      stream_,
      [](pa_stream*, std::size_t bytes, void* self) { static_cast<PulseStream*>(self)->Write(bytes); }, this);
  pa_stream_set_underflow_callback(
      stream_, [](pa_stream*, void* self) { static_cast<PulseStream*>(self)->RanDry(); }, this);
  // The whole reserve is to lie in the queue, whatever the device itself holds. The sound of a named device
  // must never turn up on another one.
  int flags = PA_STREAM_EARLY_REQUESTS;
  if (!sink.isEmpty()) flags |= PA_STREAM_DONT_MOVE;
  const pa_buffer_attr buffer = Buffer();
  const char* const device = sink.isEmpty() ? nullptr : sink.constData();
  if (pa_stream_connect_playback(stream_, device, &buffer, static_cast<pa_stream_flags_t>(flags), nullptr,
                                 nullptr) < 0) {
    Forget();
    pa_stream_unref(std::exchange(stream_, nullptr));
  }
  link_->SetReserve(InTime(frames_));
}

PulseStream::~PulseStream() {
  if (!stream_) return;
  Forget();
  pa_stream_disconnect(stream_);
  pa_stream_unref(stream_);
}

void PulseStream::Forget() {
  pa_stream_set_state_callback(stream_, nullptr, nullptr);
  pa_stream_set_write_callback(stream_, nullptr, nullptr);
  pa_stream_set_underflow_callback(stream_, nullptr, nullptr);
}

bool PulseStream::Wanted() const {
  if (!stream_) return false;
  const pa_stream_state_t state = pa_stream_get_state(stream_);
  // One that is not there yet cannot be taken back either.
  if (state == PA_STREAM_CREATING) return true;
  return PA_STREAM_IS_GOOD(state) && (!link_->Detached() || tail_ < std::size_t{frames_} * kFrameBytes);
}

pa_buffer_attr PulseStream::Buffer() const {
  constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
  return {.maxlength = kServersChoice,
          .tlength = frames_ * kFrameBytes,
          .prebuf = kServersChoice,
          .minreq = kPeriodFrames * kFrameBytes,
          .fragsize = kServersChoice};
}

void PulseStream::TakeState() {
  if (pa_stream_get_state(stream_) == PA_STREAM_READY) link_->SetState(DeviceLink::State::Running);
}

void PulseStream::Write(std::size_t bytes) {
  while (bytes >= kFrameBytes) {
    void* place = nullptr;
    std::size_t room = bytes;
    if (pa_stream_begin_write(stream_, &place, &room) < 0 || !place) return;
    room = std::min(room, bytes) / kFrameBytes * kFrameBytes;
    const std::span<float> target(static_cast<float*>(place), room / sizeof(float));
    if (primed_) {
      link_->Deliver(target);
    } else {
      std::fill(target.begin(), target.end(), 0.0F);
    }
    if (room == 0 || pa_stream_write(stream_, place, room, nullptr, 0, PA_SEEK_RELATIVE) < 0) return;
    bytes -= room;
    if (link_->Detached()) tail_ += room;
  }
  // The first fill is silence: sound that is under way on the silent clock must not jump ahead by it.
  primed_ = true;
}

void PulseStream::RanDry() {
  if (link_->Detached()) return;
  link_->TellDropout();
  const pa_buffer_attr* const given = pa_stream_get_buffer_attr(stream_);
  reserve_.Grow(given ? given->tlength / kFrameBytes : frames_);
  frames_ = reserve_.Frames();
  link_->SetReserve(InTime(frames_));
  const pa_buffer_attr buffer = Buffer();
  if (pa_operation* const order = pa_stream_set_buffer_attr(stream_, &buffer, nullptr, nullptr)) {
    pa_operation_unref(order);
  }
}

}  // namespace kelvo

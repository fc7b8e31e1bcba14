#include "audio/engine/PulseStream.h"

#include <pulse/rtclock.h>
#include <pulse/timeval.h>

#include <algorithm>
#include <span>
#include <utility>

namespace kelvo {

namespace {

constexpr std::uint32_t kFrameBytes = kChannels * sizeof(float);

/// What the server asks for at a time, 23 ms: the pace of positions and of reports to the desk.
constexpr std::uint32_t kPeriodFrames = 1024;

/// 557 ms: what players and mixer can go back.
constexpr std::uint32_t kMostReserveFrames = 24 * 1024;
static_assert(kMostReserveFrames + 8 * 1024 <= kMostMarks * kMarkFrames);

constexpr Nanoseconds kQuietTime = std::chrono::minutes(3);

/// So much in front of the server's read position is never written anew: until the new sound is there the
/// server may have taken it.
constexpr FrameIndex kGuardFrames = kPeriodFrames;

/// Each start and stop is heard at once, but levels move all the time, and a period of the device is soon
/// enough for them.
constexpr pa_usec_t kLevelEvery = 20'000;
constexpr pa_usec_t kStartEvery = 5'000;

/// About half a second of rewrites for a player without data: then its disk is slow, and it can wait.
constexpr int kMostWaits = 25;

Nanoseconds InTime(std::uint32_t frames) {
  return Nanoseconds(std::int64_t{frames} * 1'000'000'000 / kEngineRate);
}

Nanoseconds Now() {
  return Nanoseconds(static_cast<std::int64_t>(pa_rtclock_now()) * 1000);
}

}  // namespace

void PulseReserve::Grow(std::uint32_t frames, Nanoseconds now) {
  frames_ = std::clamp(frames + frames / 2, frames_, kMostReserveFrames);
  changedAt_ = now;
}

bool PulseReserve::Shrink(Nanoseconds now) {
  if (frames_ == kLeast || now < changedAt_ + kQuietTime) return false;
  frames_ = std::max(frames_ - frames_ / 3, kLeast);
  changedAt_ = now;
  return true;
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
  timing_.reset();
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
  if (pa_stream_get_state(stream_) != PA_STREAM_READY) return;
  link_->SetTakesBack();
  link_->SetState(DeviceLink::State::Running);
}

FrameIndex PulseStream::QueueFrames() const {
  const pa_buffer_attr* const given = pa_stream_get_buffer_attr(stream_);
  return given ? given->tlength / kFrameBytes : frames_;
}

void PulseStream::Serve() {
  const DeviceLink::Hurry hurry = link_->Asked();
  if (hurry == DeviceLink::Hurry::None || timing_ || !primed_) return;
  if (!stream_ || pa_stream_get_state(stream_) != PA_STREAM_READY) return;
  const pa_usec_t wait = hurry == DeviceLink::Hurry::Start ? kStartEvery : kLevelEvery;
  if (pa_rtclock_now() < rewrittenAt_ + wait) return;
  // Only the server knows what it has played.
  askedAt_ = pa_rtclock_now();
  timing_.reset(pa_stream_update_timing_info(
      stream_, [](pa_stream*, int, void* self) { static_cast<PulseStream*>(self)->TakeTiming(); }, this));
}

void PulseStream::TakeTiming() {
  timing_.reset();
  link_->TakeHurry();
  rewrittenAt_ = pa_rtclock_now();
  const pa_timing_info* const timing = pa_stream_get_timing_info(stream_);
  if (!timing || timing->write_index_corrupt || timing->read_index_corrupt) return;
  inDevice_ = static_cast<FrameIndex>(timing->sink_usec) * kEngineRate / 1'000'000;
  const FrameIndex queued = (timing->write_index - timing->read_index) / kFrameBytes;
  // On the way to the server as much time goes by again as the answer took, more on a busy machine.
  const pa_usec_t way = pa_timeval_age(&timing->timestamp) + (rewrittenAt_ - askedAt_);
  const FrameIndex most = queued - kGuardFrames - static_cast<FrameIndex>(way) * kEngineRate / 1'000'000;
  const FrameIndex back = most > 0 ? link_->TakeBack(most) : 0;
  if (back == 0) return;
  const auto bytes = static_cast<std::size_t>(back) * kFrameBytes;
  Write(bytes, static_cast<std::int64_t>(bytes));
  waited_ = link_->Waits() ? waited_ + 1 : 0;
  if (waited_ > 0 && waited_ < kMostWaits) link_->Ask(DeviceLink::Hurry::Level);
}

void PulseStream::Write(std::size_t bytes, std::int64_t back) {
  while (bytes >= kFrameBytes) {
    void* place = nullptr;
    std::size_t room = bytes;
    if (pa_stream_begin_write(stream_, &place, &room) < 0 || !place) return;
    room = std::min(room, bytes) / kFrameBytes * kFrameBytes;
    bytes -= room;
    const std::span<float> target(static_cast<float*>(place), room / sizeof(float));
    if (primed_) {
      // What is still to be written at this turn is not queued yet.
      const auto behind = static_cast<FrameIndex>(bytes / kFrameBytes);
      const FrameIndex queued = QueueFrames() - behind;
      link_->Deliver(target, std::max<FrameIndex>(queued - kGuardFrames, 0), queued + inDevice_);
    } else {
      std::fill(target.begin(), target.end(), 0.0F);
    }
    const std::int64_t offset = -std::exchange(back, 0);
    if (room == 0 || pa_stream_write(stream_, place, room, nullptr, offset, PA_SEEK_RELATIVE) < 0) return;
    if (link_->Detached()) tail_ += room;
  }
  // The first fill is silence: sound that is under way on the silent clock must not jump ahead by it.
  primed_ = true;
  if (reserve_.Shrink(Now())) ApplyReserve();
}

void PulseStream::RanDry() {
  if (link_->Detached()) return;
  link_->TellDropout();
  reserve_.Grow(static_cast<std::uint32_t>(QueueFrames()), Now());
  ApplyReserve();
}

void PulseStream::ApplyReserve() {
  frames_ = reserve_.Frames();
  link_->SetReserve(InTime(frames_));
  const pa_buffer_attr buffer = Buffer();
  if (pa_operation* const order = pa_stream_set_buffer_attr(stream_, &buffer, nullptr, nullptr)) {
    pa_operation_unref(order);
  }
}

}  // namespace kelvo

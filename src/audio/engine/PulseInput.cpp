#include "audio/engine/PulseInput.h"

#include <pulse/rtclock.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace kelvo {

namespace {

constexpr pa_usec_t kMillisecond = 1000;
constexpr int kTurn = 250 * kMillisecond;
constexpr pa_usec_t kAgainAfter = 2000 * kMillisecond;

constexpr std::size_t kFrameBytes = kChannels * sizeof(float);
/// What the server hands over at a time, 12 ms.
constexpr std::uint32_t kPeriodFrames = 512;

PulseInput& Self(void* self) {
  return *static_cast<PulseInput*>(self);
}

void Forget(pa_operation* question) {
  if (question) pa_operation_unref(question);
}

}  // namespace

PulseInput::~PulseInput() {
  if (!thread_.joinable()) return;
  thread_.request_stop();
  thread_.join();
}

std::vector<SoundInput::Device> PulseInput::Devices() {
  Begin();
  const std::lock_guard lock(mutex_);
  return devices_;
}

void PulseInput::Choose(const QString& id) {
  if (!id.isEmpty()) Begin();
  {
    const std::lock_guard lock(mutex_);
    if (wanted_ == id.toUtf8()) return;
    wanted_ = id.toUtf8();
    // Of another device, or nobody wants it any more.
    sound_ = nullptr;
  }
  if (mainloop_) pa_mainloop_wakeup(mainloop_.get());
}

std::shared_ptr<const Tap> PulseInput::Sound() const {
  const std::lock_guard lock(mutex_);
  return sound_;
}

void PulseInput::Begin() {
  if (mainloop_) return;
  mainloop_.reset(pa_mainloop_new());
  thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

void PulseInput::Run(const std::stop_token& stop) {
  const std::stop_callback wake(stop, [this] { pa_mainloop_wakeup(mainloop_.get()); });
  pa_mainloop* const loop = mainloop_.get();
  do {
    Serve();
  } while (!stop.stop_requested() && pa_mainloop_prepare(loop, kTurn) >= 0 && pa_mainloop_poll(loop) >= 0 &&
           pa_mainloop_dispatch(loop) >= 0);
  Disconnect();
}

void PulseInput::Serve() {
  const pa_usec_t now = pa_rtclock_now();
  if (context_ && !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) {
    Disconnect();
    nextConnect_ = now + kAgainAfter;
  }
  if (!context_ && now >= nextConnect_) {
    nextConnect_ = now + kAgainAfter;
    Connect();
  }
  QByteArray wanted;
  {
    const std::lock_guard lock(mutex_);
    wanted = wanted_;
    // It was given up and chosen again between two turns.
    if (stream_ && opened_ == wanted) sound_ = tap_;
  }
  const bool lost = stream_ && !PA_STREAM_IS_GOOD(pa_stream_get_state(stream_));
  if (lost) nextOpen_ = now + kAgainAfter;
  if (lost || (stream_ && opened_ != wanted)) CloseStream();
  if (!stream_ && IsThere(wanted) && (now >= nextOpen_ || opened_ != wanted)) OpenStream(wanted);
}

void PulseInput::Connect() {
  context_ = pa_context_new(pa_mainloop_get_api(mainloop_.get()), "Kelvo");
  if (!context_) return;
  pa_context_set_state_callback(
      context_, [](pa_context*, void* self) { Self(self).TakeContextState(); }, this);
  pa_context_set_subscribe_callback(
      context_,
      [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
        Self(self).AskForSources();
      },
      this);
  if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) Disconnect();
}

void PulseInput::Disconnect() {
  CloseStream();
  if (context_) {
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(std::exchange(context_, nullptr));
  }
  looking_ = lookAgain_ = false;
  found_.clear();
  TakeSources(true);
}

void PulseInput::TakeContextState() {
  if (pa_context_get_state(context_) != PA_CONTEXT_READY) return;
  Forget(pa_context_subscribe(context_, PA_SUBSCRIPTION_MASK_SOURCE, nullptr, nullptr));
  AskForSources();
}

void PulseInput::AskForSources() {
  lookAgain_ = std::exchange(looking_, true);
  if (lookAgain_) return;
  found_.clear();
  Forget(pa_context_get_source_info_list(
      context_,
      [](pa_context*, const pa_source_info* info, int end, void* self) {
        if (end == 0) {
          Self(self).found_.push_back({{QString::fromUtf8(info->name), QString::fromUtf8(info->description)},
                                       info->monitor_of_sink != PA_INVALID_INDEX});
        } else {
          Self(self).TakeSources(end > 0);
        }
      },
      this));
}

void PulseInput::TakeSources(bool all) {
  looking_ = false;
  if (all) {
    // Microphones and lines first, each kind in an order that doesn't change.
    std::sort(found_.begin(), found_.end(), [](const Source& a, const Source& b) {
      return std::tie(a.ofOutput, a.device.words, a.device.id) <
             std::tie(b.ofOutput, b.device.words, b.device.id);
    });
    sources_ = std::exchange(found_, {});
    nextOpen_ = 0;
    const std::lock_guard lock(mutex_);
    devices_.clear();
    for (const Source& each : sources_) devices_.push_back(each.device);
  }
  if (std::exchange(lookAgain_, false)) AskForSources();
}

bool PulseInput::IsThere(const QByteArray& id) const {
  return !id.isEmpty() && std::any_of(sources_.begin(), sources_.end(),
                                      [&](const Source& each) { return each.device.id.toUtf8() == id; });
}

void PulseInput::OpenStream(const QByteArray& id) {
  constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
  const pa_sample_spec form{.format = PA_SAMPLE_FLOAT32NE, .rate = kEngineRate, .channels = kChannels};
  opened_ = id;
  stream_ = pa_stream_new(context_, "Scope", &form, nullptr);
  if (!stream_) return;
  tap_ = std::make_shared<Tap>();
  at_ = 0;
  pa_stream_set_read_callback(
      stream_, [](pa_stream*, std::size_t, void* self) { Self(self).TakeSound(); }, this);
  const pa_buffer_attr buffer{.maxlength = kServersChoice,
                              .tlength = kServersChoice,
                              .prebuf = kServersChoice,
                              .minreq = kServersChoice,
                              .fragsize = kPeriodFrames * static_cast<std::uint32_t>(kFrameBytes)};
  // Another device's sound would be a lie.
  constexpr auto kFlags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
  if (pa_stream_connect_record(stream_, id.constData(), &buffer, kFlags) < 0) {
    nextOpen_ = pa_rtclock_now() + kAgainAfter;
    CloseStream();
    return;
  }
  Publish(tap_);
}

void PulseInput::CloseStream() {
  Publish(nullptr);
  tap_ = nullptr;
  if (!stream_) return;
  pa_stream_set_read_callback(stream_, nullptr, nullptr);
  pa_stream_disconnect(stream_);
  pa_stream_unref(std::exchange(stream_, nullptr));
}

void PulseInput::TakeSound() {
  const void* data = nullptr;
  std::size_t bytes = 0;
  while (pa_stream_peek(stream_, &data, &bytes) >= 0 && bytes > 0) {
    const std::size_t frames = bytes / kFrameBytes;
    if (data) {
      Write(static_cast<const float*>(data), frames);
    } else {
      // A hole in what the server has.
      static constexpr std::array<float, kPeriodFrames * kChannels> kSilence{};
      for (std::size_t left = frames; left > 0;) {
        const std::size_t part = std::min<std::size_t>(left, kPeriodFrames);
        Write(kSilence.data(), part);
        left -= part;
      }
    }
    pa_stream_drop(stream_);
  }
  tap_->Publish(at_, at_);
}

void PulseInput::Write(const float* samples, std::size_t frames) {
  tap_->Write(at_, {samples, frames * kChannels});
  at_ += static_cast<FrameIndex>(frames);
}

void PulseInput::Publish(std::shared_ptr<const Tap> sound) {
  const std::lock_guard lock(mutex_);
  // It may have been given up while the stream was opened.
  sound_ = sound && wanted_ != opened_ ? nullptr : std::move(sound);
}

}  // namespace kelvo

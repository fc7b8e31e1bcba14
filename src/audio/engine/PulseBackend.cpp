#include "audio/engine/PulseBackend.h"

#include "audio/engine/CallbackPriority.h"

#include <QLoggingCategory>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvo {

Q_LOGGING_CATEGORY(logPulse, "kelvo.audio.devices", QtWarningMsg)

namespace {

PulseBackend& Self(void* self) {
  return *static_cast<PulseBackend*>(self);
}

/// The answer comes to a callback; who asked has no more use for the question.
void Forget(pa_operation* question) {
  if (question) pa_operation_unref(question);
}

}  // namespace

PulseBackend::PulseBackend(Maker makeOther)
    : makeOther_(std::move(makeOther)),
      mainloop_(pa_mainloop_new()),
      thread_([this](const std::stop_token& stop) { Run(stop); }) {}

PulseBackend::~PulseBackend() {
  thread_.request_stop();
  thread_.join();
}

QStringList PulseBackend::Names() const {
  if (server_.load(std::memory_order_acquire) == Server::Absent) return other_->Names();
  const std::lock_guard lock(mutex_);
  return names_;
}

bool PulseBackend::HasLooked() const {
  const Server server = server_.load(std::memory_order_acquire);
  return server == Server::Present || (server == Server::Absent && other_->HasLooked());
}

void PulseBackend::Open(std::shared_ptr<DeviceLink> link) {
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(std::move(link));
  }
  requested_.store(true, std::memory_order_release);
  pa_mainloop_wakeup(mainloop_.get());
}

void PulseBackend::Run(const std::stop_token& stop) {
  const std::stop_callback wake(stop, [this] { pa_mainloop_wakeup(mainloop_.get()); });
  qCInfo(logPulse) << "the device thread runs in real time:" << RaiseCallbackPriority();
  do {
    Serve();
  } while (!stop.stop_requested() && pa_mainloop_iterate(mainloop_.get(), 1, nullptr) >= 0);
  Disconnect();
}

void PulseBackend::Serve() {
  // The lock is shared with a thread that may wait for a processor, so it is not taken without need.
  if (requested_.exchange(false, std::memory_order_acq_rel)) {
    {
      const std::lock_guard lock(mutex_);
      std::move(requests_.begin(), requests_.end(), std::back_inserter(waiting_));
      requests_.clear();
    }
    if (!context_) Connect();
  }
  if (context_ && !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) {
    qCInfo(logPulse) << "no sound server:" << pa_strerror(pa_context_errno(context_));
    Disconnect();
  }
  if (!context_) GoWithout();
  std::erase_if(streams_, [](PulseStream& stream) {
    if (stream.Wanted()) return false;
    stream.GiveUp();
    return true;
  });
  if (context_ && server_.load(std::memory_order_relaxed) != Server::Present) return;
  for (auto& link : std::exchange(waiting_, {})) {
    if (link->Detached()) continue;
    if (context_) {
      OpenStream(std::move(link));
    } else {
      other_->Open(std::move(link));
    }
  }
}

void PulseBackend::Connect() {
  context_ = pa_context_new(pa_mainloop_get_api(mainloop_.get()), "Kelvo");
  if (!context_) return;
  pa_context_set_state_callback(
      context_, [](pa_context*, void* self) { Self(self).TakeContextState(); }, this);
  pa_context_set_subscribe_callback(
      context_,
      [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) { Self(self).AskForSinks(); },
      this);
  if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) Disconnect();
}

void PulseBackend::Disconnect() {
  for (PulseStream& stream : streams_) stream.GiveUp();
  streams_.clear();
  if (context_) {
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(std::exchange(context_, nullptr));
  }
  sinks_.clear();
  looking_ = lookAgain_ = false;
}

void PulseBackend::GoWithout() {
  if (!other_) other_ = makeOther_();
  server_.store(Server::Absent, std::memory_order_release);
}

void PulseBackend::TakeContextState() {
  if (pa_context_get_state(context_) != PA_CONTEXT_READY) return;
  constexpr auto kWhatMatters =
      static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
  Forget(pa_context_subscribe(context_, kWhatMatters, nullptr, nullptr));
  AskForSinks();
}

void PulseBackend::AskForSinks() {
  lookAgain_ = std::exchange(looking_, true);
  if (lookAgain_) return;
  found_.clear();
  Forget(pa_context_get_server_info(
      context_, [](pa_context*, const pa_server_info* info, void* self) { Self(self).TakeDefault(info); },
      this));
  Forget(pa_context_get_sink_info_list(
      context_,
      [](pa_context*, const pa_sink_info* info, int end, void* self) { Self(self).TakeSink(info, end); },
      this));
}

void PulseBackend::TakeDefault(const pa_server_info* info) {
  default_ = info && info->default_sink_name ? info->default_sink_name : "";
}

void PulseBackend::TakeSink(const pa_sink_info* info, int end) {
  if (end != 0) {
    SinksRead();
    return;
  }
  const QString described = QString::fromUtf8(info->description);
  QString name = described;
  const auto taken = [&](const Sink& sink) { return sink.name == name; };
  for (int number = 2; std::any_of(found_.begin(), found_.end(), taken); ++number) {
    name = QStringLiteral("%1 (%2)").arg(described).arg(number);
  }
  found_.push_back({info->name, name});
}

void PulseBackend::SinksRead() {
  const auto first =
      std::find_if(found_.begin(), found_.end(), [&](const Sink& sink) { return sink.id == default_; });
  if (first != found_.end()) std::rotate(found_.begin(), first, first + 1);
  sinks_ = std::exchange(found_, {});
  QStringList names;
  for (const Sink& sink : sinks_) names << sink.name;
  {
    const std::lock_guard lock(mutex_);
    names_ = names;
  }
  server_.store(Server::Present, std::memory_order_release);
  looking_ = false;
  if (lookAgain_) AskForSinks();
}

void PulseBackend::OpenStream(std::shared_ptr<DeviceLink> link) {
  QByteArray id;
  if (!link->Name().isEmpty()) {
    const auto sink = std::find_if(sinks_.begin(), sinks_.end(),
                                   [&](const Sink& each) { return each.name == link->Name(); });
    if (sink == sinks_.end()) {
      link->SetState(DeviceLink::State::Gone);
      return;
    }
    id = sink->id;
  }
  streams_.emplace_back(*context_, reserve_, std::move(link), id);
}

}  // namespace kelvo

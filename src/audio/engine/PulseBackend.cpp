#include "audio/engine/PulseBackend.h"

#include "audio/engine/CallbackPriority.h"

#include <QLoggingCategory>

#include <pulse/rtclock.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvo {

Q_LOGGING_CATEGORY(logPulse, "kelvo.audio.devices", QtWarningMsg)

namespace {

constexpr pa_usec_t kMillisecond = 1000;
constexpr int kTurn = 250 * kMillisecond;

/// A server that takes longer to answer counts as none.
constexpr pa_usec_t kAnswerWithin = 5000 * kMillisecond;

/// So long a server that was there is waited for, before its hardware is taken.
constexpr pa_usec_t kComesBackWithin = 3000 * kMillisecond;
constexpr pa_usec_t kConnectEvery = 2000 * kMillisecond;
constexpr pa_usec_t kLookAgainAfter = 1000 * kMillisecond;

PulseBackend& Self(void* self) {
  return *static_cast<PulseBackend*>(self);
}

/// The answer arrives in a callback; then the question is no longer needed.
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

QString PulseBackend::IdOf(const QString& name) const {
  if (server_.load(std::memory_order_acquire) == Server::Absent) return other_->IdOf(name);
  const std::lock_guard lock(mutex_);
  return ids_.value(names_.indexOf(name));
}

QString PulseBackend::NameOf(const QString& id) const {
  if (server_.load(std::memory_order_acquire) == Server::Absent) return other_->NameOf(id);
  const std::lock_guard lock(mutex_);
  return names_.value(ids_.indexOf(id));
}

bool PulseBackend::HasLooked() const {
  const Server server = server_.load(std::memory_order_acquire);
  return server == Server::Absent ? other_->HasLooked() : server != Server::Unknown;
}

void PulseBackend::Open(std::shared_ptr<DeviceLink> link) {
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(std::move(link));
  }
  requested_.store(true, std::memory_order_release);
  Wake();
}

void PulseBackend::Run(const std::stop_token& stop) {
  const std::stop_callback wake(stop, [this] { pa_mainloop_wakeup(mainloop_.get()); });
  const CallbackPriority priority;
  qCInfo(logPulse) << "the device thread runs in real time:" << priority.Granted();
  pa_mainloop* const loop = mainloop_.get();
  do {
    Serve();
  } while (!stop.stop_requested() && pa_mainloop_prepare(loop, kTurn) >= 0 && pa_mainloop_poll(loop) >= 0 &&
           pa_mainloop_dispatch(loop) >= 0);
  Disconnect();
}

void PulseBackend::Serve() {
  TakeRequests();
  WatchServer();
  PassOn();
  std::erase_if(streams_, [](PulseStream& stream) {
    if (stream.Wanted()) {
      stream.Serve();
      return false;
    }
    stream.GiveUp();
    return true;
  });
}

void PulseBackend::TakeRequests() {
  // The lock is shared with a thread that may wait for a processor, so it is not taken without need.
  if (!requested_.exchange(false, std::memory_order_acq_rel)) return;
  const std::lock_guard lock(mutex_);
  std::move(requests_.begin(), requests_.end(), std::back_inserter(waiting_));
  requests_.clear();
}

void PulseBackend::WatchServer() {
  const pa_usec_t now = pa_rtclock_now();
  if (context_) {
    const bool dead = !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_));
    if (dead || (Now() != Server::Present && now > connectedAt_ + kAnswerWithin)) {
      qCInfo(logPulse) << "no sound server:"
                       << (dead ? pa_strerror(pa_context_errno(context_)) : "no answer");
      Disconnect();
      if (Now() == Server::Present) {
        lostAt_ = now;
        nextConnect_ = 0;
        server_.store(Server::Lost, std::memory_order_release);
      }
    } else if (nextLook_ != 0 && now >= nextLook_) {
      AskForSinks();
    }
  }
  if (!context_ && now >= nextConnect_) {
    nextConnect_ = now + (Now() == Server::Lost ? kTurn : kConnectEvery);
    connectedAt_ = now;
    Connect();
  }
  const bool mayComeBack = Now() == Server::Lost && now < lostAt_ + kComesBackWithin;
  if (!context_ && Now() != Server::Absent && !mayComeBack) {
    if (!other_) other_ = makeOther_();
    server_.store(Server::Absent, std::memory_order_release);
  }
}

void PulseBackend::PassOn() {
  const Server server = Now();
  // The server may want the hardware that was taken in its place, and its own devices are to be heard again.
  if (server == Server::Present) {
    for (const auto& link : lent_) link->SetState(DeviceLink::State::Gone);
  }
  std::erase_if(lent_, [](const auto& link) { return link->Detached(); });
  if (server != Server::Present && server != Server::Absent) return;
  for (auto& link : std::exchange(waiting_, {})) {
    if (link->Detached()) continue;
    if (server == Server::Present) {
      OpenStream(std::move(link));
    } else {
      lent_.push_back(link);
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
  // At first as every program of the desktop does: where a server is started on demand, that does it.
  const auto flags = Now() == Server::Unknown ? PA_CONTEXT_NOFLAGS : PA_CONTEXT_NOAUTOSPAWN;
  if (pa_context_connect(context_, nullptr, flags, nullptr) < 0) Disconnect();
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
  Publish();
  looking_ = lookAgain_ = false;
  nextLook_ = 0;
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
  nextLook_ = 0;
  found_.clear();
  Forget(pa_context_get_server_info(
      context_,
      [](pa_context*, const pa_server_info* info, void* self) {
        if (info) Self(self).default_ = info->default_sink_name ? info->default_sink_name : "";
      },
      this));
  Forget(pa_context_get_sink_info_list(
      context_,
      [](pa_context*, const pa_sink_info* info, int end, void* self) {
        if (end == 0) {
          Self(self).found_.push_back({info->name, QString::fromUtf8(info->description), {}});
        } else {
          Self(self).TakeSinks(end);
        }
      },
      this));
}

void PulseBackend::TakeSinks(int end) {
  looking_ = false;
  if (end < 0) {
    nextLook_ = pa_rtclock_now() + kLookAgainAfter;
    return;
  }
  // Not in the order in which they came: twins are to be named alike in each run.
  const auto byId = [](const Sink& a, const Sink& b) { return a.id < b.id; };
  std::sort(found_.begin(), found_.end(), byId);
  for (Sink& sink : found_) sink.name = NameFor(sink.id, sink.description);
  const auto first =
      std::find_if(found_.begin(), found_.end(), [&](const Sink& sink) { return sink.id == default_; });
  if (first != found_.end()) std::rotate(found_.begin(), first, first + 1);
  sinks_ = std::exchange(found_, {});
  Publish();
  if (Now() != Server::Present) {
    if (!std::exchange(wasPresent_, true) && Now() == Server::Absent) epoch_.fetch_add(1);
    server_.store(Server::Present, std::memory_order_release);
  }
  if (lookAgain_) AskForSinks();
}

QString PulseBackend::NameFor(const QByteArray& id, const QString& description) {
  Sink& sink = known_[id];
  if (!sink.name.isEmpty() && sink.description == description) return sink.name;
  sink.name.clear();
  QString name = description;
  const auto taken = [&](const auto& known) { return known.second.name == name; };
  for (int number = 2; std::any_of(known_.begin(), known_.end(), taken); ++number) {
    name = QStringLiteral("%1 (%2)").arg(description).arg(number);
  }
  sink = {id, description, name};
  return name;
}

void PulseBackend::Publish() {
  QStringList names;
  QStringList ids;
  for (const Sink& sink : sinks_) {
    names << sink.name;
    ids << QString::fromUtf8(sink.id);
  }
  const std::lock_guard lock(mutex_);
  names_ = names;
  ids_ = ids;
}

void PulseBackend::OpenStream(std::shared_ptr<DeviceLink> link) {
  QByteArray id;
  if (!link->Name().isEmpty()) {
    const QString& asked = link->Name();
    const auto sink = std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& each) {
      return each.name == asked || QString::fromUtf8(each.id) == asked;
    });
    if (sink == sinks_.end()) {
      link->SetState(DeviceLink::State::Gone);
      return;
    }
    id = sink->id;
  }
  streams_.emplace_back(*context_, reserves_[id], std::move(link), id);
}

}  // namespace kelvo

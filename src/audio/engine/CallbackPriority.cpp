#include "audio/engine/CallbackPriority.h"

#include <QFile>
#include <QLoggingCategory>

#include <dbus/dbus.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <memory>

namespace kelvo {

Q_LOGGING_CATEGORY(logPriority, "kelvo.audio.priority", QtWarningMsg)

namespace {

/// Above everything of the desktop, below a sound server of its own.
constexpr int kPriority = 5;

constexpr int kAnswerWithin = 1000;      ///< milliseconds
constexpr rlim_t kMostAtOnce = 150'000;  ///< microseconds

std::atomic<pid_t> raised{0};

/// Takes the priority back from a thread that does not pause: the next signal would end the program.
void TakeBack(int /*signal*/) {
  const sched_param ordinary{};
  if (const pid_t thread = raised.load(); thread != 0) ::sched_setscheduler(thread, SCHED_OTHER, &ordinary);
}

bool RaiseDirectly() {
  sched_param wanted{};
  wanted.sched_priority = kPriority;
  return ::sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &wanted) == 0;
}

struct Drop {
  void operator()(DBusConnection* bus) const {
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
  }
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Bus = std::unique_ptr<DBusConnection, Drop>;
using Message = std::unique_ptr<DBusMessage, Drop>;

/// The address of the system's bus; empty where there is none.
QByteArray SystemBus() {
  const QByteArray told = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
  if (!told.isEmpty()) return told;
  const QByteArray usual = "/run/dbus/system_bus_socket";
  return QFile::exists(QString::fromLatin1(usual)) ? "unix:path=" + usual : QByteArray();
}

/// A connection of its own; null where none can be had.
Bus Connect() {
  Bus bus(dbus_connection_open_private(SystemBus().constData(), nullptr));
  if (bus && dbus_bus_register(bus.get(), nullptr) == 0) bus.reset();
  return bus;
}

constexpr const char* kBroker = "org.freedesktop.RealtimeKit1";

Message CallOf(const char* interface, const char* method) {
  return Message(dbus_message_new_method_call(kBroker, "/org/freedesktop/RealtimeKit1", interface, method));
}

/// The answer, waited for; null when there is none, or a refusal.
Message Ask(const Bus& bus, const Message& question) {
  return Message(
      dbus_connection_send_with_reply_and_block(bus.get(), question.get(), kAnswerWithin, nullptr));
}

/// The broker's number of that name; `otherwise` where it has none.
std::int64_t Property(const Bus& bus, const char* name, std::int64_t otherwise) {
  const Message question = CallOf("org.freedesktop.DBus.Properties", "Get");
  dbus_message_append_args(question.get(), DBUS_TYPE_STRING, &kBroker, DBUS_TYPE_STRING, &name,
                           DBUS_TYPE_INVALID);
  const Message answer = Ask(bus, question);
  DBusMessageIter outer;
  if (!answer || dbus_message_iter_init(answer.get(), &outer) == 0) return otherwise;
  if (dbus_message_iter_get_arg_type(&outer) != DBUS_TYPE_VARIANT) return otherwise;
  DBusMessageIter inner;
  dbus_message_iter_recurse(&outer, &inner);
  DBusBasicValue value{};
  switch (dbus_message_iter_get_arg_type(&inner)) {
    case DBUS_TYPE_INT32:
      dbus_message_iter_get_basic(&inner, &value);
      return value.i32;
    case DBUS_TYPE_INT64:
      dbus_message_iter_get_basic(&inner, &value);
      return value.i64;
    default:
      return otherwise;
  }
}

/// The broker serves nobody whose threads may work without end.
void BoundRealtime(std::int64_t most) {
  struct sigaction action {};
  action.sa_handler = TakeBack;
  ::sigaction(SIGXCPU, &action, nullptr);
  const rlimit bound{.rlim_cur = std::min<rlim_t>(kMostAtOnce, static_cast<rlim_t>(most)),
                     .rlim_max = static_cast<rlim_t>(most)};
  ::setrlimit(RLIMIT_RTTIME, &bound);
}

}  // namespace

bool CallbackPriority::AskBroker(int thread) {
  const Bus bus = Connect();
  const std::int64_t highest = bus ? Property(bus, "MaxRealtimePriority", 0) : 0;
  if (highest <= 0) return false;
  raised.store(thread);
  BoundRealtime(Property(bus, "RTTimeUSecMax", 200'000));
  const Message wish = CallOf(kBroker, "MakeThreadRealtime");
  const auto id = static_cast<dbus_uint64_t>(thread);
  const auto priority = static_cast<dbus_uint32_t>(std::min<std::int64_t>(kPriority, highest));
  dbus_message_append_args(wish.get(), DBUS_TYPE_UINT64, &id, DBUS_TYPE_UINT32, &priority, DBUS_TYPE_INVALID);
  const bool granted = Ask(bus, wish) != nullptr;
  qCInfo(logPriority) << "the broker of priorities grants it:" << granted;
  return granted;
}

CallbackPriority::CallbackPriority() : granted_(RaiseDirectly()) {
  if (!granted_ && !SystemBus().isEmpty())
    asking_ = std::jthread([thread = ::gettid()] { AskBroker(thread); });
}

}  // namespace kelvo

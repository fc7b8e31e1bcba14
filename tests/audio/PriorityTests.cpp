#include "audio/Spawned.h"
#include "audio/engine/CallbackPriority.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"

#include <dbus/dbus.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <string_view>
#include <thread>

namespace kelvo::testing {

namespace {

/// The desktop's broker of priorities, on a bus of the test's own and on a thread of its own.
class Broker {
 public:
  explicit Broker(const QByteArray& address)
      : bus_(dbus_connection_open_private(address.constData(), nullptr)) {
    EXPECT_NE(bus_, nullptr);
    EXPECT_NE(dbus_bus_register(bus_, nullptr), 0U);
    EXPECT_EQ(dbus_bus_request_name(bus_, "org.freedesktop.RealtimeKit1", 0, nullptr),
              DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER);
    thread_ = std::jthread([this](const std::stop_token& stop) {
      while (!stop.stop_requested() && dbus_connection_read_write(bus_, 10) != 0) {
        while (DBusMessage* const message = dbus_connection_pop_message(bus_)) {
          if (dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_METHOD_CALL) Answer(message);
          dbus_message_unref(message);
        }
      }
    });
  }
  ~Broker() {
    thread_ = {};
    dbus_connection_close(bus_);
    dbus_connection_unref(bus_);
  }
  Broker(const Broker&) = delete;
  Broker& operator=(const Broker&) = delete;

  std::atomic<bool> refuses{false};
  std::atomic<std::uint64_t> thread{0};
  std::atomic<std::uint32_t> priority{0};
  std::atomic<bool> bounded{false};

 private:
  void Answer(DBusMessage* message) {
    DBusMessage* answer = dbus_message_new_method_return(message);
    if (std::string_view(dbus_message_get_member(message)) == "Get") {
      const char* interface = nullptr;
      const char* name = nullptr;
      dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &name,
                            DBUS_TYPE_INVALID);
      const bool asksPriority = std::string_view(name) == "MaxRealtimePriority";
      DBusMessageIter outer;
      DBusMessageIter inner;
      dbus_message_iter_init_append(answer, &outer);
      dbus_message_iter_open_container(&outer, DBUS_TYPE_VARIANT,
                                       asksPriority ? DBUS_TYPE_INT32_AS_STRING : DBUS_TYPE_INT64_AS_STRING,
                                       &inner);
      const dbus_int32_t highest = 3;
      const dbus_int64_t most = 180'000;
      if (asksPriority) dbus_message_iter_append_basic(&inner, DBUS_TYPE_INT32, &highest);
      if (!asksPriority) dbus_message_iter_append_basic(&inner, DBUS_TYPE_INT64, &most);
      dbus_message_iter_close_container(&outer, &inner);
    } else {
      dbus_uint64_t wished = 0;
      dbus_uint32_t at = 0;
      dbus_message_get_args(message, nullptr, DBUS_TYPE_UINT64, &wished, DBUS_TYPE_UINT32, &at,
                            DBUS_TYPE_INVALID);
      thread = wished;
      priority = at;
      rlimit limit{};
      ::getrlimit(RLIMIT_RTTIME, &limit);
      bounded = limit.rlim_max == 180'000 && limit.rlim_cur == 150'000;
      if (refuses) {
        dbus_message_unref(answer);
        answer = dbus_message_new_error(message, DBUS_ERROR_ACCESS_DENIED, "no");
      }
    }
    dbus_connection_send(bus_, answer, nullptr);
    dbus_connection_flush(bus_);
    dbus_message_unref(answer);
  }

  DBusConnection* const bus_;
  std::jthread thread_;
};

}  // namespace

TEST(CallbackPriority, TheBrokerIsAskedForTheThreadWithinItsBounds) {
  const TemporaryTree folder;
  const QByteArray address = "unix:path=" + folder.Path(QStringLiteral("bus")).toUtf8();
  Spawned daemon({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address});
  static_cast<void>(TurnUntil([&] { return folder.Exists(QStringLiteral("bus")) || daemon.HasEnded(); }));
  if (daemon.HasEnded()) GTEST_SKIP() << "no bus of one's own here";
  qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
  EXPECT_FALSE(CallbackPriority::AskBroker(4711)) << "there is none";
  {
    Broker broker(address);
    EXPECT_TRUE(CallbackPriority::AskBroker(4711));
    EXPECT_EQ(broker.thread, 4711U);
    EXPECT_EQ(broker.priority, 3U) << "not more than it gives";
    EXPECT_TRUE(broker.bounded) << "it refuses whoever has no bound";
    broker.refuses = true;
    EXPECT_FALSE(CallbackPriority::AskBroker(4711));
  }
  qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

}  // namespace kelvo::testing

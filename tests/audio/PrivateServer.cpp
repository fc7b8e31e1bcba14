#include "audio/PrivateServer.h"

#include <QFile>

namespace kelvo::testing {

PrivateServer::PrivateServer() {
  qputenv("PULSE_SERVER", "unix:" + Place("native"));
  qputenv("PULSE_COOKIE", Place("cookie"));
}

PrivateServer::~PrivateServer() {
  qunsetenv("PULSE_SERVER");
  qunsetenv("PULSE_COOKIE");
}

void PrivateServer::Start() {
  QByteArrayList environment{"DBUS_SESSION_BUS_ADDRESS="};
  for (const char* const place :
       {"HOME=", "XDG_RUNTIME_DIR=", "XDG_CONFIG_HOME=", "PULSE_RUNTIME_PATH=", "PULSE_STATE_PATH="}) {
    environment << place + folder_.path().toUtf8();
  }
  // What an earlier one left behind is no sign of life.
  QFile::remove(QString::fromUtf8(Place("native")));
  server_.emplace(
      QByteArrayList{"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
                     "--realtime=no", "--high-priority=no", "--log-level=error", "-L",
                     "module-native-protocol-unix auth-anonymous=1 socket=" + Place("native"), "-L",
                     Device("Main").join(' '), "-L", Device("Headphones").join(' ')},
      environment);
}

bool PrivateServer::Answers() const {
  return QFile::exists(QString::fromUtf8(Place("native"))) && Tell({"set-default-sink", "main"});
}

bool PrivateServer::Tell(const QByteArrayList& arguments) const {
  return Spawned(QByteArrayList{"pactl"} + arguments, {}, Place("told")).ExitCode() == 0;
}

QByteArray PrivateServer::Told() const {
  QFile file(QString::fromUtf8(Place("told")));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArrayList PrivateServer::Device(const char* name) {
  return {"module-null-sink", "sink_name=" + QByteArray(name).toLower(), "norewinds=1", "rate=44100",
          QByteArray("sink_properties=device.description=") + name};
}

QByteArray PrivateServer::Place(const char* name) const {
  return folder_.filePath(QString::fromLatin1(name)).toUtf8();
}

}  // namespace kelvo::testing

#include "audio/engine/CallbackPriority.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <sched.h>
#include <sys/types.h>

#include <cerrno>
#include <cstring>

namespace kelvo {

Q_LOGGING_CATEGORY(logPriority, "kelvo.audio.priority", QtWarningMsg)

namespace {

/// How the library names its callback threads: this and the number of the device.
constexpr auto kCallbackThread = "SDLAudioP";

/// Above everything of the desktop, below a sound server of its own.
constexpr int kPriority = 5;

}  // namespace

void RaiseCallbackPriority() {
  const QDir tasks(QStringLiteral("/proc/self/task"));
  for (const QString& id : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile name(tasks.filePath(id + QStringLiteral("/comm")));
    if (!name.open(QIODevice::ReadOnly) || !name.readAll().startsWith(kCallbackThread)) continue;
    sched_param wanted{};
    wanted.sched_priority = kPriority;
    const bool granted = ::sched_setscheduler(id.toInt(), SCHED_RR | SCHED_RESET_ON_FORK, &wanted) == 0;
    qCInfo(logPriority) << "thread" << id << (granted ? "runs in real time" : std::strerror(errno));
  }
}

}  // namespace kelvo

#include "platform/QtEventLoop.h"

#include "platform/ErrorLog.h"
#include "platform/MountedVolumes.h"

#include <QCoreApplication>

#include <sys/resource.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace kelvo {

namespace {

constexpr int kApartNice = 5;
/// How long an end waits for work in Lane::Apart. Whoever asked for it is gone by then, and files are copied
/// so that a copy cut short leaves nothing under its final name.
constexpr Nanoseconds kApartAllowance = std::chrono::seconds(2);

}  // namespace

struct QtEventLoop::Address {
  std::mutex mutex;
  std::condition_variable changed;
  QtEventLoop* loop = nullptr;
  int working = 0;             ///< threads in Lane::Apart
  std::vector<Callback> done;  ///< of those that have ended
};

QtEventLoop::QtEventLoop() : address_(std::make_shared<Address>()) {
  address_->loop = this;
  clock_.start();
  files_.setMaxThreadCount(1);
  wake_.setSingleShot(true);
  wake_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&wake_, &QTimer::timeout, this, [this] { Turn(); });
}

QtEventLoop::~QtEventLoop() {
  files_.waitForDone();
  std::unique_lock lock(address_->mutex);
  address_->loop = nullptr;
  address_->changed.wait_for(lock, kApartAllowance, [this] { return address_->working == 0; });
  lock.unlock();
  Clear();
}

QDateTime QtEventLoop::Now() const {
  return QDateTime::currentDateTime();
}

Nanoseconds QtEventLoop::Elapsed() const {
  return Nanoseconds(clock_.nsecsElapsed());
}

void QtEventLoop::RunOffThread(Lane lane, std::function<void()> work, Callback done) {
  if (lane == Lane::Apart) {
    RunApart(std::move(work), std::move(done));
    return;
  }
  files_.start([this, work = std::move(work), done = std::move(done)]() mutable {
    work();
    work = nullptr;
    QMetaObject::invokeMethod(
        this, [done = std::move(done)] { done(); }, Qt::QueuedConnection);
  });
}

void QtEventLoop::RunApart(std::function<void()> work, Callback done) {
  {
    const std::lock_guard lock(address_->mutex);
    ++address_->working;
  }
  std::thread([address = address_, work = std::move(work), done = std::move(done)]() mutable {
    // Of this thread alone: several at once must not take the processors from the logic's.
    ::setpriority(PRIO_PROCESS, 0, kApartNice);
    work();
    work = nullptr;
    const std::lock_guard lock(address->mutex);
    --address->working;
    address->changed.notify_all();
    if (address->loop == nullptr) return;
    address->done.push_back(std::move(done));
    // The event belongs to Qt.
    QCoreApplication::postEvent(address->loop, new QEvent(QEvent::User));
  }).detach();
}

void QtEventLoop::customEvent(QEvent* /*event*/) {
  std::vector<Callback> done;
  {
    const std::lock_guard lock(address_->mutex);
    done.swap(address_->done);
  }
  for (const Callback& each : done) Guarded(QStringLiteral(" loop"), each);
}

EventLoop::Disk QtEventLoop::DiskOf(const QString& path) const {
  return DiskThatHolds(path);
}

void QtEventLoop::RunLook(const QString& /*path*/, std::function<void()> work, Callback done) {
  RunApart(std::move(work), std::move(done));
}

void QtEventLoop::QueueChanged() {
  if (!inTurn_) Arm();
}

void QtEventLoop::Arm() {
  const auto due = NextDue();
  if (!due) return;
  // Rounded up: a wake-up just before the time would find nothing to do and wait again.
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*due - Elapsed());
  // The timer counts in an int: what is due in a month is looked at every hour.
  wake_.start(
      std::clamp<std::chrono::milliseconds>(wait, std::chrono::milliseconds(0), std::chrono::hours(1)));
}

void QtEventLoop::Turn() {
  inTurn_ = true;
  try {
    RunDue(Elapsed());
  } catch (...) {
    basHandleError(QStringLiteral(" loop"),
                   QStringLiteral("A step of the program failed. It goes on with the next."));
  }
  inTurn_ = false;
  Arm();
}

}  // namespace kelvo

#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QTimer>

#include <chrono>

namespace kelvo::testing {

/// Turns the application's own loop, in real time, until `condition` holds. The limit is there for what hangs
/// alone, so that the test says where before CTest ends it; no machine is so slow that it meets it.
template <typename Condition>
[[nodiscard]] bool TurnUntil(Condition condition) {
  const QDeadlineTimer limit(std::chrono::seconds(100));
  // The condition may change without an event of ours.
  QTimer look;
  look.start(std::chrono::milliseconds(5));
  while (!condition() && !limit.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return condition();
}

}  // namespace kelvo::testing

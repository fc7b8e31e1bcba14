#pragma once

#include "platform/EventLoop.h"

#include <QElapsedTimer>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <array>
#include <memory>

namespace kelvo {

/// The loop of the running program, on Qt's own event loop of the thread that made it.
class QtEventLoop : public QObject, public EventLoop {
 public:
  QtEventLoop();
  /// Waits until the work of every lane but Apart is done: what was given to be written is written.
  ~QtEventLoop() override;

  [[nodiscard]] QDateTime Now() const override;
  [[nodiscard]] Nanoseconds Elapsed() const override;
  [[nodiscard]] Nanoseconds TurnClock() override { return Elapsed(); }
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override;

 protected:
  void QueueChanged() override;

 private:
  /// Where work on a thread of its own finds the loop, which it may outlive.
  struct Address;
  void Turn();
  void Arm();
  [[nodiscard]] QThreadPool& LaneOf(Lane lane) { return lanes_[static_cast<std::size_t>(lane)]; }

  QElapsedTimer clock_;
  QTimer wake_;
  std::array<QThreadPool, 3> lanes_;  ///< by Lane, of one thread each; none for Apart
  std::shared_ptr<Address> address_;
  bool inTurn_ = false;
};

}  // namespace kelvo

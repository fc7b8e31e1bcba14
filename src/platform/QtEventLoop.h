#pragma once

#include "platform/EventLoop.h"

#include <QElapsedTimer>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <array>

namespace kelvo {

/// The loop of the running program, on Qt's own event loop of the thread that made it.
class QtEventLoop : public QObject, public EventLoop {
 public:
  QtEventLoop();
  ~QtEventLoop() override;

  [[nodiscard]] QDateTime Now() const override;
  [[nodiscard]] Nanoseconds Elapsed() const override;
  [[nodiscard]] Nanoseconds TurnClock() override { return Elapsed(); }
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override;

  /// Waits until the files that were given to be written are written. For the end of the program.
  void FinishFiles();

 protected:
  void QueueChanged() override;

 private:
  void Turn();
  void Arm();
  [[nodiscard]] QThreadPool& LaneOf(Lane lane) { return lanes_[static_cast<std::size_t>(lane)]; }

  QElapsedTimer clock_;
  QTimer wake_;
  std::array<QThreadPool, 3> lanes_;  ///< by Lane, of one thread each
  bool inTurn_ = false;
};

}  // namespace kelvo

#pragma once

#include "platform/EventLoop.h"

#include <QElapsedTimer>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <memory>

namespace kelvo {

/// The loop of the running program, on Qt's own event loop of the thread that made it.
class QtEventLoop : public QObject, public EventLoop {
 public:
  QtEventLoop();
  /// Waits until what was given to be written is written, and a moment for work in Lane::Apart: a disk that
  /// hangs is left behind.
  ~QtEventLoop() override;

  [[nodiscard]] QDateTime Now() const override;
  [[nodiscard]] Nanoseconds Elapsed() const override;
  [[nodiscard]] Nanoseconds TurnClock() override { return Elapsed(); }
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override;
  [[nodiscard]] Disk DiskOf(const QString& path) const override;
  void RunLook(const QString& path, std::function<void()> work, Callback done) override;

 protected:
  void QueueChanged() override;
  /// Work in Lane::Apart has ended.
  void customEvent(QEvent* event) override;

 private:
  /// Where work on a thread of its own finds the loop, which it may outlive.
  struct Address;
  void RunApart(std::function<void()> work, Callback done);
  void Turn();
  void Arm();
  QElapsedTimer clock_;
  QTimer wake_;
  QThreadPool files_;  ///< of one thread
  std::shared_ptr<Address> address_;
  bool inTurn_ = false;
};

}  // namespace kelvo

#pragma once

#include <QObject>

#include <memory>

namespace kelvo {

class EventLoop;
class Timer;

/// The one beat that everything on a window blinks to, so that two decks never blink against each other. A
/// window owns one and connects Beat to the SetLit of its displays. GUI thread.
class Pulse : public QObject {
  Q_OBJECT
 public:
  /// Lit and dark take 400 ms each.
  explicit Pulse(EventLoop& loop);
  ~Pulse() override;

 Q_SIGNALS:
  void Beat(bool lit);

 private:
  bool lit_ = true;
  std::unique_ptr<Timer> timer_;
};

}  // namespace kelvo

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <optional>

namespace kelvo {

/// The signals by which the system, a terminal or a service manager asks a process to end: SIGTERM, SIGHUP,
/// SIGINT. While this object lives they become a call on its thread's event loop. Each counts once: who sends
/// it again, because the end takes too long, ends the process at once. A signal that whoever started the
/// process has it ignore stays ignored. Owned by the program's entry, one at a time; logic thread.
class EndSignals : public QObject {
 public:
  explicit EndSignals(std::function<void()> onAsked);
  ~EndSignals() override;

 private:
  std::optional<QSocketNotifier> notifier_;
};

}  // namespace kelvo

#include "platform/ChildProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <signal.h>
#include <sys/resource.h>

#include <chrono>
#include <memory>
#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// How long a child that was asked to end has for it.
constexpr auto kGrace = 2s;
constexpr std::chrono::duration<int, std::milli> kLook = 20ms;
/// Of 0 to 19, the last gets least.
constexpr int kGentle = 19;

}  // namespace

/// A started child. Owned by the frame of its job; when that goes before the child has ended, the child is
/// stopped and what is left of it lives on by itself until then. Logic thread.
class RunningChild {
 public:
  RunningChild(EventLoop& loop, const ChildCommand& command)
      : loop_(loop), process_(std::make_unique<QProcess>()), control_(command.control) {
    if (!command.workingFolder.isEmpty()) process_->setWorkingDirectory(command.workingFolder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& line : command.environment) {
      environment.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    }
    process_->setProcessEnvironment(environment);
    if (command.gentle) {
      process_->setChildProcessModifier([] { (void)::setpriority(PRIO_PROCESS, 0, kGentle); });
    }
    // Where this program was started in the background of a script it does not hear of SIGINT; a child must.
    process_->setChildProcessModifier([] { ::signal(SIGINT, SIG_DFL); });
    // The job must not go on inside a signal of the process, which it may then destroy.
    const auto wake = [this] {
      news_ = true;
      if (!wake_.Active()) wake_ = loop_.After(0ns, [this] { Wake(); });
    };
    QObject::connect(process_.get(), &QProcess::readyReadStandardOutput, process_.get(), wake);
    QObject::connect(process_.get(), &QProcess::readyReadStandardError, process_.get(), wake);
    QObject::connect(process_.get(), &QProcess::finished, process_.get(), wake);
    QObject::connect(process_.get(), &QProcess::errorOccurred, process_.get(), wake);
    if (command.input.isEmpty()) {
      process_->setStandardInputFile(QProcess::nullDevice());
      process_->start(command.program, command.arguments, QIODevice::ReadOnly);
    } else {
      process_->start(command.program, command.arguments, QIODevice::ReadWrite);
      process_->write(command.input);
      process_->closeWriteChannel();
    }
    if (control_) control_->send_ = [this](int signal) { Send(signal); };
  }
  RunningChild(const RunningChild&) = delete;
  RunningChild& operator=(const RunningChild&) = delete;
  ~RunningChild() {
    if (control_) control_->send_ = nullptr;
    process_->disconnect();
    if (process_->state() != QProcess::NotRunning) Stop();
  }

  [[nodiscard]] QProcess& Process() { return *process_; }
  [[nodiscard]] bool Ended() const { return process_->state() == QProcess::NotRunning; }

  /// `co_await`: goes on when there is output, or the child has ended.
  class Change {
   public:
    explicit Change(RunningChild& child) : child_(child) {}
    [[nodiscard]] bool await_ready() const { return child_.Ended(); }
    void await_suspend(std::coroutine_handle<> waiting) { child_.Await(waiting); }
    void await_resume() {}

   private:
    RunningChild& child_;
  };
  [[nodiscard]] Change NextChange() { return Change(*this); }

 private:
  void Send(int signal) const {
    if (process_->processId() > 0) ::kill(static_cast<pid_t>(process_->processId()), signal);
  }

  void Await(std::coroutine_handle<> waiting) {
    waiting_ = waiting;
    if (!loop_.Simulated()) return;
    wake_ = loop_.After(0ns, [this] {
      // The wait is for standard output alone; the other may have news as well.
      for (news_ = false; !news_ && !Ended();) process_->waitForReadyRead(kLook.count());
      Wake();
    });
  }

  void Wake() {
    if (waiting_) std::exchange(waiting_, nullptr).resume();
  }

  void Stop() {
    process_->terminate();
    if (loop_.Simulated()) {
      if (!process_->waitForFinished(std::chrono::milliseconds(kGrace).count())) process_->kill();
      process_->waitForFinished();
      return;
    }
    // From here on it belongs to the application, and goes when it has ended or with the program.
    QProcess* const left = process_.release();
    left->setParent(QCoreApplication::instance());
    const auto grace = std::make_shared<Timer>(loop_.After(kGrace, [left] { left->kill(); }));
    QObject::connect(left, &QProcess::finished, left, [left, grace] {
      grace->Stop();
      left->deleteLater();
    });
  }

  EventLoop& loop_;
  std::unique_ptr<QProcess> process_;
  std::shared_ptr<ChildControl> control_;
  std::coroutine_handle<> waiting_;
  Timer wake_;
  bool news_ = false;
};

namespace {

void Deliver(const QByteArray& piece, QByteArray& all, qsizetype keep,
             const std::function<void(const QByteArray&)>& listener) {
  if (piece.isEmpty()) return;
  all += piece;
  if (keep >= 0 && all.size() > keep) all = all.right(keep);
  if (listener) listener(piece);
}

}  // namespace

Job<ChildResult> RunChild(EventLoop& loop, ChildCommand command,
                          std::function<void(const QByteArray&)> onOutput,
                          std::function<void(const QByteArray&)> onError) {
  ChildResult result;
  RunningChild child(loop, command);
  QProcess& process = child.Process();
  for (bool ended = false; !ended;) {
    co_await child.NextChange();
    // Looked at before the rest is read: what comes with the end must not be missed.
    ended = child.Ended();
    Deliver(process.readAllStandardOutput(), result.output, command.keep, onOutput);
    Deliver(process.readAllStandardError(), result.errorOutput, command.keep, onError);
  }
  result.started = process.error() != QProcess::FailedToStart;
  if (!result.started) {
    result.error = process.errorString();
    co_return result;
  }
  result.crashed = process.exitStatus() == QProcess::CrashExit;
  result.exitCode = process.exitCode();
  co_return result;
}

}  // namespace kelvo

#include "app/windows/SplashWindow.h"

#include <QCloseEvent>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kShown = 10000ms;
constexpr int kClicksToClose = 5;

}  // namespace

SplashWindow::SplashWindow(EventLoop& loop, SplashChecks& checks, const ProgramFacts& facts)
    : loop_(loop), checks_(checks) {
  setObjectName(QStringLiteral("DJSplash"));
  setWindowTitle(facts.title);
  setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  SetTitle(facts.title);
  SetVersionLine(facts.VersionLine());
  checks_.OnStatus = [this](const QString& line) { AppendStatus(line); };
  connect(this, &SplashPanel::BackgroundClicked, this, [this] {
    if (++clicks_ > kClicksToClose) CloseWhenReady();
  });
  // To its end: the console has it from here on.
  setCursor(Qt::WaitCursor);
}

void SplashWindow::showEvent(QShowEvent* event) {
  SplashPanel::showEvent(event);
  if (started_) return;
  started_ = true;
  run_ = RunChecks();
}

Job<> SplashWindow::RunChecks() {
  co_await checks_.Run();
  checked_ = true;
  if (wantsToClose_) {
    CloseWhenReady();
  } else {
    timer_ = loop_.After(kShown, [this] { CloseWhenReady(); });
  }
}

void SplashWindow::CloseWhenReady() {
  wantsToClose_ = true;
  if (!checked_ || closed_) return;
  closed_ = true;
  timer_.Stop();
  hide();
  Q_EMIT Closed();
}

void SplashWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  CloseWhenReady();
}

}  // namespace kelvo

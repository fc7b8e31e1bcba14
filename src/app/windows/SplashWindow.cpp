#include "app/windows/SplashWindow.h"

#include "ui/Naming.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kShown = 10000ms;
constexpr int kClicksToClose = 5;

}  // namespace

SplashWindow::SplashWindow(EventLoop& loop, SplashChecks& checks, const ProgramFacts& facts)
    : loop_(loop), checks_(checks) {
  SetNames(*this, QStringLiteral("SplashWindow"), QStringLiteral("DJSplash"));
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

void SplashWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      // A key that is still down from the window before ends nothing.
      if (!event->isAutoRepeat()) CloseWhenReady();
      break;
    default:
      SplashPanel::keyPressEvent(event);
  }
}

void SplashWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  CloseWhenReady();
}

}  // namespace kelvo

#pragma once

#include "app/SplashChecks.h"
#include "platform/EventLoop.h"
#include "ui/SplashPanel.h"

namespace kelvo {

/// The splash on the screen, `DJSplash`: it runs its checks when it first shows, and closes after ten
/// seconds, at the sixth click, or at Escape, Enter or the space bar. Owned by the program's entry; GUI
/// thread.
class SplashWindow : public SplashPanel {
  Q_OBJECT
 public:
  SplashWindow(EventLoop& loop, SplashChecks& checks, const ProgramFacts& facts);

 Q_SIGNALS:
  /// The checks are through and the splash has gone.
  void Closed();

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  [[nodiscard]] Job<> RunChecks();
  void CloseWhenReady();

  EventLoop& loop_;
  SplashChecks& checks_;
  Job<> run_;
  Timer timer_;
  int clicks_ = 0;
  bool started_ = false;
  bool checked_ = false;
  bool wantsToClose_ = false;
  bool closed_ = false;
};

}  // namespace kelvo

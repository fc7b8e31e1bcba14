#include "console/ScreenLock.h"

namespace kelvo {

void ScreenLock::Lockscr() {
  if (asking_.Running()) return;
  asking_ = Locked() ? Unlock() : Lock();
}

Job<> ScreenLock::Lock() {
  const QString answer =
      co_await prompter_.AskSecret(QString(), QStringLiteral("Please Enter A Screen Lock Code"));
  const QString code = answer.trimmed();
  if (code.isEmpty()) co_return;
  screenLockCode_ = code;
  prompter_.HoldBack(true);
  Q_EMIT Changed(true);
}

Job<> ScreenLock::Unlock() {
  const QString answer =
      co_await prompter_.AskSecret(QString(), QStringLiteral("Enter Code To Unlock Screen"));
  if (answer.trimmed() == screenLockCode_) {
    screenLockCode_.clear();
    prompter_.HoldBack(false);
    Q_EMIT Changed(false);
    co_return;
  }
  Prompt refusal;
  refusal.text = QStringLiteral("Sorry, Screen Unlock Code Not Valid !");
  refusal.icon = PromptIcon::Exclamation;
  refusal.onLockedScreen = true;
  co_await prompter_.Ask(refusal);
}

}  // namespace kelvo

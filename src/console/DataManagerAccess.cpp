#include "console/DataManagerAccess.h"

namespace kelvo {

void DataManagerAccess::SetAccess(bool dmanAccess, const QString& password) {
  dmanAccess_ = dmanAccess;
  password_ = password;
}

void DataManagerAccess::Enter() {
  if (asking_.Running()) return;
  if (!dmanAccess_) {
    asking_ = AskPassword();
  } else if (OnGranted) {
    OnGranted();
  }
}

Job<> DataManagerAccess::AskPassword() {
  const QString answer =
      co_await prompter_.AskSecret(QStringLiteral("Data Manager Access"), QStringLiteral("Enter PassWord"));
  if (answer.isEmpty()) co_return;
  if (answer == password_) {
    if (OnGranted) OnGranted();
    co_return;
  }
  Prompt refusal;
  refusal.text = QStringLiteral("PassWord Not Recognized!");
  refusal.title = QStringLiteral("Data Manager Access");
  refusal.icon = PromptIcon::Exclamation;
  co_await prompter_.Ask(refusal);
}

}  // namespace kelvo

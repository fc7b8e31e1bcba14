#include "console/DataManagerAccess.h"

namespace kelvo {

void DataManagerAccess::Enter(std::function<void()> open) {
  if (asking_.Running()) return;
  if (dmanAccess_) {
    open();
  } else {
    asking_ = AskPassword(std::move(open));
  }
}

Job<> DataManagerAccess::AskPassword(std::function<void()> open) {
  const QString answer =
      co_await prompter_.AskSecret(QStringLiteral("Data Manager Access"), QStringLiteral("Enter PassWord"));
  if (answer.isEmpty()) co_return;
  if (answer == password_) {
    open();
    co_return;
  }
  Prompt refusal;
  refusal.text = QStringLiteral("PassWord Not Recognized!");
  refusal.title = QStringLiteral("Data Manager Access");
  refusal.icon = PromptIcon::Exclamation;
  co_await prompter_.Ask(refusal);
}

}  // namespace kelvo

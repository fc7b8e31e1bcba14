#include "console/ChildWindows.h"

#include <algorithm>

namespace kelvo {
namespace {

bool SideBySide(const ChildForm& one, const ChildForm& other) {
  const QString player = QStringLiteral("frmCdPlayer");
  const QString ripper = QStringLiteral("frmVBCDRip");
  return (one.Name() == player && other.Name() == ripper) || (one.Name() == ripper && other.Name() == player);
}

}  // namespace

void ChildWindows::ShowChild(ChildForm& form) {
  showing_.Cancel();
  std::vector<ChildForm*> leaving;
  std::vector<ChildForm*> staying;
  for (ChildForm* each : open_) {
    if (each == &form) continue;
    (SideBySide(*each, form) ? staying : leaving).push_back(each);
  }
  staying.push_back(&form);
  open_ = std::move(staying);
  if (leaving.empty()) {
    form.Show();
    return;
  }
  for (ChildForm* each : leaving) each->Hide();
  showing_ = ShowAfterTurn(&form);
}

Job<> ChildWindows::ShowAfterTurn(ChildForm* form) {
  co_await loop_.Yield();
  form->Show();
}

void ChildWindows::Closed(const ChildForm& form) {
  const auto place = std::find(open_.begin(), open_.end(), &form);
  if (place == open_.end()) return;
  // Only the form shown last can still be on its way.
  if (place == open_.end() - 1) showing_.Cancel();
  open_.erase(place);
}

}  // namespace kelvo

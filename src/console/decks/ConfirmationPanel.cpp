#include "console/decks/ConfirmationPanel.h"

namespace kelvo {

using namespace std::chrono_literals;

void ConfirmationPanel::Open(PanelQuestion question) {
  question_ = std::move(question);
  visible_ = true;
  timeout_ = loop_.After(3000ms, [this] {
    ++panelTimeouts_;
    Hide();
  });
  Q_EMIT Changed();
}

void ConfirmationPanel::Hide() {
  visible_ = false;
  timeout_.Stop();
  Q_EMIT Changed();
}

void ConfirmationPanel::Confirm() {
  if (!visible_) return;
  const PanelQuestion confirmed = question_;
  Hide();
  if (OnConfirmed) OnConfirmed(confirmed);
}

void ConfirmationPanel::Cancel() {
  if (visible_) Hide();
}

}  // namespace kelvo

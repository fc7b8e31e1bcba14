#include "console/transitions/CancelPanel.h"

namespace kelvo {

using namespace std::chrono_literals;

void CancelPanel::Open(Deck deck) {
  deck_ = deck;
  visible_ = true;
  cancTimer_ = loop_.After(2000ms, [this] { Hide(); });
  Q_EMIT Changed();
}

void CancelPanel::Hide() {
  cancTimer_.Stop();
  if (!std::exchange(visible_, false)) return;
  Q_EMIT Changed();
}

}  // namespace kelvo

#include "console/transitions/PressToSpeak.h"

#include "platform/ErrorLog.h"

#include <algorithm>
#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kStepTime = 10ms;
constexpr Nanoseconds kRetryTime = 100ms;
/// More steps than the longest way has: the most that are due after the machine slept.
constexpr std::int64_t kMostSteps = 1000;

}  // namespace

void PressToSpeak::Press() {
  if (!services_.state.TransitionActive) pressed_ = true;
  GoDown();
}

void PressToSpeak::Release() {
  pressed_ = false;
  if (!held_) GoUp();
}

void PressToSpeak::SetHeld(bool held) {
  if (held == std::exchange(held_, held)) return;
  retry_.Stop();
  if (held) {
    GoDown();
    retry_ = services_.loop.Every(kRetryTime, [this] { GoDown(); });
  } else if (!pressed_) {
    GoUp();
  }
}

void PressToSpeak::GoDown() {
  if (services_.state.TransitionActive || Dipped()) return;
  afadeDepth_ = kMostLoss - depthSlider_;
  for (const Deck deck : kDecks) dip_[deck] = std::min(AfadeSaved(deck), afadeDepth_);
  fade_ = RunFade(Direction::Down);
}

void PressToSpeak::GoUp() {
  if (!Dipped()) return;
  fade_.Cancel();
  fade_ = RunFade(Direction::Up);
}

void PressToSpeak::SetLevel(Deck deck, int loss) {
  services_.decks.SetLoss(deck, std::max(loss, dip_[deck]), loss);
}

void PressToSpeak::SetDepthSlider(int value) {
  depthSlider_ = std::clamp(value, 0, kMostLoss);
  afadeDepth_ = kMostLoss - depthSlider_;
  const bool playing = std::any_of(kDecks.begin(), kDecks.end(), [this](Deck deck) {
    return services_.decks.Record(deck).State == DeckState::Playing;
  });
  if (afadeDown_ && !afadeRunning_ && playing) {
    for (const Deck deck : kDecks) {
      dip_[deck] = afadeDepth_;
      Write(deck);
    }
  }
  Q_EMIT Changed();
}

void PressToSpeak::SetSpeedSlider(int value) {
  speedSlider_ = std::clamp(value, 1, 10);
  Q_EMIT Changed();
}

QString PressToSpeak::DepthText() const {
  return QString::number((kMostLoss - depthSlider_) / 100.0) + QStringLiteral(" dB");
}

Job<> PressToSpeak::RunFade(Direction direction) {
  try {
    afadeRunning_ = true;
    Q_EMIT Changed();
    const Nanoseconds begin = services_.loop.Elapsed();
    std::int64_t taken = 0;
    while (!Arrived(direction)) {
      const std::int64_t due = 1 + (services_.loop.Elapsed() - begin) / kStepTime;
      const int step = (11 - speedSlider_) * 10;
      Move(direction, step * static_cast<int>(std::min(due - std::exchange(taken, due), kMostSteps)));
      co_await services_.loop.Sleep(begin + due * kStepTime - services_.loop.Elapsed());
    }
    if (direction == Direction::Up) {
      EndDip();
    } else {
      afadeDown_ = true;
      afadeRunning_ = false;
    }
    Q_EMIT Changed();
  } catch (...) {
    basHandleError(QStringLiteral(" afade"), tr("The decks could not follow the voice."));
    // Music that stays down would be worse than a voice that it covers.
    EndDip();
    Q_EMIT Changed();
  }
}

bool PressToSpeak::Arrived(Direction direction) const {
  return std::all_of(kDecks.begin(), kDecks.end(), [&](Deck deck) {
    return direction == Direction::Down ? dip_[deck] >= afadeDepth_ : dip_[deck] <= AfadeSaved(deck);
  });
}

void PressToSpeak::Move(Direction direction, int by) {
  for (const Deck deck : kDecks) {
    int& dip = dip_[deck];
    if (direction == Direction::Down && dip < afadeDepth_) {
      dip = std::min(dip + by, afadeDepth_);
      Write(deck);
    } else if (direction == Direction::Up && dip > AfadeSaved(deck)) {
      dip = std::max(dip - by, AfadeSaved(deck));
      Write(deck);
    }
  }
}

void PressToSpeak::Write(Deck deck) {
  const int loss = std::max(AfadeSaved(deck), dip_[deck]);
  if (services_.decks.Record(deck).Loss != loss) services_.decks.SetLoss(deck, loss, AfadeSaved(deck));
}

void PressToSpeak::EndDip() {
  afadeDown_ = false;
  afadeRunning_ = false;
  for (const Deck deck : kDecks) {
    dip_[deck] = 0;
    Write(deck);
  }
}

}  // namespace kelvo

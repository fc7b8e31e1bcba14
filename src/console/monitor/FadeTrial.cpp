#include "console/monitor/FadeTrial.h"

#include "console/decks/VolumeLaw.h"
#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" trial");

constexpr Nanoseconds kStep = 10ms;
/// So much is heard in front of the start, and behind the end of the fade.
constexpr double kLead = 5;
constexpr Nanoseconds kTail = 5s;
constexpr int kMostOverlap = 60;
/// A disk that gives no sound is waited for no longer.
constexpr Nanoseconds kPatience = 10s;
// How the desk starts a fade: it waits until the coming track is heard, and its timer comes by.
constexpr Nanoseconds kHeardAfter = 500ms;
constexpr Nanoseconds kTimer = 250ms;
constexpr int kPartFadeStart = 50;
constexpr int kWalkStep = 3;

int Walked(int from, int fadeSp, Nanoseconds time) {
  const Nanoseconds pace = std::max(fadeSp, 1) * 2ms;
  const std::int64_t steps = std::max<std::int64_t>(time / pace, 0);
  return static_cast<int>(std::min<std::int64_t>(from + kWalkStep * steps, kDeckTwoAlone));
}

}  // namespace

int TrialSlider(TransitionKind kind, int fadeSp, Nanoseconds sinceStart) {
  if (!IsFade(kind)) return 0;
  const Nanoseconds time = sinceStart - kHeardAfter;
  if (time < 0ns) return kDeckOneAlone;
  if (kind == TransitionKind::Pan) return Walked(kDeckOneAlone, fadeSp, time - kTimer);
  // It jumps up first, a step of the slider each millisecond.
  const auto up = static_cast<int>(std::min<std::int64_t>(time / 1ms, kPartFadeStart - kDeckOneAlone));
  const Nanoseconds jump = (kPartFadeStart - kDeckOneAlone) * 1ms;
  return time < jump ? kDeckOneAlone + up : Walked(kPartFadeStart, fadeSp, time - jump - kTimer);
}

FadeTrial::FadeTrial(Services services)
    : services_(std::move(services)), going_(services_.audio), coming_(services_.audio) {
  connect(&services_.monitor, &Monitor::Changed, this, [this] {
    // The monitor has its device for itself.
    if (running_ && (services_.monitor.Shown() || services_.monitor.Output() != output_)) Stop();
    Q_EMIT Changed();
  });
}

void FadeTrial::Begin(const TrialOrder& order) {
  Stop();
  if (!WhyNot().isEmpty()) return;
  services_.monitor.Close();
  output_ = services_.monitor.Output();
  running_ = true;
  words_ = tr("The files are opened");
  job_ = Run(order);
  Q_EMIT Changed();
}

void FadeTrial::Stop() {
  if (!running_) return;
  job_.Cancel();
  End({});
}

void FadeTrial::End(const QString& words) {
  going_.GraphStop();
  coming_.GraphStop();
  running_ = false;
  words_ = words;
  Q_EMIT Changed();
}

Job<> FadeTrial::Run(TrialOrder order) {
  try {
    co_await Play(order);
  } catch (...) {
    End({});
    basHandleError(kTag, tr("The fade could not be tried."));
  }
}

Job<bool> FadeTrial::Open(cDshow& graph, QString path) {
  graph.SetOutPutDevice(output_);
  const OpenResult result = co_await graph.SetGraphFile(path);
  if (result.Ok()) co_return true;
  NoteInLog(QStringLiteral("The monitor cannot open %1: %2").arg(path, result.error));
  End(tr("%1 can't be played").arg(QFileInfo(path).completeBaseName()));
  co_return false;
}

Job<> FadeTrial::Play(TrialOrder order) {
  const bool first = co_await Open(going_, order.before);
  if (!first) co_return;
  const bool second = co_await Open(coming_, order.after);
  if (!second) co_return;
  const double start = std::max(going_.GraphDuration() - std::max(order.seconds, 1), 0.0);
  going_.SetGraphPosition(std::max(start - kLead, 0.0));
  coming_.SetGraphPosition(0);
  SetLevels(kDeckOneAlone, TransitionKind::None);
  words_ = tr("The end of %1").arg(QFileInfo(order.before).completeBaseName());
  Q_EMIT Changed();
  going_.GraphPlay();
  const Nanoseconds began = services_.loop.Elapsed();
  while (going_.GraphPosition() < start && services_.loop.Elapsed() - began < kPatience) {
    SetLevels(kDeckOneAlone, TransitionKind::None);
    co_await services_.loop.Sleep(kStep);
  }
  words_ = tr("The start of %1").arg(QFileInfo(order.after).completeBaseName());
  Q_EMIT Changed();
  coming_.GraphPlay();
  const Nanoseconds started = services_.loop.Elapsed();
  const Nanoseconds overlap = std::chrono::seconds(std::clamp(order.seconds, 1, kMostOverlap));
  Nanoseconds walked = 0ns;
  for (;;) {
    const Nanoseconds time = services_.loop.Elapsed() - started;
    const int slider = TrialSlider(order.kind, order.fadeSp, time);
    SetLevels(slider, order.kind);
    if (IsFade(order.kind) && slider < kDeckTwoAlone) walked = time;
    if (time > std::max(overlap, walked) + kTail) break;
    co_await services_.loop.Sleep(kStep);
  }
  End({});
}

void FadeTrial::SetLevels(int slider, TransitionKind kind) {
  const DeckLosses losses =
      VolumeLaw({slider, kind, Deck::Two, services_.settings.Get(setting::PanFadeBias)});
  const int level = services_.monitor.Level() * -1000;
  going_.SetGraphVolume(level - 2 * losses.left);
  coming_.SetGraphVolume(level - 2 * losses.right);
  for (cDshow* graph : {&going_, &coming_}) graph->SetGraphBalance(services_.monitor.Balance());
}

}  // namespace kelvo

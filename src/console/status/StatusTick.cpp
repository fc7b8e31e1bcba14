#include "console/status/StatusTick.h"

#include "platform/ErrorLog.h"
#include "platform/Words.h"

namespace kelvo {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t kLowMemory = 20000000;
constexpr int kWarningSeconds = 10;
constexpr int kPatience = 5;
const QString kTag = QStringLiteral(" constat");
const QString kNoName = QStringLiteral("(No Name)");
const QString kPlaying = QStringLiteral("Currently Playing: ");

bool Says(const std::function<bool()>& hook) {
  return hook && hook();
}

}  // namespace

QString GroupStatusLine(const QString& listName, const GroupRun& run, bool playing, bool loaded) {
  if (run.line < 1) return QStringLiteral("Waiting to Start ") + listName;
  if (!run.details.isEmpty()) {
    return listName + QStringLiteral(" Running Line ") + QString::number(run.line) + QStringLiteral(" Of ") +
           QString::number(run.count) + QStringLiteral(" : ") + run.details;
  }
  if (playing) return listName + QStringLiteral(" Rock n Rolling !");
  if (loaded) return listName + QStringLiteral(" Ready To Rock n Roll !");
  return {};
}

StatusTick::StatusTick(Services services) : services_(std::move(services)) {
  hooks.Memory = ReadMemoryStatus;
  status_.windowTitle = services_.title;
  ShowTime();
}

void StatusTick::Start() {
  leftOut_ = false;
  timer_ = services_.loop.Every(1000ms, [this] { Beat(); });
}

void StatusTick::Stop() {
  timer_.Stop();
  warning_.Cancel();
}

void StatusTick::SetAudioWarning(bool on, const QString& filePath) {
  audioWarningsOn_ = on;
  audioWarningFilePath_ = filePath;
  lastWarningError_.clear();
}

void StatusTick::Beat() {
  Guarded(kTag, tr("The desk could not be shown as it is."), [this] {
    if (hooks.EverySecond) hooks.EverySecond();
  });
  const bool silentBefore = status_.airSilent;
  Guarded(kTag, tr("The desk could not be shown as it is."), [this] { WatchAir(); });
  leftOut_ = !leftOut_ && Says(hooks.WalkRuns);
  if (!leftOut_) Tick();
  // An alarm does not wait for a fade.
  if (leftOut_ && status_.airSilent != silentBefore) Q_EMIT Ticked();
}

void StatusTick::WatchAir() {
  if (!hooks.Air) return;
  air_.Look(hooks.Air(), services_.loop.Elapsed());
  if (air_.Silent() && !status_.airSilent) NoteInLog(QStringLiteral("The air is silent"));
  status_.airSilent = air_.Silent();
}

void StatusTick::AcceptSilence() {
  air_.Accept();
  if (!std::exchange(status_.airSilent, false)) return;
  Q_EMIT Ticked();
}

void StatusTick::SetSilentDisks(const QStringList& names) {
  status_.silentDisks = names;
  Q_EMIT Ticked();
}

void StatusTick::SetNoDevice(bool lost) {
  if (std::exchange(status_.noDevice, lost) != lost) Q_EMIT Ticked();
}

void StatusTick::Tick() {
  bool ripping = false;
  const auto step = [](auto&& work) { Guarded(kTag, tr("The desk could not be shown as it is."), work); };
  step([&] { ripping = Says(hooks.RipRuns); });
  if (ripping) return;
  step([this] { ShowDecks(); });
  step([this] { ShowQueue(); });
  step([this] { ShowMemoryAndTitle(); });
  step([this] { ShowCaution(); });
  step([this] { BlinkQueue(); });
  step([this] { ShowTime(); });
  step([this] { ShowIdle(); });
  step([this] { Warn(); });
  step([this] { ShowMode(); });
  step([this] { RunAutoTick(); });
  step([this] {
    if (hooks.BlinkFilterWords) hooks.BlinkFilterWords();
  });
  Q_EMIT Ticked();
}

bool StatusTick::AnyDeck(DeckState state) const {
  return services_.decks.Record(Deck::One).State == state || services_.decks.Record(Deck::Two).State == state;
}

bool StatusTick::Heard(Deck deck) const {
  const int side = services_.state.CrossPan;
  return services_.decks.Record(deck).Live() && (deck == Deck::One ? side <= 0 : side > 0);
}

void StatusTick::ShowIndicator(Deck deck) {
  DeckIndicator& indicator = status_.indicators[deck];
  const DeckRecord& record = services_.decks.Record(deck);
  indicator.playing = record.State == DeckState::Playing;
  indicator.style = indicator.playing ? NextFillStyle(indicator.style) : 1;
  indicator.text = Heard(deck) ? kPlaying + record.Title : QString();
}

void StatusTick::ShowDecks() {
  QString line;
  for (const Deck deck : kDecks) {
    ShowIndicator(deck);
    if (!status_.indicators[deck].text.isEmpty()) line = status_.indicators[deck].text;
  }
  const bool playing = AnyDeck(DeckState::Playing);
  if (services_.state.GroupPlayOn) {
    const GroupRun run = hooks.Group ? hooks.Group() : GroupRun();
    const QString words = GroupStatusLine(services_.queue.Name(), run, playing, AnyDeck(DeckState::Loaded));
    if (!words.isEmpty()) line = words;
  }
  // A line that still names a track as playing when all is still would be wrong.
  const bool stale =
      !playing && !playingLine_.isEmpty() && hooks.StatusLine && hooks.StatusLine() == playingLine_;
  if (line.isEmpty() && stale) line = services_.aboutLine;
  if (line.isEmpty()) return;
  playingLine_ = line;
  if (hooks.SetStatusLine) hooks.SetStatusLine(line);
}

QString StatusTick::SessionName() const {
  return hooks.SessionName ? hooks.SessionName() : services_.queue.Name();
}

void StatusTick::ShowMemoryAndTitle() {
  const MemoryStatus memory = hooks.Memory ? hooks.Memory() : MemoryStatus();
  // A system that tells nothing of its memory isn't short of it.
  status_.memoryLow = memory.total > 0 && memory.available < kLowMemory;
  const std::optional<QString> armed = hooks.TimedStart ? hooks.TimedStart() : std::nullopt;
  if (armed) {
    status_.windowTitle = *armed;
    return;
  }
  const QString& version = services_.version;
  status_.windowTitle = services_.title + QLatin1Char(' ') + version + QStringLiteral(" Console ") + version +
                        QStringLiteral(" - ") + SessionName() + QStringLiteral(" - : Free Memory : / ") +
                        QString::number(memory.available / 1024) + QStringLiteral(" Of ") +
                        QString::number(memory.total / 1024) + QStringLiteral(" K.bytes");
}

void StatusTick::ShowQueue() {
  status_.queueCount = services_.queue.Count();
  status_.queueTime = HoursMinutesSeconds(services_.queue.QueueTotalSeconds());
}

void StatusTick::ShowCaution() {
  if (services_.panel.PanelTimeouts() > kPatience) status_.caution = QStringLiteral("I'm Worried For You !");
}

void StatusTick::BlinkQueue() {
  status_.queueBlinks =
      services_.state.AutoPlayOn && status_.queueCount > 0 && !services_.queue.GroupQueueFlag();
  status_.queueLit = status_.queueBlinks && !status_.queueLit;
  const std::optional<Deck> onAir = services_.decks.OnAir();
  status_.queuePosition =
      status_.queueBlinks && onAir ? services_.queue.IndexOf(services_.decks.Record(*onAir).Row) : 0;
}

void StatusTick::ShowTime() {
  const QDateTime now = services_.loop.Now();
  status_.sessionTime = HoursMinutesSeconds(services_.sessionStart.secsTo(now));
  status_.hands = HandsAt(now.time());
  status_.date = now.date().toString(QStringLiteral("ddd d MMM yyyy"));
  status_.time = now.time().toString(QStringLiteral("HH:mm:ss"));
}

void StatusTick::ShowIdle() {
  status_.whyBusy = WhyBusy();
  status_.idle = status_.whyBusy.isEmpty();
}

QString StatusTick::WhyBusy() const {
  for (const Deck deck : kDecks) {
    if (services_.decks.Player(deck).State() == PlayState::Playing)
      return tr("Not while deck %1 plays").arg(DisplayNumber(deck));
  }
  if (Says(hooks.JinglePlays) || Says(hooks.JingleActive)) return tr("Not while a jingle plays");
  if (Says(hooks.MonitorShown)) return tr("Not while the monitor is open");
  const QString name = SessionName();
  const bool named = !name.isEmpty() && name != kNoName;
  return named ? tr("Not while the queue has a name: %1").arg(name) : QString();
}

bool StatusTick::RunsOut(Deck deck) const {
  const DeckRecord& record = services_.decks.Record(deck);
  return record.State == DeckState::Playing && record.RemainSeconds < kWarningSeconds &&
         record.RemainSeconds > 0;
}

void StatusTick::Warn() {
  warningDue_ = false;
  for (const Deck deck : kDecks) {
    bool& lamp = status_.lamps[deck];
    if (services_.state.PlaysByItself() || !RunsOut(deck)) {
      lamp = false;
      continue;
    }
    warningDue_ = true;
    // The lamp blinks: a beat red, a beat dark. The sound begins with a dark one.
    if (lamp) {
      lamp = false;
      continue;
    }
    const bool startSound = audioWarningsOn_ && services_.warningPlayer.State() != PlayState::Playing;
    if (startSound && !warning_.Running()) warning_ = SoundWarning();
    const bool nextIsReady =
        services_.queue.Count() > 0 && services_.decks.Record(Other(deck)).State == DeckState::Loaded;
    lamp = !nextIsReady;
  }
}

Job<> StatusTick::SoundWarning() {
  try {
    const OpenResult opened = co_await services_.warningPlayer.Open(audioWarningFilePath_);
    if (opened.Ok()) {
      // A slow disk must not bring the warning when the danger is over.
      if (warningDue_ && audioWarningsOn_) services_.warningPlayer.Play();
      co_return;
    }
    if (opened.error != lastWarningError_) NoteInLog(opened.error);
    lastWarningError_ = opened.error;
  } catch (...) {
    basHandleError(QStringLiteral(" conwarn"), tr("The warning sound could not be played."));
  }
}

void StatusTick::ShowMode() {
  ModeWord& mode = status_.mode;
  const ConsoleState& state = services_.state;
  if (!state.PlaysByItself()) {
    const bool lit = !mode.idle || !mode.lit;
    mode = ModeWord();
    mode.lit = lit;
    status_.pauseCaption = QStringLiteral("> ||");
    return;
  }
  mode.idle = false;
  mode.lit = true;
  if (hooks.Mode) {
    mode.text = hooks.Mode();
  } else {
    mode.text = state.GroupPlayOn ? QStringLiteral("GRP MODE")
                : state.PreviewOn ? QStringLiteral("PREVIEW MODE")
                                  : QStringLiteral("KELVO MODE");
  }
  if (hooks.PauseCaption) status_.pauseCaption = hooks.PauseCaption();
}

void StatusTick::RunAutoTick() {
  if (services_.state.AutoPlayOn && !services_.state.TransitionActive && hooks.AutoTick) hooks.AutoTick();
}

}  // namespace kelvo

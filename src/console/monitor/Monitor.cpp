#include "console/monitor/Monitor.h"

#include "platform/ErrorLog.h"

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" monitor");

constexpr Nanoseconds kFrame = 100ms;
/// A step of a nudge lasts as long as a seek takes to be heard.
constexpr Nanoseconds kNudgeStep = 20ms;
constexpr double kNudge = 0.5;
constexpr double kNudgeFaster = 0.05;
constexpr double kJump = 1;

}  // namespace

Monitor::Monitor(Services services) : services_(std::move(services)), graph_(services_.audio) {
  services_.settings.Listen(setting::PFLDeviceId, this, [this](const QString&) { FollowDevice(); });
}

std::optional<Deck> Monitor::DeckOf(MonitorSource source) {
  if (source == MonitorSource::DeckOne) return Deck::One;
  if (source == MonitorSource::DeckTwo) return Deck::Two;
  return std::nullopt;
}

std::optional<Monitor::Opened> Monitor::HeldBy(MonitorSource source) const {
  if (const std::optional<Deck> deck = DeckOf(source)) {
    const DeckRecord& record = services_.decks.Record(*deck);
    if (record.State == DeckState::Empty) return std::nullopt;
    return Opened{record.FilePath, record.CatalogueIndex};
  }
  const Jingles& jingles = services_.jingles;
  if (source != MonitorSource::Jingles || jingles.State() == DeckState::Empty) return std::nullopt;
  return Opened{jingles.FilePath(), Mref::None};
}

QString Monitor::Output() const {
  const QString id = services_.settings.Get(setting::PFLDeviceId);
  return id.isEmpty() ? services_.settings.Get(setting::PFLDeviceName) : id;
}

QString Monitor::Device() const {
  const QString name = services_.audio.OutputNamed(Output());
  return name.isEmpty() ? services_.settings.Get(setting::PFLDeviceName) : name;
}

void Monitor::SetDevice(const QString& name) {
  services_.settings.Set(setting::PFLDevice, static_cast<int>(services_.audio.OutputNames().indexOf(name)));
  services_.settings.Set(setting::PFLDeviceName, name);
  services_.settings.Set(setting::PFLDeviceId, services_.audio.OutputId(name));
}

void Monitor::FollowDevice() {
  if (shown_) Begin(source_, opened_, titleLine_, track_, graph_.GraphPosition());
  Q_EMIT Changed();
}

QString Monitor::ProgrammeDevice() const {
  const QStringList names = services_.audio.OutputNames();
  const OutputStatus programme = services_.audio.DefaultOutputStatus();
  const bool there = programme.kind != OutputStatus::Kind::OnDefault && names.contains(programme.device);
  return there ? programme.device : names.value(0);
}

QStringList Monitor::Devices() const {
  QStringList names = services_.audio.OutputNames();
  names.removeAll(ProgrammeDevice());
  return names;
}

QString Monitor::WhyNotApart() const {
  const AudioSystem& audio = services_.audio;
  const QString output = Output();
  if (!Enabled()) return tr("Only one sound output is there: the monitor needs a second");
  if (output == QStringLiteral("None")) return tr("No sound device is chosen for the monitor");
  if (audio.OutputNamed(output).isEmpty()) return tr("The monitor's device %1 isn't there").arg(Device());
  const QString onAir = ProgrammeDevice();
  const bool same = output == onAir || output == audio.OutputId(onAir);
  return same ? tr("The monitor's device is the one that is on air") : QString();
}

bool Monitor::HeldBack() const {
  const QString name = services_.audio.OutputNamed(Output());
  return !name.isEmpty() && name == ProgrammeDevice();
}

bool Monitor::DeviceMissing() const {
  return shown_ ? graph_.DeviceMissing() : services_.audio.OutputNamed(Output()).isEmpty();
}

void Monitor::Open(MonitorSource source) {
  const std::optional<Opened> held = HeldBy(source);
  if (!held || !Enabled()) return;
  const std::optional<Deck> deck = DeckOf(source);
  const QString track = deck ? services_.decks.Record(*deck).Title : services_.jingles.Title();
  // Operators know the two decks by titles of a different form.
  const QString titleLine = source == MonitorSource::DeckOne   ? QStringLiteral("PFL DECK 1")
                            : source == MonitorSource::DeckTwo ? QStringLiteral("PFL 2")
                                                               : QStringLiteral("PFL Sound Bites");
  Begin(source, *held, titleLine, track);
}

void Monitor::OpenFile(const QString& path, const QString& title) {
  if (Enabled()) Begin(MonitorSource::List, {path, Mref::None}, QStringLiteral("PFL"), title);
}

void Monitor::Begin(MonitorSource source, const Opened& opened, const QString& titleLine,
                    const QString& track, double from) {
  open_ = RunOpen(source, opened, titleLine, track, from);
}

Job<> Monitor::RunOpen(MonitorSource source, Opened opened, QString titleLine, QString track, double from) {
  try {
    nudge_.Cancel();
    graph_.SetOutPutDevice(Output());
    const OpenResult result = co_await graph_.SetGraphFile(opened.path);
    if (result.kind == OpenResult::Kind::Superseded) co_return;
    if (!result.Ok()) {
      NoteInLog(QStringLiteral("The monitor cannot open %1: %2").arg(opened.path, result.error));
      Close();
      co_return;
    }
    source_ = source;
    opened_ = std::move(opened);
    titleLine_ = std::move(titleLine);
    track_ = std::move(track);
    shown_ = true;
    ApplyLevels();
    if (from > 0) graph_.SetGraphPosition(from);
    graph_.GraphPlay();
    tick_ = services_.loop.Every(kFrame, [this] { Tick(); });
    Q_EMIT Changed();
  } catch (...) {
    basHandleError(kTag, tr("The track could not be opened in the monitor."));
  }
}

void Monitor::Close() {
  graph_.GraphStop();
  nudge_.Cancel();
  tick_.Stop();
  shown_ = false;
  Q_EMIT Changed();
}

void Monitor::Tick() {
  if (graph_.GraphMuted() != HeldBack()) ApplyLevels();
  // By whole seconds, unless the track is shorter than one.
  if (graph_.GraphPosition() >= std::min(graph_.GraphDuration(), std::max(Duration(), 1) * 1.0)) {
    Close();
    return;
  }
  Q_EMIT Changed();
}

void Monitor::Run() {
  if (!shown_) return;
  graph_.GraphPlay();
  Q_EMIT Changed();
}

void Monitor::Pause() {
  if (!shown_) return;
  graph_.GraphPause();
  Q_EMIT Changed();
}

void Monitor::BackToStart() {
  if (!shown_) return;
  graph_.SetGraphPosition(0);
  Run();
}

void Monitor::Seek(int seconds) {
  if (!shown_) return;
  graph_.SetGraphPosition(seconds);
  Q_EMIT Changed();
}

void Monitor::BeginNudge(Nudge nudge) {
  if (shown_ && graph_.GraphPlayState() != cDshow::State::Stopped) nudge_ = RunNudge(nudge);
}

Job<> Monitor::RunNudge(Nudge nudge) {
  const bool jumps = nudge == Nudge::AdvanceTwo || nudge == Nudge::RewindTwo;
  const double direction = nudge == Nudge::Forward || nudge == Nudge::AdvanceTwo ? 1 : -1;
  double step = jumps ? kJump : kNudge;
  for (;;) {
    const double target = graph_.GraphPosition() + direction * step;
    co_await services_.loop.Sleep(kNudgeStep);
    graph_.SetGraphPosition(std::clamp(target, 0.0, graph_.GraphDuration()));
    if (!jumps) step += kNudgeFaster;
    Q_EMIT Changed();
  }
}

bool Monitor::Sync() {
  if (!shown_ || !CanSync()) return false;
  const std::optional<Opened> held = HeldBy(source_);
  if (!held || held->track != opened_.track || (held->track == Mref::None && held->path != opened_.path)) {
    titleLine_ = QStringLiteral("Track No Longer In Deck !");
    Q_EMIT Changed();
    return false;
  }
  const double position = graph_.GraphPosition();
  if (const std::optional<Deck> deck = DeckOf(source_)) {
    services_.decks.SetPosition(*deck, position);
  } else {
    services_.jingles.SetPosition(position);
  }
  Close();
  return true;
}

void Monitor::SyncStart() {
  const std::optional<Deck> deck = DeckOf(source_);
  if (Sync() && deck) services_.fades.PressPartFade(*deck);
}

void Monitor::SetLevel(int value) {
  level_ = std::clamp(value, 0, kMostLevel);
  ApplyLevels();
  Q_EMIT Changed();
}

void Monitor::SetBalance(int value) {
  balance_ = std::clamp(value, -kMostBalance, kMostBalance);
  ApplyLevels();
  Q_EMIT Changed();
}

void Monitor::ApplyLevels() {
  graph_.SetGraphVolume(level_ * -1000);
  graph_.SetGraphBalance(balance_);
  graph_.GraphMute(HeldBack());
}

}  // namespace kelvo

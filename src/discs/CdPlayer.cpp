#include "discs/CdPlayer.h"

#include "audio/MonitorSettings.h"
#include "platform/Words.h"

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kDisplay = 1000ms;
constexpr Nanoseconds kDriveWatch = 2000ms;
/// A drive that gives no sound for so long is given up: a scratch takes some seconds.
constexpr Nanoseconds kMostLate = 20s;

const QString kTmsf = QStringLiteral("set cd time format tmsf");

/// "12:03" of "12:03:45".
QString WithoutFrames(const QString& time) {
  return time.section(QLatin1Char(':'), 0, 1);
}

}  // namespace

CdPlayer::CdPlayer(Services services)
    : services_(std::move(services)), cd_({services_.loop, services_.audio, services_.shelf}) {
  services_.shelf->OnAir = [this] { return cd_.Playing() && !OnMonitor(); };
  connect(services_.shelf.get(), &DriveShelf::Changed, this, &CdPlayer::FollowShelf);
  connect(services_.shelf.get(), &DriveShelf::UseChanged, this, &CdPlayer::Changed);
  services_.settings.Listen(setting::PFLDeviceId, this,
                            [this](const QString&) { SetOnMonitor(OnMonitor()); });
}

CdPlayer::~CdPlayer() {
  services_.shelf->OnAir = nullptr;
}

QString CdPlayer::MonitorOutput() const {
  const QString id = services_.settings.Get(setting::PFLDeviceId);
  return id.isEmpty() ? services_.settings.Get(setting::PFLDeviceName) : id;
}

void CdPlayer::Do(Step step) {
  steps_.push_back({std::move(step), true});
  if (!work_.Running()) work_ = Work();
}

Job<> CdPlayer::Work() {
  while (!steps_.empty()) {
    const Order order = std::move(steps_.front());
    steps_.pop_front();
    // What went wrong with an order is told until the next one; the display has words of its own.
    QString& words = order.byHand ? trouble_ : state_;
    try {
      words.clear();
      Job<> job = order.step();
      co_await std::move(job);
    } catch (const std::exception& failure) {
      words = QString::fromUtf8(failure.what());
    }
    Q_EMIT Changed();
  }
}

Job<QString> CdPlayer::Send(QString command) {
  if (OnCommand) OnCommand(command);
  return cd_.Send(std::move(command));
}

void CdPlayer::Open() {
  if (IsOpen()) return;
  services_.shelf->Refresh();
  cd_.SetOutput(OnMonitor() ? MonitorOutput() : QString());
  second_ = services_.loop.Every(kDisplay, [this] {
    // What the operator ordered goes first.
    if (work_.Running()) return;
    steps_.push_back({[this] { return RunRefresh(); }, false});
    work_ = Work();
  });
  drive_ = services_.loop.Every(kDriveWatch, [this] { Watch(); });
  if (services_.shelf->Places().empty()) {
    state_ = QStringLiteral("No CD Selected");
  } else {
    // What it had may have been closed with its window.
    Choose(services_.shelf->Holds(Place()) ? Place() : services_.shelf->Places().front().path);
  }
}

void CdPlayer::FollowShelf() {
  if (!IsOpen()) return;
  const auto& places = services_.shelf->Places();
  if (!services_.shelf->Holds(Place())) Choose(places.empty() ? QString() : places.front().path);
  Q_EMIT Changed();
}

void CdPlayer::Choose(const QString& place) {
  if (place == Place() && !place.isEmpty() && present_) return;
  steps_.clear();
  work_.Cancel();
  Forget();
  Do([this, place] { return RunOpen(place); });
}

Job<> CdPlayer::RunOpen(QString place) {
  (void)co_await Send(QStringLiteral("close all"));
  cd_.SetPlace(place);
  if (Place().isEmpty()) {
    state_ = QStringLiteral("No CD Selected");
    co_return;
  }
  (void)co_await Send(QStringLiteral("open cdaudio alias cd wait shareable"));
  (void)co_await Send(QStringLiteral("set cd time format tmsf wait"));
  co_await RunRefresh();
}

void CdPlayer::Close() {
  if (!IsOpen()) return;
  second_.Stop();
  drive_.Stop();
  steps_.clear();
  work_.Cancel();
  Do([this] { return RunClose(); });
}

Job<> CdPlayer::RunClose() {
  const bool disc = present_;
  const int track = track_;
  Forget();
  if (disc) {
    (void)co_await Send(QStringLiteral("stop cd wait"));
    if (track > 0) (void)co_await Send(QStringLiteral("seek cd to ") + QString::number(track));
  }
  (void)co_await Send(QStringLiteral("close all"));
}

void CdPlayer::Forget() {
  present_ = playing_ = false;
  track_ = 0;
  discLine_.clear();
  timeLine_.clear();
  tracks_.Replace({});
}

Job<> CdPlayer::RunRefresh() {
  if (Place().isEmpty()) {
    state_ = QStringLiteral("No CD Selected");
    co_return;
  }
  state_.clear();
  const QString media = co_await Send(QStringLiteral("status cd media present"));
  if (media != QLatin1StringView("true")) {
    Forget();
    state_ = QStringLiteral("No CD In Drive");
    co_return;
  }
  const QString count = co_await Send(QStringLiteral("status cd number of tracks wait"));
  const QString length = co_await Send(QStringLiteral("status cd length wait"));
  discLine_ = QStringLiteral("Tracks: ") + count + QStringLiteral("  Total time: ") + WithoutFrames(length);
  if (!present_) {
    present_ = true;
    (void)co_await Send(QStringLiteral("seek cd to 1"));
    co_await ListTracks(count.toInt());
  }
  const QString position = co_await Send(QStringLiteral("status cd position"));
  TakePlace(position);
  const QString mode = co_await Send(QStringLiteral("status cd mode"));
  playing_ = mode == QLatin1StringView("playing");
}

Job<> CdPlayer::ListTracks(int count) {
  std::vector<CdTrackRow> rows;
  for (int number = 1; number <= count; ++number) {
    const QString length = co_await Send(QStringLiteral("status cd length track ") + QString::number(number));
    const TocTrack* track = cd_.Toc().Track(number);
    QString title;
    if (track != nullptr) {
      title = !track->audio ? tr("Data") : track->title;
      if (title.isEmpty()) title = QStringLiteral("Track ") + Format00(number);
      if (track->audio && !track->performer.isEmpty())
        title.prepend(track->performer + QStringLiteral(" - "));
    }
    rows.push_back({number, title, WithoutFrames(length)});
  }
  tracks_.Replace(std::move(rows));
}

void CdPlayer::TakePlace(const QString& position) {
  const int before = track_;
  track_ = position.section(QLatin1Char(':'), 0, 0).toInt();
  timeLine_ = QStringLiteral("Track time: ") + position.section(QLatin1Char(':'), 1, 2);
  if (track_ == before) return;
  for (int row = 0; row < tracks_.Count(); ++row) {
    const bool current = tracks_[row].number == track_;
    if (tracks_[row].current != current)
      tracks_.Alter(row, [current](CdTrackRow& each) { each.current = current; });
  }
}

void CdPlayer::Watch() {
  if (!playing_ || cd_.LateFor() < kMostLate) return;
  const QString place = Place();
  Stop();
  services_.prompter.Tell({tr("The drive %1 gives no sound any more: the CD was stopped.").arg(place), {}});
}

Job<> CdPlayer::RunSimple(QString command) {
  (void)co_await Send(std::move(command));
  co_await RunRefresh();
}

void CdPlayer::Play() {
  if (WhyNoPlay().isEmpty()) Do([this] { return RunSimple(QStringLiteral("play cd")); });
}

void CdPlayer::Pause() {
  Do([this] { return RunSimple(QStringLiteral("pause cd")); });
}

void CdPlayer::Stop() {
  Do([this] { return RunStop(); });
}

Job<> CdPlayer::RunStop() {
  (void)co_await Send(QStringLiteral("stop cd wait"));
  if (track_ > 0) (void)co_await Send(QStringLiteral("seek cd to ") + QString::number(track_));
  co_await RunRefresh();
}

void CdPlayer::Eject() {
  if (WhyNoTray().isEmpty()) Do([this] { return RunSimple(QStringLiteral("set cd door open")); });
}

void CdPlayer::CloseTray() {
  if (WhyNoTray().isEmpty()) Do([this] { return RunSimple(QStringLiteral("set cd door closed")); });
}

void CdPlayer::NextTrack() {
  Do([this] { return RunStep(1); });
}

void CdPlayer::PreviousTrack() {
  Do([this] { return RunStep(-1); });
}

Job<> CdPlayer::RunStep(int step) {
  if (!present_) co_return;
  int number = std::max(track_ + step, 1);
  if (number > tracks_.Count()) number = 1;
  co_await RunTo(number, cd_.Playing());
}

void CdPlayer::PlayTrack(int number) {
  if (WhyNoPlay().isEmpty()) Do([this, number] { return RunTo(number, true); });
}

Job<> CdPlayer::RunTo(int number, bool play) {
  (void)co_await Send(QStringLiteral("seek cd to ") + QString::number(number));
  if (play) (void)co_await Send(QStringLiteral("play cd from ") + QString::number(number));
  co_await RunRefresh();
}

void CdPlayer::Forward() {
  Do([this] { return RunMove(Speed()); });
}

void CdPlayer::Rewind() {
  Do([this] { return RunMove(-Speed()); });
}

Job<> CdPlayer::RunMove(int seconds) {
  if (!present_) co_return;
  const bool playing = cd_.Playing();
  std::exception_ptr failure;
  (void)co_await Send(QStringLiteral("set cd time format milliseconds"));
  try {
    const QString now = co_await Send(QStringLiteral("status cd position wait"));
    const QString to = QString::number(std::max(now.toLongLong() + qint64{seconds} * 1000, qint64{0}));
    (void)co_await Send((playing ? QStringLiteral("play cd from ") : QStringLiteral("seek cd to ")) + to);
  } catch (...) {
    failure = std::current_exception();
  }
  (void)co_await Send(kTmsf);
  if (failure) std::rethrow_exception(failure);
  co_await RunRefresh();
}

void CdPlayer::AskSpeed() {
  if (!asking_.Running()) asking_ = RunAskSpeed();
}

Job<> CdPlayer::RunAskSpeed() {
  const QString typed = co_await services_.prompter.AskText(QStringLiteral("Fast Forward Speed"),
                                                            QStringLiteral("Enter the new speed in seconds"),
                                                            QString::number(Speed()));
  bool isNumber = false;
  const int seconds = typed.trimmed().toInt(&isNumber);
  if (isNumber && seconds >= setting::CdPlayerSpeed.lowest && seconds <= setting::CdPlayerSpeed.highest) {
    services_.settings.Set(setting::CdPlayerSpeed, seconds);
    Q_EMIT Changed();
  } else if (!typed.isEmpty()) {
    services_.prompter.Tell({tr("The Speed Is A Number Of Seconds From %1 To %2 !")
                                 .arg(setting::CdPlayerSpeed.lowest)
                                 .arg(setting::CdPlayerSpeed.highest),
                             {}});
  }
}

void CdPlayer::SetOnMonitor(bool on) {
  services_.settings.Set(setting::CdPlayerOnMonitor, on);
  cd_.SetOutput(on ? MonitorOutput() : QString());
  playing_ = cd_.Playing();
  Q_EMIT Changed();
}

QString CdPlayer::WhyNoPlay() const {
  if (Place().isEmpty()) return QStringLiteral("No CD Selected");
  if (services_.shelf->Ripping(Place())) return QStringLiteral("Please Wait For Ripper To Finish!");
  if (!present_) return QStringLiteral("No CD In Drive");
  if (OnMonitor() && services_.audio.OutputNamed(MonitorOutput()).isEmpty())
    return tr("The monitor's sound device is not there: choose another in the configuration");
  return {};
}

QString CdPlayer::WhyNoTray() const {
  if (Place().isEmpty()) return QStringLiteral("No CD Selected");
  return services_.shelf->Ripping(Place()) ? QStringLiteral("Please Wait For Ripper To Finish!") : QString();
}

}  // namespace kelvo

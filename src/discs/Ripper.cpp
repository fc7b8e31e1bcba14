#include "discs/Ripper.h"

#include "discs/RipChecks.h"
#include "platform/Words.h"

#include <QPointer>

#include <algorithm>

namespace kelvo {

Ripper::Ripper(Services services)
    : services_(std::move(services)),
      rows_(services_.prompter),
      run_({services_.loop, services_.prompter, services_.catalogue, services_.shelf}) {
  ini_.writer = WriterName::kMp3;
  LoadWriter();
  services_.settings.Listen(setting::Presets, this, [this](const auto&) { Q_EMIT Changed(); });
  connect(services_.shelf.get(), &DriveShelf::Changed, this, &Ripper::FollowShelf);
  connect(services_.shelf.get(), &DriveShelf::UseChanged, this, &Ripper::Changed);
  connect(&rows_, &RipRows::TicksChanged, this, &Ripper::Changed);
  connect(&run_, &RipRun::Changed, this, &Ripper::Changed);
  connect(&run_, &RipRun::Through, this, [this](int row, RipMark mark, const QString& words) {
    rows_.SetMark(row, mark, words);
    rows_.Tick(row, false);
  });
  connect(&run_, &RipRun::Ended, this, &Ripper::TellEnd);
}

void Ripper::LoadWriter() {
  cPluginManager plugins(services_.writers);
  for (const QString& name : {ini_.writer, WriterName::kMp3, WriterName::kWave}) {
    try {
      writer_ = plugins.Load(name);
      return;
    } catch (const Failure& failure) {
      NoteInLog(tr("cdrip.ini: ") + QString::fromUtf8(failure.what()));
    }
  }
}

void Ripper::Show(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

void Ripper::Open() {
  if (!open_.Running()) open_ = RunOpen();
}

Job<> Ripper::RunOpen() {
  if (Busy()) co_return;
  try {
    const auto read = [path = services_.iniPath] { return ReadCdripIni(path); };
    ini_ = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
    for (const QString& line : ini_.nonsense) NoteInLog(tr("cdrip.ini: not understood: ") + line);
    LoadWriter();
  } catch (const Failure& failure) {
    NoteInLog(tr("cdrip.ini cannot be read: ") + QString::fromUtf8(failure.what()));
  }
  services_.shelf->Refresh();
  opened_ = true;
  FollowShelf();
}

void Ripper::FollowShelf() {
  if (!opened_ || Busy()) return;
  const auto& places = services_.shelf->Places();
  if (!services_.shelf->Holds(place_)) {
    const QString first = places.empty() ? QString() : places.front().path;
    const QString named = services_.shelf->Holds(ini_.device) ? ini_.device : first;
    const QString added = services_.shelf->LastAdded();
    Choose(added.isEmpty() ? named : added);
  }
  Q_EMIT Changed();
}

void Ripper::Choose(const QString& place) {
  if (Busy() || (place == place_ && !place.isEmpty())) return;
  place_ = place;
  trayOpen_ = false;
  Reload();
}

void Ripper::Reload() {
  if (Busy()) return;
  rows_.Clear();
  toc_ = {};
  if (place_.isEmpty()) {
    load_.Cancel();
    Show(QStringLiteral("No CD Selected"));
    return;
  }
  load_ = RunLoad();
  Q_EMIT Changed();
}

Job<> Ripper::RunLoad() {
  words_ = tr("Reading the disc...");
  const QString place = place_;
  QString words;
  try {
    const auto read = [drives = services_.shelf->Drives(), place] {
      return drives->Open(place, std::make_shared<DriveBeat>())->ReadToc();
    };
    toc_ = co_await services_.shelf->Calls().Do(place, read);
    trayOpen_ = false;
    rows_.Fill(toc_, FFormat());
    album_ = toc_.title;
    const int data = static_cast<int>(toc_.tracks.size()) - toc_.AudioTracks();
    words = toc_.AudioTracks() == 0
                ? tr("The Disc Holds No Sound")
                : Counted(toc_.AudioTracks(), tr("track"), tr("tracks")) + QStringLiteral(", ") +
                      MinutesSeconds(static_cast<double>(toc_.End()) / kCdSectorsPerSecond);
    if (toc_.Hidden())
      words += tr(", %1 hidden before track 1").arg(MinutesSeconds(toc_.Hidden()->Seconds()));
    if (data > 0) words += tr(", left out: ") + Counted(data, tr("track of data"), tr("tracks of data"));
  } catch (const DriveFailure& failure) {
    words = failure.What() == DriveFailure::Kind::NoDisc ? QStringLiteral("No CD In Drive")
                                                         : QString::fromUtf8(failure.what());
  } catch (...) {
    words = tr("The disc could not be read.");
    basHandleError(QStringLiteral(" cdrip"), words);
  }
  words_ = words;
  // The job is still running here: who looks at it hears of its end with the loop's next turn.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

QString Ripper::Title() const {
  return services_.title +
         QStringLiteral(" CD Backup.  (WARNING - IN SOME COUNTRIES, COPYING A CD's MAY BE ILEGAL)");
}

void Ripper::RefuseClose() {
  services_.prompter.Tell({QStringLiteral("Please Cancel From Rip Progress First !"), {}});
}

QString RipPresetWords(const EncodingPresets& presets) {
  const auto& all = EncodingLists::kPresets;
  const auto known = std::find_if(all.begin(), all.end(),
                                  [&presets](const auto& each) { return each.number == presets.preset; });
  const QString name = known == all.end() ? QString::number(presets.preset) : QString::fromUtf8(known->words);
  return QStringLiteral(" Current Preset : ") + name +
         (known == all.end() ? QStringLiteral(" (Preset)") : QStringLiteral(" (Active)")) +
         QStringLiteral(" Bitrate : ") + QString::number(presets.bitRate) + QStringLiteral(" Sample Rate ") +
         QString::number(presets.sampleRate) + QStringLiteral(" Vbr Quality ") +
         QString::number(presets.vbrQuality) + QStringLiteral(" Vbr Enabled ") +
         (presets.vbr ? QStringLiteral("Yes") : QStringLiteral("No"));
}

void Ripper::SetAlbum(const QString& album) {
  if (album_ == album) return;
  album_ = album;
  Q_EMIT Changed();
}

void Ripper::SetFFormat(int fFormat) {
  services_.settings.Set(setting::RipFFormat, fFormat);
  Q_EMIT Changed();
}

EncodingPresets Ripper::Presets() const {
  return services_.settings.Get(setting::Presets).value_or(EncodingPresets{});
}

QString Ripper::WhyNoStart() const {
  if (Busy() || start_.Running()) return tr("A rip is under way");
  if (place_.isEmpty()) return QStringLiteral("No CD Selected");
  if (Reading()) return tr("The disc is being read");
  if (rows_.Count() == 0) return words_;
  if (services_.shelf->Playing(place_)) return tr("The CD player plays this disc: stop it first");
  return {};
}

QString Ripper::WhyNoTray() const {
  if (Busy()) return tr("A rip is under way");
  if (place_.isEmpty()) return QStringLiteral("No CD Selected");
  if (services_.shelf->Playing(place_)) return tr("The CD player plays this disc: stop it first");
  return {};
}

void Ripper::Start() {
  if (WhyNoStart().isEmpty()) start_ = RunStart();
}

Job<bool> Ripper::Ask(QString text, Buttons buttons, QString title) {
  Prompt question;
  question.text = std::move(text);
  question.title = std::move(title);
  question.buttons = buttons;
  question.icon = buttons == Buttons::Ok ? PromptIcon::Exclamation : PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes || answer == Answer::Ok;
}

Job<> Ripper::RunStart() {
  try {
    const QString none = QStringLiteral("Please Select Some Tracks To Rip !");
    QString refusal = rows_.Ticked().empty() ? none : GridError(rows_);
    if (refusal.isEmpty() && writer_.make == nullptr) refusal = tr("There is no writer for the files.");
    if (refusal.isEmpty()) refusal = Presets().WhyInvalid();
    if (!refusal.isEmpty()) {
      co_await Ask(refusal, Buttons::Ok);
      co_return;
    }
    if (const QString question = DefaultsQuestion(rows_, services_.title); !question.isEmpty()) {
      const bool insert = co_await Ask(question, Buttons::YesNo);
      // A file without an artist would lie where nobody looks for waiting files: the operator names him.
      if (!insert) co_return;
      rows_.InsertDefaults();
    }
    if (AnyUnconventional(rows_, FFormat())) {
      const QString question = QStringLiteral(
          "1 or More Track Names Are UnConventional !(Not Artist Name - Track Title)\r\n"
          "Continue With Track Rip ?");
      const bool go = co_await Ask(question, Buttons::YesNo);
      if (!go) co_return;
    }
    if (album_.trimmed().isEmpty()) {
      co_await Ask(QStringLiteral("You Have not Specified An Album For Your Selections !"), Buttons::Ok);
      SetAlbum(QStringLiteral("Unknown"));
    }
    const bool go = co_await CheckDatabase();
    if (!go) co_return;
    if (rows_.Ticked().empty()) {
      co_await Ask(none, Buttons::Ok);
      co_return;
    }
    run_.Start(Order());
  } catch (...) {
    basHandleError(QStringLiteral(" cdrip"), tr("The rip could not be begun."));
  }
}

Job<bool> Ripper::CheckDatabase() {
  const auto read = [paths = services_.paths] { return KnownNames::Read(paths); };
  const KnownNames known = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
  const QString question = RipDbCheck(rows_, known, FFormat(), writer_.ending);
  if (question.isEmpty()) co_return true;
  const bool go = co_await Ask(question, Buttons::OkCancel, QStringLiteral("Track Ripper"));
  co_return go;
}

RipOrder Ripper::Order() {
  RipOrder order;
  order.place = place_;
  order.toc = toc_;
  for (const int row : rows_.Ticked()) order.tracks.push_back({row, rows_.Row(row)});
  order.album = album_.trimmed();
  order.fFormat = FFormat();
  order.how = ini_;
  order.presets = Presets();
  order.writer = writer_;
  order.utility = services_.paths(Paths::Utility);
  return order;
}

void Ripper::TellEnd(bool completed) {
  if (!completed) return;
  Prompt message;
  message.text = services_.title + QStringLiteral(" Has Completed Ripping your Selections ");
  message.icon = PromptIcon::Information;
  if (run_.Unsure() > 0) {
    message.text +=
        QStringLiteral("\r\n") +
        tr("%1 Of The Disc Could Not Be Read For Sure : Listen To The Tracks, Their Rows Tell Which.")
            .arg(Counted(run_.Unsure(), tr("Sector"), tr("Sectors")));
    message.icon = PromptIcon::Exclamation;
  }
  services_.prompter.Tell(message);
}

QString Ripper::WordsOf(int row) const {
  if (row < 0 || row >= rows_.Count()) return {};
  const cTrack& track = rows_.Row(row);
  QStringList words;
  if (track.mark == RipMark::InDatabase)
    words << tr(
        "Yellow: a track of this name is in the main data base; the transfer will ask whether to replace "
        "it.");
  if (track.mark == RipMark::InUtility)
    words << tr("Red: a track of this name waits in the utilities folder. Rename this one to rip it.");
  if (track.mark == RipMark::Done) words << tr("Ripped: ") + track.words + QLatin1Char('.');
  if (track.track.preEmphasis)
    words << tr("Recorded with pre-emphasis: it sounds too bright in players that do not know of it.");
  if (track.track.number == 0) words << tr("Hidden before track 1.");
  words << tr("File: ") + track.FileName(album_, FFormat()) + writer_.ending;
  return words.join(QLatin1Char(' '));
}

void Ripper::EjectOrClose() {
  if (WhyNoTray().isEmpty() && !tray_.Running()) tray_ = RunTray();
}

Job<> Ripper::RunTray() {
  const QString place = place_;
  const bool close = trayOpen_;
  try {
    if (close) {
      co_await services_.shelf->CloseTray(place);
    } else {
      load_.Cancel();
      co_await services_.shelf->Eject(place);
    }
  } catch (const Failure& failure) {
    services_.prompter.Tell({QString::fromUtf8(failure.what()), {}});
    co_return;
  }
  if (place != place_) co_return;
  trayOpen_ = !close;
  if (close) {
    Reload();
  } else {
    rows_.Clear();
    Show(QStringLiteral("No CD In Drive"));
  }
}

}  // namespace kelvo

#include "console/recorder/ProgrammeRecorder.h"

#include "platform/ErrorLog.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" recorder");
const QString kWav = QStringLiteral("WAV");
const QString kFlac = QStringLiteral("FLAC");
const QString kArtistEnds = QStringLiteral(" - ");

constexpr Nanoseconds kBeat = 500ms;
/// A disk that has taken nothing for so long is worth a warning.
constexpr Nanoseconds kBearable = 2s;
/// A player that was told to start may have begun before that was noted; what it says of an earlier start is
/// older than this.
constexpr FrameIndex kNotedWithin = kEngineRate / 10;
/// A track that is started again so near to its beginning is a title of its own, seconds.
constexpr double kBeginning = 1;

}  // namespace

ProgrammeRecorder::ProgrammeRecorder(Services services)
    : services_(std::move(services)), recorder_(services_.loop) {
  connect(&recorder_, &Recorder::Changed, this, &ProgrammeRecorder::Changed);
  connect(&recorder_, &Recorder::Ended, this, &ProgrammeRecorder::Ended);
  connect(&services_.decks, &DeckEngine::Changed, this, &ProgrammeRecorder::FollowDecks);
  services_.settings.Listen(setting::RecordFolder, this, [this](const QString&) {
    folderLeft_.reset();
    LookAtSpace();
    Q_EMIT FolderChanged();
    Q_EMIT Changed();
  });
  services_.settings.Listen(setting::RecordFormat, this, [this](const QString&) { Q_EMIT Changed(); });
}

ProgrammeRecorder::~ProgrammeRecorder() {
  recorder_.disconnect(this);
}

ProgrammeRecorder::State ProgrammeRecorder::Now() const {
  if (starting_) return State::Starting;
  switch (recorder_.Now()) {
    case Recorder::State::Recording:
      return State::Recording;
    case Recorder::State::Closing:
      return State::Closing;
    case Recorder::State::Idle:
      break;
  }
  return State::Idle;
}

QString ProgrammeRecorder::Folder() const {
  const QString chosen = services_.settings.Get(setting::RecordFolder);
  return chosen.isEmpty() ? services_.home : chosen;
}

RecordingFile::Kind ProgrammeRecorder::Format() const {
  const bool wav = services_.settings.Get(setting::RecordFormat).compare(kWav, Qt::CaseInsensitive) == 0;
  return wav ? RecordingFile::Kind::Wav : RecordingFile::Kind::Flac;
}

void ProgrammeRecorder::SetFormat(RecordingFile::Kind kind) {
  services_.settings.Set(setting::RecordFormat, kind == RecordingFile::Kind::Wav ? kWav : kFlac);
}

void ProgrammeRecorder::ChooseFolder() {
  if (!choose_.Running()) choose_ = RunChoose();
}

Job<> ProgrammeRecorder::RunChoose() {
  const QString title = tr("Folder Of The Recordings");
  const std::optional<QString> folder = co_await services_.prompter.PickFolder(title, Folder());
  if (folder) services_.settings.Set(setting::RecordFolder, *folder);
}

void ProgrammeRecorder::Start() {
  if (Runs()) return;
  trouble_.clear();
  starting_ = true;
  Q_EMIT Changed();
  start_ = RunStart();
}

Job<> ProgrammeRecorder::RunStart() {
  std::exception_ptr failure;
  std::optional<RecordingPlace> place;
  const RecordingFile::Kind kind = Format();
  const QString folder = Folder();
  const auto look = [folder, now = services_.loop.Now(), kind] {
    return PlaceForRecording(folder, now, kind);
  };
  try {
    place = co_await services_.disks.Look(folder, look);
    if (!place) throw Failure(tr("The disk of %1 does not answer.").arg(folder), 0, folder);
    tap_ = services_.audio.TapOf();
    if (!tap_) throw Failure(tr("There is no sound to record."));
  } catch (...) {
    failure = std::current_exception();
  }
  starting_ = false;
  if (failure) {
    Tell(tr("The recording could not be started."), failure);
  } else {
    Begin(*place, kind);
  }
}

void ProgrammeRecorder::Begin(const RecordingPlace& place, RecordingFile::Kind kind) {
  if (place.freeBytes >= 0) folderLeft_ = place.freeBytes;
  aired_ = {};
  recorder_.Start(tap_, place.path, kind);
  NoteWhatPlays();
  beat_ = services_.loop.Every(kBeat, [this] { Q_EMIT Changed(); });
  NoteInLog(QStringLiteral("Recording into ") + place.path);
}

void ProgrammeRecorder::Stop() {
  if (std::exchange(starting_, false)) {
    start_.Cancel();
    Q_EMIT Changed();
  }
  recorder_.Stop();
}

void ProgrammeRecorder::Ended(const QString& error) {
  beat_.Stop();
  NoteInLog(QStringLiteral("Recorded %1 of %2").arg(HoursMinutesSeconds(Int(Seconds())), Path()));
  if (!error.isEmpty()) {
    const auto failure = std::make_exception_ptr(Failure(error, 0, Path()));
    Tell(Seconds() > 0 ? tr("The recording has ended by itself after %1; what was recorded is kept.")
                             .arg(HoursMinutesSeconds(Int(Seconds())))
                       : tr("The recording could not be started."),
         failure);
  }
  LookAtSpace();
  Q_EMIT FolderChanged();
}

void ProgrammeRecorder::Tell(const QString& what, const std::exception_ptr& failure) {
  trouble_ = what + QLatin1Char(' ') + ErrorLog::Describe(failure);
  basHandleError(kTag, failure, what);
  Q_EMIT Changed();
}

void ProgrammeRecorder::AcceptTrouble() {
  if (trouble_.isEmpty()) return;
  trouble_.clear();
  Q_EMIT Changed();
}

void ProgrammeRecorder::Press() {
  if (!Runs()) {
    Start();
  } else if (!press_.Running()) {
    press_ = RunPress();
  }
}

Job<> ProgrammeRecorder::RunPress() {
  Prompt question;
  question.text = tr("Stop The Recording ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  question.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) Stop();
}

Job<bool> ProgrammeRecorder::MayEnd() {
  if (!Runs()) co_return true;
  Prompt question;
  question.text = tr("The Recording Still Runs !\r\nStop It And Quit ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Exclamation;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes;
}

std::optional<std::int64_t> ProgrammeRecorder::BytesLeft() const {
  const bool records = recorder_.Now() != Recorder::State::Idle;
  const std::optional<std::int64_t> left = records ? recorder_.BytesLeft() : std::nullopt;
  return left ? left : folderLeft_;
}

void ProgrammeRecorder::LookAtSpace() {
  if (!look_.Running()) look_ = RunLook();
}

Job<> ProgrammeRecorder::RunLook() {
  const QString folder = Folder();
  const auto look = [folder] { return FreeBytes(folder); };
  const std::optional<std::int64_t> left = co_await services_.disks.Look(folder, look);
  // A folder that was chosen meanwhile is looked at anew.
  if (folder == Folder()) {
    folderLeft_ = left && *left >= 0 ? left : std::nullopt;
    Q_EMIT Changed();
  }
}

QString ProgrammeRecorder::Warning() const {
  const State now = Now();
  if (now != State::Recording && now != State::Closing) return {};
  if (recorder_.StuckFor() >= kBearable) return tr("The disk of the recording doesn't answer");
  if (SpaceIsLow()) return tr("Only %1 left for the recording").arg(SizeText(*BytesLeft()));
  if (recorder_.SecondsLost() > 0)
    return tr("The disk is too slow: %1 s of the recording are silent")
        .arg(recorder_.SecondsLost(), 0, 'f', 1);
  return {};
}

void ProgrammeRecorder::NoteWhatPlays() {
  const DeckEngine& decks = services_.decks;
  std::optional<Deck> heard = decks.OnAir();
  if (heard && !decks.Record(*heard).Live() && decks.Record(Other(*heard)).Live()) heard = Other(*heard);
  if (heard) {
    // What plays already begins with the recording; what was started this moment is waited for.
    const MediaPlayer& player = services_.decks.Player(*heard);
    Note(Of(*heard), player.OnAirFrom() ? nullptr : &player);
  } else if (services_.jingles.Plays()) {
    BiteStarted();
  }
}

void ProgrammeRecorder::DeckStarted(Deck deck) {
  const MediaPlayer& player = services_.decks.Player(deck);
  const bool goesOn = aired_ == Of(deck) && player.CurrentPosition() >= kBeginning;
  if (!goesOn) Note(Of(deck), &player);
}

void ProgrammeRecorder::DeckBroughtBack(Deck deck) {
  if (aired_ != Of(deck)) Note(Of(deck), nullptr);
}

void ProgrammeRecorder::BiteStarted() {
  for (const Deck deck : kDecks) {
    if (services_.decks.Record(deck).Live()) return;
  }
  Note({std::nullopt, services_.jingles.FilePath()}, &services_.jingles.Player());
}

void ProgrammeRecorder::FollowDecks() {
  if (!aired_.deck || services_.decks.Record(*aired_.deck).State == DeckState::Playing) return;
  const Deck other = Other(*aired_.deck);
  if (services_.decks.Record(other).Live()) Note(Of(other), nullptr);
}

void ProgrammeRecorder::Note(Aired aired, const MediaPlayer* player) {
  if (recorder_.Now() != Recorder::State::Recording) return;
  const QString name = BaseName(QFileInfo(aired.path).fileName());
  const qsizetype cut = name.indexOf(kArtistEnds);
  const QString performer = cut < 0 ? QString() : name.left(cut);
  const QString title = cut < 0 ? name : name.mid(cut + kArtistEnds.size());
  std::function<std::optional<FrameIndex>()> from;
  if (player) {
    from = [player, earliest = tap_->Settled() - kNotedWithin]() -> std::optional<FrameIndex> {
      const std::optional<FrameIndex> began = player->OnAirFrom();
      return began && *began >= earliest ? began : std::nullopt;
    };
  }
  recorder_.NoteTitle(performer, title, std::move(from));
  aired_ = std::move(aired);
}

}  // namespace kelvo

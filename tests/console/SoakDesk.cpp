#include "console/SoakDesk.h"

#include "console/decks/DeckSettings.h"
#include "platform/SystemFacts.h"

#include <QDir>
#include <QFileInfo>

#include <cmath>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kTitle = u"Kelvo"_s;
const QString kAway = u" away"_s;

}  // namespace

SoakDesk::SoakDesk(const QString& folder, const SoakSettings& settings, std::uint64_t seed)
    : folder_(folder),
      paths_(Paths::Below(folder)),
      seed_(seed),
      log_(loop_, nobody_, folder + u"/kelvo.log"_s),
      settings_(loop_, folder + u"/settings.ini"_s) {
  audio_.Hangs = [this](const QString& path) { return loop_.Hangs(path); };
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths_(slot));
  const ProgramSettings store(settings_, kTitle);
  store.Set(setting::JukeLag, settings.jukeLag);
  store.Set(setting::PrevSecs, settings.prevSecs);
  store.Set(setting::PanFadeBias, settings.panFadeBias);
  // A stream that ends while the desk is switched off would change the lengths that are known.
  store.Set(setting::FixTrackDurErrors, false);
  store.Set(setting::PlaySettings, PlaySettings{settings.fadeSpeed, settings.delta, 0});
}

void SoakDesk::AddTrack(const QString& name, double stored, double length, const QByteArray& info) {
  SoakTrack track;
  track.path = paths_(Paths::Music) + u'/' + name + u".mp3"_s;
  track.infoPath = paths_(Paths::Info) + u'/' + name + u".kif"_s;
  track.stored = stored;
  track.length = length;
  Write(track.path, "sound");
  Write(track.infoPath, info);
  audio_.SetDuration(track.path, length);
  byPath_[track.path] = tracks_.size();
  tracks_.push_back(track);
}

void SoakDesk::Open(int rows) {
  desk_.emplace(Console::Services{.loop = loop_,
                                  .prompter = nobody_,
                                  .audio = audio_,
                                  .settings = settings_,
                                  .catalogue = catalogue_,
                                  .paths = paths_,
                                  .title = kTitle,
                                  .aboutLine = u"About Kelvo"_s,
                                  .programFolder = folder_,
                                  // No session log: it is flushed to the disk at each start.
                                  .seed = seed_});
  // The machine's memory is no part of the evening.
  desk_->Status().hooks.Memory = [] { return MemoryStatus(); };
  desk_->Activate();
  loop_.RunUntil([this] { return desk_->CatalogueLoaded(); });
  for (int row = 1; row <= catalogue_.LastTrack(); ++row) {
    mrefs_[catalogue_.TrackPaths(ToMref(row))] = ToMref(row);
  }
  for (int row = 0; row < rows; ++row) AddRow(tracks_[static_cast<std::size_t>(row)]);
  loop_.RunUntil([this] { return !adds_.Running(); });
  openedAt_ = loop_.Elapsed();
}

const SoakTrack* SoakDesk::Find(const QString& path) const {
  const auto found = byPath_.constFind(path);
  return found == byPath_.constEnd() ? nullptr : &tracks_[*found];
}

double SoakDesk::Now() const {
  return std::chrono::duration<double>(loop_.Elapsed() - openedAt_).count();
}

DeskSight SoakDesk::Look() {
  DeskSight sight;
  sight.at = Now();
  for (const Deck deck : kDecks) {
    const MediaPlayer& player = desk_->Decks().Player(deck);
    const DeckRecord& record = desk_->Decks().Record(deck);
    DeckSight& seen = sight.decks[deck];
    seen.path = player.FileName();
    seen.playing = player.State() == PlayState::Playing;
    seen.hasSound = player.HasSound();
    seen.position = player.CurrentPosition();
    seen.length = player.Duration();
    seen.loss = -player.Volume() / 2;
    seen.loaded = record.State == DeckState::Loaded && !record.Loading;
    seen.loading = record.Loading;
  }
  sight.slider = desk_->State().CrossPan;
  sight.walking = desk_->State().TransitionActive;
  sight.on = desk_->State().AutoPlayOn;
  sight.pause = desk_->Automatic().PauseAtEnd();
  sight.deviceLost = audio_.DefaultOutputStatus().kind != OutputStatus::Kind::OnAir;
  return sight;
}

DeskPlan SoakDesk::Plan() {
  const TransitionRecord& fade = desk_->Fades().Record();
  return {desk_->Automatic().AutoDelta(), static_cast<int>(desk_->Automatic().AutoTransition()),
          desk_->Fades().FadeSpeed(), static_cast<int>(fade.Kind), fade.TransitionDeck};
}

void SoakDesk::SwitchOn(AutoMode mode, bool random) {
  AutoPlay& play = desk_->Automatic();
  play.SetMode(mode);
  play.SetRandom(random);
  play.ToggleAutoPlay();
}

void SoakDesk::MoveSlider(int to) {
  desk_->Fades().GrabSlider();
  desk_->Fades().MoveSlider(to);
}

void SoakDesk::SetSpeaking(int depthSlider, int speedSlider) {
  desk_->Speak().SetDepthSlider(depthSlider);
  desk_->Speak().SetSpeedSlider(speedSlider);
}

void SoakDesk::AddRow(const SoakTrack& track) {
  adds_.Add(desk_->Queue().AddTracks({mrefs_.value(track.path)}));
}

QStringList SoakDesk::RowPaths() {
  QStringList paths;
  const PlayQueue& queue = desk_->Queue();
  for (int row = 1; row <= queue.Count(); ++row) paths.append(catalogue_.TrackPaths(queue.Row(row).track));
  return paths;
}

void SoakDesk::Write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (file.open(QIODevice::WriteOnly)) file.write(bytes);
}

QString SoakDesk::PlaceOf(const SoakTrack& track) const {
  const QFileInfo file(track.path);
  const QString away = file.path() + kAway;
  return QDir(away).exists() ? away + u'/' + file.fileName() : track.path;
}

void SoakDesk::TakeMusicAway() {
  QDir().rename(paths_(Paths::Music), paths_(Paths::Music) + kAway);
}

void SoakDesk::BringMusicBack() {
  QDir().rename(paths_(Paths::Music) + kAway, paths_(Paths::Music));
}

void SoakDesk::SetHanging(const QSet<QString>& places) {
  for (const QString& place : std::exchange(hanging_, places)) loop_.AnswerAgain(place);
  for (const QString& place : hanging_) loop_.HangDisk(place);
}

void SoakDesk::SetDeviceLost(bool lost) {
  const auto kind = lost ? OutputStatus::Kind::OnSilentClock : OutputStatus::Kind::OnAir;
  audio_.SetDefaultOutputStatus({kind, u"Main"_s});
}

void SoakDesk::DelayBeats(int seconds) {
  desk_->Status().Stop();
  beatsBack_ = loop_.After(std::chrono::seconds(seconds), [this] { desk_->Status().Start(); });
}

QString SoakDesk::Impossible() {
  const AutoPlay& play = desk_->Automatic();
  if (desk_->State().GroupPlayOn) return u"a group runs"_s;
  if (play.AutoTransition() > TransitionKind::Pan) return u"no such transition"_s;
  if (desk_->Fades().FadeSpeed() < 0 || desk_->Fades().FadeSpeed() > 50) return u"no such fade speed"_s;
  if (std::abs(desk_->State().CrossPan) > 200) return u"the slider is beyond its end"_s;
  const int selected = desk_->Queue().Selected();
  if (selected < 0 || selected > desk_->Queue().Count()) return u"no such row"_s;
  for (const Deck deck : kDecks) {
    const DeckRecord& record = desk_->Decks().Record(deck);
    const MediaPlayer& player = desk_->Decks().Player(deck);
    if (record.Loss < 0 || record.Loss > kMostLoss) return u"a level is beyond its end"_s;
    if (record.RemainSeconds < 0) return u"less than nothing is left"_s;
    if (!(record.Position >= 0 && std::isfinite(record.Duration))) return u"no such position"_s;
    const bool runs = player.State() == PlayState::Playing;
    if (record.State == DeckState::Loaded && runs) return u"a loaded deck runs"_s;
    if (record.State == DeckState::Empty && !player.FileName().isEmpty())
      return u"an empty deck holds a file"_s;
    if (record.State == DeckState::Empty || record.Loading) continue;
    if (catalogue_.TrackPaths(record.CatalogueIndex) != record.FilePath)
      return u"a deck's track is another"_s;
    if (player.FileName() != record.FilePath) return u"a deck's file is another"_s;
  }
  return {};
}

}  // namespace kelvo::testing

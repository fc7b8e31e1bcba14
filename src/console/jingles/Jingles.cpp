#include "console/jingles/Jingles.h"

#include "database/TrackInfo.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" jingles");

bool Before(const SoundBite& one, const SoundBite& other) {
  return one.name.compare(other.name, Qt::CaseInsensitive) < 0;
}

QString NameIn(const QString& path) {
  return BaseName(QFileInfo(path).fileName());
}

}  // namespace

Jingles::Jingles(Services services) : services_(std::move(services)) {
  for (std::size_t source = 0; source < sources_.size(); ++source) {
    sources_[source].player = services_.audio.MakePlayer();
    sources_[source].player->OnEndOfStream = [this, source] { Ended(source); };
  }
  FollowCatalogue();
  ListAnew();
}

void Jingles::FollowCatalogue() {
  services_.catalogue.Listen(
      this, [this](const CatalogueReplaced&) { ListAnew(); },
      [this](const JingleChanged& change) {
        if (change.before.isEmpty()) {
          AddBite(change.path);
        } else {
          RenameBite(change.before, change.path);
        }
      });
}

void Jingles::ListAnew() {
  const QString selected = selected_ < 0 ? QString() : bites_[selected_].name;
  std::vector<SoundBite> bites;
  const Catalogue& catalogue = services_.catalogue;
  for (qsizetype bite = 0; bite < catalogue.SoundBiteNames.size(); ++bite)
    bites.push_back({catalogue.SoundBiteNames[bite], catalogue.SoundBitePaths[bite]});
  std::stable_sort(bites.begin(), bites.end(), Before);
  bites_.Replace(std::move(bites));
  SelectRow(RowOf(selected));
  for (std::size_t button = 0; button < kBankButtons; ++button) Prepare(button);
}

void Jingles::AddBite(const QString& path) {
  const SoundBite bite{NameIn(path), path};
  const auto place = std::upper_bound(bites_.All().begin(), bites_.All().end(), bite, Before);
  const auto row = static_cast<int>(place - bites_.All().begin());
  bites_.Insert(row, bite);
  if (selected_ >= row) SelectRow(selected_ + 1);
  for (std::size_t button = 0; button < kBankButtons; ++button) {
    if (bank_[button] == bite.name) Prepare(button);
  }
}

void Jingles::RenameBite(const QString& path, const QString& newPath) {
  const auto& all = bites_.All();
  const auto found = std::find_if(all.begin(), all.end(), [&](const SoundBite& b) { return b.path == path; });
  if (found == all.end()) return;
  const auto row = static_cast<int>(found - all.begin());
  const bool wasSelected = selected_ == row;
  bites_.Remove(row);
  if (selected_ >= row) SelectRow(wasSelected ? -1 : selected_ - 1);
  if (newPath.isEmpty()) {
    Q_EMIT Changed();
    return;
  }
  const QString name = NameIn(newPath);
  const QString before = NameIn(path);
  const bool banked = std::find(bank_.begin(), bank_.end(), before) != bank_.end();
  std::replace(bank_.begin(), bank_.end(), before, name);
  AddBite(newPath);
  if (wasSelected) SelectRow(RowOf(name));
  if (banked && OnAssigned) OnAssigned();
  Q_EMIT Changed();
}

int Jingles::RowOf(const QString& name) const {
  const auto& all = bites_.All();
  const auto found = std::find_if(all.begin(), all.end(), [&](const SoundBite& b) { return b.name == name; });
  return found == all.end() || name.isEmpty() ? -1 : static_cast<int>(found - all.begin());
}

void Jingles::SelectRow(int row) {
  if (selected_ == row) return;
  selected_ = row;
  Q_EMIT SelectionChanged();
}

void Jingles::Select(int row) {
  if (row < 0 || row >= bites_.Count()) return;
  SelectRow(row);
  const QString path = bites_[row].path;
  const Source& list = sources_[kList];
  if (list.open.Running() ? list.wanted == path : list.player->FileName() == path && active_ == kList) return;
  Open(kList, path, false);
}

void Jingles::Play(int row) {
  if (row < 0 || row >= bites_.Count()) return;
  SelectRow(row);
  const QString path = bites_[row].path;
  if (!sources_[kList].open.Running() && sources_[kList].player->FileName() == path) {
    Start(kList);
  } else {
    Open(kList, path, true);
  }
}

void Jingles::Stop() {
  for (Source& source : sources_) source.starts = false;
  if (state_ != DeckState::Playing) return;
  sources_[active_].player->Stop();
  Ended(active_);
}

void Jingles::SetBankName(int button, const QString& name) {
  bank_[At(button)] = name;
  Prepare(At(button));
  Q_EMIT Changed();
}

void Jingles::BeginAssign() {
  if (selected_ < 0 || assignPending_) return;
  assignPending_ = true;
  Q_EMIT Changed();
}

void Jingles::PressBank(int button) {
  if (std::exchange(assignPending_, false)) {
    Assign(button, selected_);
    Q_EMIT Changed();
    return;
  }
  const int row = RowOf(bank_[At(button)]);
  if (row < 0) return;
  if (SoundingButton() == button) {
    Stop();
    return;
  }
  SelectRow(row);
  const QString path = bites_[row].path;
  const Source& source = sources_[At(button)];
  if (!source.open.Running() && source.player->FileName() == path) {
    Start(At(button));
  } else {
    Open(At(button), path, true);
  }
}

void Jingles::Assign(int button, int row) {
  if (row < 0 || row >= bites_.Count()) return;
  SetBankName(button, bites_[row].name);
  if (OnAssigned) OnAssigned();
}

void Jingles::Prepare(std::size_t button) {
  if (active_ == button && Plays()) return;
  const int row = RowOf(bank_[button]);
  if (row >= 0 && sources_[button].player->FileName() != bites_[row].path)
    Open(button, bites_[row].path, false);
}

void Jingles::Open(std::size_t source, const QString& path, bool starts) {
  Source& at = sources_[source];
  if (at.open.Running() && at.wanted == path) {
    at.starts = at.starts || starts;
    return;
  }
  at.wanted = path;
  at.starts = starts;
  at.open = RunOpen(source);
}

Job<> Jingles::RunOpen(std::size_t source) {
  Source& at = sources_[source];
  const QString path = at.wanted;
  try {
    const OpenResult result = co_await at.player->Open(path);
    if (result.kind == OpenResult::Kind::Superseded) co_return;
    if (!result.Ok()) {
      NoteInLog(QStringLiteral("The sound bite %1 cannot be played: %2").arg(path, result.error));
      Tell(tr("%1 can't be played: %2").arg(NameIn(path), result.error));
      co_return;
    }
    at.player->SetVolume(-2 * slider_);
    if (at.starts) {
      Start(source);
    } else if (source == kList) {
      TakeOver(source, DeckState::Loaded);
    }
  } catch (...) {
    basHandleError(kTag, tr("The sound bite could not be opened."));
  }
}

void Jingles::TakeOver(std::size_t source, DeckState state) {
  if (active_ != source) {
    const std::size_t before = std::exchange(active_, source);
    sources_[before].player->Stop();
    sources_[before].player->SetCurrentPosition(0);
  }
  const MediaPlayer& player = *sources_[source].player;
  path_ = player.FileName();
  title_ = NameIn(path_);
  duration_ = player.Duration();
  cue_ = 0;
  info_.clear();
  state_ = state;
  beat_ = state == DeckState::Playing ? services_.loop.Every(100ms, [this] { Q_EMIT Changed(); }) : Timer();
  Q_EMIT Changed();
}

void Jingles::Start(std::size_t source) {
  MediaPlayer& player = *sources_[source].player;
  // One that waited may still be opening its next bite: it was overtaken by this press.
  for (Source& each : sources_) each.starts = false;
  const double from = source == active_ && player.FileName() == path_ ? cue_ : 0;
  TakeOver(source, DeckState::Playing);
  // A seek would make it wait for its sound, which lies ready where the last one left it.
  if (player.CurrentPosition() != from) player.SetCurrentPosition(from);
  player.Play();
  if (OnStarted) OnStarted();
}

void Jingles::Ended(std::size_t source) {
  sources_[source].player->SetCurrentPosition(0);
  if (source != active_) return;
  state_ = DeckState::Done;
  beat_ = Timer();
  if (source != kList) Prepare(source);
  Q_EMIT Changed();
}

bool Jingles::Plays() const {
  return sources_[active_].player->State() == PlayState::Playing;
}

int Jingles::SoundingButton() const {
  return active_ != kList && state_ == DeckState::Playing ? static_cast<int>(active_) : -1;
}

double Jingles::Position() const {
  return state_ == DeckState::Playing ? sources_[active_].player->CurrentPosition() : 0;
}

void Jingles::SetPosition(double seconds) {
  if (state_ == DeckState::Playing) {
    sources_[active_].player->SetCurrentPosition(seconds);
  } else {
    cue_ = seconds;
  }
  Q_EMIT Changed();
}

void Jingles::SetSlider(int value) {
  slider_ = std::clamp(value, 0, kMostSlider);
  for (Source& source : sources_) source.player->SetVolume(-2 * slider_);
  Q_EMIT Changed();
}

void Jingles::Tell(const QString& words) {
  info_ = words;
  Q_EMIT Changed();
}

void Jingles::QueueSelected() {
  if (selected_ >= 0) queueing_.Add(RunQueue(bites_[selected_]));
}

Job<> Jingles::RunQueue(SoundBite bite) {
  try {
    const auto refused = [this] {
      return services_.state.GroupPlayOn || (services_.queue.Count() > 0 && services_.queue.Row(1).Locked());
    };
    if (refused()) co_return;
    const QString info = TrackInfoPath(services_.paths, bite.name);
    const auto look = [info] { return !FindFile(info).isEmpty(); };
    const std::optional<bool> isTrack = co_await services_.disks.Look(info, look);
    if (!isTrack) {
      Tell(tr("The database's disk does not answer: %1 was not queued").arg(bite.name));
    } else if (*isTrack) {
      // It would shadow the track.
      Tell(QStringLiteral("Error: Track With Same Name Exists!"));
    } else if (!refused()) {
      QueueEntry entry;
      entry.Tag = services_.queue.Count() + 1;
      entry.title = bite.name;
      entry.path = bite.path;
      entry.soundBite = true;
      entry.note = QStringLiteral("Sound Bite");
      for (QString* text : {&entry.date, &entry.hi, &entry.bpm, &entry.genre}) *text = QStringLiteral("N/A");
      services_.queue.AppendRow(std::move(entry), 0);
      Tell(QString());
    }
  } catch (...) {
    basHandleError(kTag, tr("The sound bite could not be queued."));
  }
}

}  // namespace kelvo

#include "playlists/PlaylistGenerator.h"

#include "platform/ErrorLog.h"
#include "platform/Words.h"
#include "playlists/GeneratorSettings.h"

#include <QPointer>

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

QStringList TextsOf(const RowStore<GenreName>& rows) {
  QStringList names;
  for (const GenreName& each : rows.All()) names.append(each.name);
  return names;
}

}  // namespace

GeneratorWishes GeneratorWishes::Read(const ProgramSettings& settings) {
  GeneratorWishes wishes;
  wishes.seconds = settings.Get(setting::GeneratorSeconds);
  wishes.outline = settings.Get(setting::GeneratorOutline).value_or(TempoOutline());
  wishes.followTempo = settings.Get(setting::GeneratorFollowsTempo);
  wishes.tempoWithin = settings.Get(setting::GeneratorTempoWithin);
  wishes.artistMinutes = settings.Get(setting::GeneratorArtistMinutes);
  wishes.playedHours = settings.Get(setting::GeneratorPlayedHours);
  return wishes;
}

void GeneratorWishes::Write(const ProgramSettings& settings) const {
  settings.Set(setting::GeneratorSeconds, seconds);
  settings.Set(setting::GeneratorOutline, outline);
  settings.Set(setting::GeneratorFollowsTempo, followTempo);
  settings.Set(setting::GeneratorTempoWithin, tempoWithin);
  settings.Set(setting::GeneratorArtistMinutes, artistMinutes);
  settings.Set(setting::GeneratorPlayedHours, playedHours);
}

PlaylistGenerator::PlaylistGenerator(Services services)
    : services_(std::move(services)),
      wishes_(GeneratorWishes::Read(services_.playlists.settings)),
      shelf_(services_.playlists),
      load_(services_.playlists),
      save_(services_.playlists, shelf_, PlaylistMode::SaveSelection) {
  save_.Rows = [this] { return saveRows_; };
  save_.OnName = [this](const QString& name) {
    saveName_ = name;
    Q_EMIT Changed();
  };
  save_.OnProgress = [this](const QString& words, double share) { Say(words, share); };
  connect(&shelf_, &PlaylistShelf::Changed, this, &PlaylistGenerator::Changed);
  ShowGenres();
  FollowCatalogue();
}

PlaylistGenerator::~PlaylistGenerator() {
  if (control_) control_->stop = true;
}

void PlaylistGenerator::ShowGenres() {
  std::vector<GenreName> left;
  for (const QString& name : Tracks().GenreList) {
    const GenreName row{name};
    if (std::find(chosen_.All().begin(), chosen_.All().end(), row) == chosen_.All().end())
      left.push_back(row);
  }
  if (left != genres_.All()) genres_.Replace(std::move(left));
  Q_EMIT Changed();
}

void PlaylistGenerator::Choose(const std::vector<int>& rows) {
  if (Busy()) return;
  std::vector<GenreName> fresh;
  for (const int row : rows) fresh.push_back(genres_[row]);
  chosen_.Append(std::move(fresh));
  ShowGenres();
}

void PlaylistGenerator::GiveBack(const std::vector<int>& rows) {
  if (Busy()) return;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) chosen_.Remove(*row);
  ShowGenres();
}

int PlaylistGenerator::Move(int row, int step) {
  const int to = row + step;
  if (Busy() || row < 0 || row >= chosen_.Count() || to < 0 || to >= chosen_.Count()) return row;
  const GenreName moved = chosen_[row];
  chosen_.Remove(row);
  // Behind the end there is nothing to insert before.
  if (to == chosen_.Count()) {
    chosen_.Append({moved});
  } else {
    chosen_.Insert(to, moved);
  }
  Q_EMIT Changed();
  return to;
}

void PlaylistGenerator::SetWishes(const GeneratorWishes& wishes) {
  if (wishes == wishes_) return;
  wishes_ = wishes;
  Q_EMIT Changed();
}

void PlaylistGenerator::KeepWishes() {
  wishes_.Write(services_.playlists.settings);
}

void PlaylistGenerator::Say(const QString& words, double share) {
  words_ = words;
  share_ = share;
  Q_EMIT Changed();
}

void PlaylistGenerator::Begin(Job<> job, Work kind) {
  kind_ = kind;
  work_ = Guard(std::move(job));
  Q_EMIT Changed();
}

Job<> PlaylistGenerator::Guard(Job<> job) {
  try {
    co_await std::move(job);
  } catch (...) {
    basHandleError(QStringLiteral(" genlist"), tr("The list could not be made."));
  }
  control_.reset();
  words_.clear();
  share_ = 0;
  current_ = -1;
  // At the loop's next turn, when this is over.
  services_.playlists.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void PlaylistGenerator::Stop() {
  stop_ = true;
  if (control_) control_->stop = true;
}

QString PlaylistGenerator::WhyNoStop() const {
  return kind_ == Work::InOnePiece ? tr("What goes into the queue or the store goes there in one piece")
                                   : QString();
}

QString PlaylistGenerator::WhyNot() const {
  if (Busy()) return tr("It is at work: stop it first, or wait");
  return chosen_.Count() == 0 ? tr("No genre is chosen") : QString();
}

void PlaylistGenerator::Generate() {
  if (!WhyNot().isEmpty()) return;
  KeepWishes();
  stop_ = false;
  Begin(RunGenerate());
}

void PlaylistGenerator::Fit() {
  if (!WhyNot().isEmpty()) return;
  KeepWishes();
  stop_ = false;
  Begin(RunFit());
}

Job<> PlaylistGenerator::RunGenerate() {
  const bool whole = co_await MakeList();
  if (whole) TellShort();
}

void PlaylistGenerator::TellShort() {
  if (totalSeconds_ >= wishes_.seconds) return;
  Prompt message;
  message.text = QStringLiteral(
                     " Was unable to find enough tracks to fulfill the Specified Play List Duration\r\n\r\n"
                     "Required Duration: %1 Seconds ! \r\nTotal Track Times Located: %2 Seconds\r\n\r\n"
                     "You May need to define more bpm values and/or add more genres")
                     .arg(wishes_.seconds)
                     .arg(totalSeconds_);
  message.icon = PromptIcon::Information;
  services_.playlists.prompter.Tell(message);
}

Job<> PlaylistGenerator::RunFit() {
  if (!listWhole_ || listed_ != TextsOf(chosen_)) {
    const bool whole = co_await MakeList();
    if (!whole) co_return;
    TellShort();
  }
  co_await MakeSequence();
}

QString PlaylistGenerator::BrokenRules(const SequenceRow& row) {
  QStringList words;
  if (row.pick.tempo) {
    const QString wanted = QString::number(std::lround(row.pick.wantedBpm));
    words.append(row.bpm > 0 ? tr("Tempo, wanted %1").arg(wanted)
                             : tr("Tempo unknown, wanted %1").arg(wanted));
  }
  if (row.pick.artist) words.append(tr("Same artist too soon"));
  if (row.pick.title) words.append(tr("Same title again"));
  return words.join(QStringLiteral("; "));
}

QString PlaylistGenerator::SequenceWords() const {
  if (wantedSeconds_ == 0) return {};
  qint64 total = 0;
  qint64 broken = 0;
  for (const SequenceRow& row : sequence_.All()) {
    total += row.seconds;
    broken += row.pick.BreaksRule() ? 1 : 0;
  }
  const qint64 miss = wantedSeconds_ - total;
  QStringList words{Counted(sequence_.Count(), tr("track"), tr("tracks")), HoursMinutesSeconds(total)};
  if (miss == 0) words.append(tr("to the second"));
  if (miss > 0) words.append(tr("%1 too short").arg(HoursMinutesSeconds(miss)));
  if (miss < 0) words.append(tr("%1 too long").arg(HoursMinutesSeconds(-miss)));
  words.append(broken == 0 ? tr("no rule broken") : tr("rules broken: %1").arg(broken));
  if (leftOut_ > 0) words.append(tr("left out, played: %1").arg(leftOut_));
  if (unknown_ > 0) words.append(tr("left out, of unknown length: %1").arg(unknown_));
  if (outlook_.tracks == sequence_.Count() && outlook_.tracks > 0) {
    const QDateTime end = services_.playlists.loop.Now().addSecs(outlook_.onAir);
    words.append(tr("ends at %1, overlaps counted").arg(end.time().toString(QStringLiteral("HH:mm:ss"))));
  }
  return words.join(QStringLiteral(", "));
}

void PlaylistGenerator::AddToQueue(std::vector<Mref> tracks) {
  if (!Busy() && !tracks.empty()) Begin(RunAdd(std::move(tracks)), Work::InOnePiece);
}

Job<> PlaylistGenerator::RunAdd(std::vector<Mref> tracks) {
  (void)co_await load_.FromTracks(std::move(tracks));
}

void PlaylistGenerator::Save(const QString& name, const std::vector<Mref>& tracks) {
  if (Busy() || tracks.empty()) return;
  constexpr std::size_t kRefusedAnyhow = 1000;
  if (tracks.size() > kRefusedAnyhow) {
    services_.playlists.prompter.Tell(
        {QStringLiteral("Playlists Cannot Contain More Than 50 Tracks, Please Reduce By %1 ! ")
             .arg(tracks.size() - PlaylistSave::kMostFiles),
         {}});
    return;
  }
  saveRows_.clear();
  for (const Mref track : tracks)
    saveRows_.push_back({Tracks().TrackNames[track], Tracks().TrackPaths(track)});
  Begin(save_.Run(name), Work::InOnePiece);
}

void PlaylistGenerator::FollowCatalogue() {
  services_.playlists.catalogue.Listen(
      this,
      [this](const TrackChanged& change) {
        if (!change.fields.testAnyFlags(TrackFields(TrackField::Bpm) | TrackField::Duration)) return;
        const qint64 longer =
            CountedSeconds(Tracks().TrackDurations(change.track)) - CountedSeconds(change.durationBefore);
        for (int row = 0; row < list_.Count(); ++row) {
          if (list_[row].track != change.track) continue;
          totalSeconds_ += longer;
          list_.TellChanged(row, row);
        }
      },
      [this](const TrackRemoved& removed) { TrackWasRemoved(removed); },
      [this](const ReferenceChanged& change) {
        if (change.set != ReferenceSet::Genres) return;
        GenreWasChanged(change);
      },
      [this](const CatalogueReplaced&) {
        stale_ = true;
        list_.TakeAll();
        sequence_.TakeAll();
        listWhole_ = false;
        totalSeconds_ = 0;
        wantedSeconds_ = 0;
        for (int row = chosen_.Count() - 1; row >= 0; --row) {
          if (!Tracks().GenreList.contains(chosen_[row].name)) chosen_.Remove(row);
        }
        ShowGenres();
      });
}

void PlaylistGenerator::GenreWasChanged(const ReferenceChanged& change) {
  for (int row = chosen_.Count() - 1; row >= 0; --row) {
    if (chosen_[row].name != change.before) continue;
    if (change.name.isEmpty()) {
      chosen_.Remove(row);
    } else {
      chosen_.Alter(row, [&change](GenreName& genre) { genre.name = change.name; });
    }
  }
  ShowGenres();
}

void PlaylistGenerator::TrackWasRemoved(const TrackRemoved& removed) {
  stale_ = true;
  for (int row = list_.Count() - 1; row >= 0; --row) {
    const Mref track = list_[row].track;
    if (track == removed.track) {
      totalSeconds_ -= CountedSeconds(removed.duration);
      list_.Remove(row);
    } else if (track > removed.track) {
      list_.AlterUntold(row, [&removed](GeneratedRow& each) { each.track = removed.Renumbered(each.track); });
    }
  }
  for (int row = sequence_.Count() - 1; row >= 0; --row) {
    if (sequence_[row].track == removed.track) {
      const int seconds = sequence_[row].seconds;
      sequence_.Remove(row);
      for (int later = row; later < sequence_.Count(); ++later)
        sequence_.Alter(later, [seconds](SequenceRow& each) { each.pick.start -= seconds; });
    } else {
      sequence_.AlterUntold(row,
                            [&removed](SequenceRow& each) { each.track = removed.Renumbered(each.track); });
    }
  }
  Q_EMIT Changed();
}

}  // namespace kelvo

// How the generator goes through the tracks without holding up the desk.

#include "database/KeptTracks.h"
#include "platform/Words.h"
#include "playlists/GeneratorSettings.h"
#include "playlists/PlaylistGenerator.h"

#include <algorithm>
#include <span>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// A look at the clock costs as much as a track.
constexpr int kTracksALook = 32;

/// Which of the wanted genres a line of genres names, worked out once for each line.
class GenreTest {
 public:
  GenreTest(const PooledTextColumn& lines, QStringList genres) : lines_(lines), genres_(std::move(genres)) {}

  std::span<const int> operator()(Mref track) {
    const std::size_t line = lines_.Id(track);
    if (line >= known_.size()) known_.resize(lines_.Distinct());
    Known& known = known_[line];
    if (!known.looked) known = LookAt(lines_[track]);
    return std::span(found_).subspan(known.first, known.count);
  }

 private:
  struct Known {
    std::uint32_t first = 0;  ///< in found_
    std::uint32_t count = 0;
    bool looked = false;
  };

  Known LookAt(const QString& line) {
    Known known{static_cast<std::uint32_t>(found_.size()), 0, true};
    const QList<QStringView> items = QStringView(line).split(QLatin1Char(','));
    for (int genre = 0; genre < genres_.size(); ++genre) {
      const QString& name = genres_[genre];
      const auto same = [&name](QStringView item) {
        return item.size() == name.size() && item.compare(name, Qt::CaseInsensitive) == 0;
      };
      if (std::any_of(items.begin(), items.end(), same)) found_.push_back(genre);
    }
    known.count = static_cast<std::uint32_t>(found_.size()) - known.first;
    return known;
  }

  const PooledTextColumn& lines_;
  QStringList genres_;
  std::vector<Known> known_;
  std::vector<int> found_;  ///< of all lines, one behind the other
};

}  // namespace

/// What the sequence is chosen from, beside the rows of the list that it comes from.
struct PlaylistGenerator::Choice {
  FitQuestion question;
  std::vector<Mref> tracks;
  std::vector<int> genres;
  int leftOut = 0;
  int unknown = 0;
};

qint64 PlaylistGenerator::CountedSeconds(double duration) {
  return std::max<qint64>(Int(duration), 0);
}

Job<bool> PlaylistGenerator::MakeList() {
  listed_.clear();
  for (const GenreName& genre : chosen_.All()) listed_.append(genre.name);
  listWhole_ = false;
  wantedSeconds_ = 0;
  sequence_.TakeAll();
  do {
    stale_ = false;
    list_.TakeAll();
    totalSeconds_ = 0;
    std::vector<std::vector<Mref>> picks(static_cast<std::size_t>(listed_.size()));
    const bool picked = co_await Pick(picks);
    if (picked) listWhole_ = co_await Show(picks);
  } while (stale_ && !stop_);
  Q_EMIT ListMade();
  co_return listWhole_;
}

Job<bool> PlaylistGenerator::Pick(std::vector<std::vector<Mref>>& picks) {
  EventLoop& loop = services_.playlists.loop;
  Say(tr("Looking At The Tracks"), 0);
  GenreTest genresOf(Tracks().TrackGenres, listed_);
  Nanoseconds turnStart = loop.TurnClock();
  for (int row = 1; row <= Tracks().LastTrack(); ++row) {
    for (const int genre : genresOf(ToMref(row)))
      picks[static_cast<std::size_t>(genre)].push_back(ToMref(row));
    if (row % kTracksALook != 0 || !loop.TurnIsOver(turnStart)) continue;
    Say(words_, 0.5 * row / Tracks().LastTrack());
    co_await loop.Yield();
    if (stop_ || stale_) co_return false;
    turnStart = loop.TurnClock();
  }
  co_return true;
}

Job<bool> PlaylistGenerator::Show(const std::vector<std::vector<Mref>>& picks) {
  EventLoop& loop = services_.playlists.loop;
  Turn turn(loop);
  bool descending = true;
  for (std::size_t genre = 0; genre < picks.size(); ++genre) {
    current_ = static_cast<int>(genre);
    Say(tr("Listing %1").arg(GenreOf(current_)),
        0.5 + 0.5 * static_cast<double>(genre) / static_cast<double>(picks.size()));
    // They were found in the order of the catalogue.
    const std::vector<Mref>& found = picks[genre];
    std::vector<GeneratedRow> rows;
    rows.reserve(found.size() + 1);
    rows.push_back({Mref::None, current_});
    qint64 seconds = 0;
    for (std::size_t done = 0; done < found.size(); ++done) {
      const Mref track = descending ? found[found.size() - 1 - done] : found[done];
      rows.push_back({track, current_});
      seconds += CountedSeconds(Tracks().TrackDurations(track));
      if (done % kTracksALook != 0) continue;
      co_await turn.Yield();
      if (stop_ || stale_) co_return false;
    }
    // A turn for those who show them: what a view does with many rows takes its time.
    co_await loop.Yield();
    if (stop_ || stale_) co_return false;
    totalSeconds_ += seconds;
    list_.Append(std::move(rows));
    co_await loop.Yield();
    if (stop_ || stale_) co_return false;
    if (!found.empty()) descending = !descending;
  }
  current_ = -1;
  co_return true;
}

Job<bool> PlaylistGenerator::Gather(Choice& choice) {
  EventLoop& loop = services_.playlists.loop;
  Say(tr("Gathering The Tracks"), 0);
  const Catalogue& tracks = Tracks();
  // A track that is listed under two genres is one all the same.
  std::vector<bool> known(static_cast<std::size_t>(tracks.LastTrack()) + 1, false);
  std::vector<bool> played(known.size(), false);
  if (wishes_.playedHours > 0 && services_.played) {
    for (const Mref track : services_.played(std::chrono::hours(wishes_.playedHours))) {
      if (tracks.IsTrack(track)) played[static_cast<std::size_t>(ToInt(track))] = true;
    }
  }
  // Once: to move a great many later on takes longer than a turn.
  const auto most = std::min<std::size_t>(known.size(), static_cast<std::size_t>(list_.Count()));
  choice.question.tracks.reserve(most);
  choice.tracks.reserve(most);
  choice.genres.reserve(most);
  std::vector<double> tempos;
  Nanoseconds turnStart = loop.TurnClock();
  for (int row = 0; row < list_.Count(); ++row) {
    const Mref track = list_[row].track;
    const auto place = static_cast<std::size_t>(ToInt(track));
    if (track != Mref::None && !known[place]) {
      known[place] = true;
      const qint64 seconds = Int(tracks.TrackDurations(track));
      if (seconds <= 0) {
        ++choice.unknown;
      } else if (played[place]) {
        ++choice.leftOut;
      } else {
        const std::size_t tempo = tracks.TrackBpm.Id(track);
        if (tempo >= tempos.size()) tempos.resize(tracks.TrackBpm.Distinct(), -1);
        if (tempos[tempo] < 0) tempos[tempo] = std::max(Val(tracks.TrackBpm[track]), 0.0);
        FitTrack& fit = choice.question.tracks.emplace_back();
        fit.seconds = static_cast<int>(std::min<qint64>(seconds, setting::kMost32));
        fit.bpm = tempos[tempo];
        fit.name = tracks.TrackNames.Utf8(track);
        fit.artists = tracks.TrackArtists.Id(track);
        choice.tracks.push_back(track);
        choice.genres.push_back(list_[row].genre);
      }
    }
    if (row % kTracksALook != 0 || !loop.TurnIsOver(turnStart)) continue;
    co_await loop.Yield();
    if (stop_ || stale_) co_return false;
    turnStart = loop.TurnClock();
  }
  for (std::uint32_t line = 0; line < tracks.TrackArtists.Distinct(); ++line) {
    choice.question.artistLines.append(tracks.TrackArtists.Text(line));
    if (line % kTracksALook != 0 || !loop.TurnIsOver(turnStart)) continue;
    co_await loop.Yield();
    if (stop_ || stale_) co_return false;
    turnStart = loop.TurnClock();
  }
  co_return true;
}

Job<> PlaylistGenerator::MakeSequence() {
  EventLoop& loop = services_.playlists.loop;
  auto choice = std::make_unique<Choice>();
  bool gathered = false;
  do {
    stale_ = false;
    *choice = {};
    gathered = co_await Gather(*choice);
  } while (stale_ && !stop_);
  if (!gathered) co_return;

  const KeptTracks kept(Tracks(), std::move(choice->tracks));
  FitQuestion& question = choice->question;
  question.seconds = wishes_.seconds;
  question.outline = wishes_.outline;
  question.followTempo = wishes_.followTempo;
  question.tempoWithin = wishes_.tempoWithin;
  question.artistApart = wishes_.artistMinutes * 60;
  question.seed = static_cast<std::uint64_t>(services_.random.Next() * 0x1p53);
  const int wanted = question.seconds;
  control_ = std::make_shared<FitControl>();
  const auto tell = [this] {
    if (control_) Say(tr("Fitting To Time"), control_->permille.load(std::memory_order_relaxed) / 1000.0);
  };
  tell();
  const Timer beat = loop.Every(50ms, tell);
  // The work frees the question too: that takes longer than a turn.
  const auto asked = std::make_shared<FitQuestion>(std::move(question));
  const auto work = [asked, control = control_] {
    const FitQuestion own = std::move(*asked);
    return FitToTime(own, *control);
  };
  const std::optional<std::vector<FitPick>> picks = co_await loop.Offload(EventLoop::Lane::Apart, work);
  if (!picks) co_return;

  std::vector<SequenceRow> rows;
  std::vector<OutlookTrack> tracks;
  for (const FitPick& pick : *picks) {
    const Mref track = kept[pick.track];
    if (track == Mref::None) continue;
    const int genre = choice->genres[pick.track];
    const double duration = Tracks().TrackDurations(track);
    rows.push_back(
        {track, genre, static_cast<int>(CountedSeconds(duration)), Val(Tracks().TrackBpm[track]), pick});
    tracks.push_back({Tracks().TrackNames[track], duration});
  }
  leftOut_ = choice->leftOut;
  unknown_ = choice->unknown;
  wantedSeconds_ = wanted;
  outlook_ = {};
  sequence_.Replace(std::move(rows));
  Q_EMIT SequenceMade();
  outlook_ = co_await ReckonOutlook(services_.playlists, std::move(tracks), 0);
}

}  // namespace kelvo

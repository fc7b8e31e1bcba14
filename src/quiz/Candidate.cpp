#include "quiz/Candidate.h"

#include <QStringList>

namespace kelvo {
namespace {

/// The second item of a line of references: the first one is the line's own name.
QString SecondItem(const QString& line) {
  return line.section(QLatin1Char(','), 1, 1);
}

}  // namespace

std::optional<Candidate> CandidateOf(const Catalogue& catalogue, Mref track) {
  const QString artists = catalogue.TrackArtists[track];
  if (!artists.contains(QLatin1Char(','))) return std::nullopt;
  Candidate candidate{.track = track, .artist = SecondItem(artists), .album = {}};
  const QString albums = catalogue.TrackAlbums[track];
  candidate.hasAlbum = albums.contains(QLatin1Char(','));
  candidate.album = SecondItem(albums);
  const QString hi = catalogue.TrackHi[track];
  candidate.hasHiPos = !hi.isEmpty() && hi != QStringLiteral("?");
  // A date that nobody has set ("0000-xxx") counts as known and is asked as it stands.
  const QString date = catalogue.TrackDates[track];
  candidate.hasYear = !date.isEmpty() && date != QStringLiteral("?") && date != QStringLiteral("0000");
  return candidate;
}

QString TitleOf(const QString& trackName) {
  const qsizetype dash = trackName.indexOf(QLatin1Char('-'));
  return dash < 0 ? trackName : trackName.mid(dash + 2);
}

void CandidatePool::Clear() {
  all_.clear();
  used_.clear();
  numbers_.clear();
}

bool CandidatePool::Add(const Catalogue& catalogue, Mref track) {
  if (numbers_.contains(ToInt(track))) return false;
  std::optional<Candidate> candidate = CandidateOf(catalogue, track);
  if (!candidate) return false;
  numbers_.insert(ToInt(track), Found());
  all_.push_back(*std::move(candidate));
  used_.push_back(false);
  return true;
}

std::optional<int> CandidatePool::Pick(RandomSource& random) const {
  std::vector<int> free;
  for (int number = 0; number < Found(); ++number) {
    if (!Used(number) && all_[At(number)].track != Mref::None) free.push_back(number);
  }
  if (free.empty()) return std::nullopt;
  return free[At(random.Below(static_cast<int>(free.size())))];
}

void CandidatePool::GiveBack(const std::vector<int>& numbers) {
  for (const int number : numbers) used_[At(number)] = false;
}

void CandidatePool::Follow(const TrackRemoved& removed) {
  numbers_.clear();
  for (int number = 0; number < Found(); ++number) {
    Mref& track = all_[At(number)].track;
    if (track != Mref::None) track = removed.Renumbered(track);
    if (track != Mref::None) numbers_.insert(ToInt(track), number);
  }
}

}  // namespace kelvo

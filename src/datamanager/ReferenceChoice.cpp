#include "datamanager/ReferenceChoice.h"

#include "database/ReferenceLine.h"

#include <algorithm>
#include <chrono>

namespace kelvo {
namespace {

constexpr char16_t kLowestLetter = u'0';
/// Changes that come so soon after one another are counted together.
constexpr Nanoseconds kGather = std::chrono::milliseconds(50);

}  // namespace

ReferenceChoice::ReferenceChoice(EventLoop& loop, const Catalogue& catalogue)
    : loop_(loop), catalogue_(catalogue) {
  FollowCatalogue();
}

QString ReferenceChoice::SetWord() const {
  if (!set_) return QStringLiteral("None");
  switch (*set_) {
    case ReferenceSet::Genres:
      return QStringLiteral("Categories");
    case ReferenceSet::Artists:
      return QStringLiteral("Artists");
    case ReferenceSet::Albums:
      return QStringLiteral("Albums");
    case ReferenceSet::Playlists:
      return QStringLiteral("Playlists");
  }
  return {};
}

void ReferenceChoice::ChooseSet(ReferenceSet set) {
  set_ = set;
  chosen_.clear();
  FillNames();
  Q_EMIT Changed();
}

QStringList ReferenceChoice::ShownNames(const Catalogue& catalogue, ReferenceSet set) {
  QStringList names = catalogue.References(set);
  names.removeIf([](const QString& name) { return IsInternalName(name); });
  return names;
}

void ReferenceChoice::FillNames() {
  std::vector<ReferenceRow> rows;
  if (set_) {
    const QStringList names = ShownNames(catalogue_, *set_);
    rows.reserve(static_cast<std::size_t>(names.size()));
    for (const QString& name : names) rows.push_back({.name = name});
  }
  names_.Replace(std::move(rows));
  CountSoon();
}

void ReferenceChoice::Choose(const QString& name) {
  if (chosen_ == name) return;
  chosen_ = name;
  Q_EMIT Changed();
}

int ReferenceChoice::LetterRow(QChar letter) const {
  for (char16_t code = letter.toUpper().unicode(); code >= kLowestLetter; --code) {
    const auto& all = names_.All();
    const auto found = std::find_if(all.begin(), all.end(), [code](const ReferenceRow& row) {
      return !row.name.isEmpty() && row.name.front().toUpper().unicode() == code;
    });
    if (found != all.end()) return static_cast<int>(found - all.begin());
  }
  return -1;
}

// How many tracks bear each name.

const PooledTextColumn* ReferenceChoice::Lines(ReferenceSet set) const {
  switch (set) {
    case ReferenceSet::Genres:
      return &catalogue_.TrackGenres;
    case ReferenceSet::Artists:
      return &catalogue_.TrackArtists;
    case ReferenceSet::Albums:
      return &catalogue_.TrackAlbums;
    case ReferenceSet::Playlists:
      return nullptr;
  }
  return nullptr;
}

void ReferenceChoice::CountSoon() {
  countAgain_ = true;
  if (!count_.Running()) count_ = Count();
}

Job<> ReferenceChoice::Count() {
  while (std::exchange(countAgain_, false)) {
    co_await loop_.Sleep(kGather);
    const PooledTextColumn* lines = set_ ? Lines(*set_) : nullptr;
    if (lines == nullptr) continue;
    Turn turn(loop_);
    std::vector<int> tracksOf(lines->Distinct());
    for (int row = 1; row <= catalogue_.LastTrack() && !countAgain_; ++row) {
      const std::size_t line = lines->Id(ToMref(row));
      if (line < tracksOf.size()) ++tracksOf[line];
      co_await turn.Yield();
    }
    QHash<QString, int> tracks;
    for (std::size_t line = 0; line < tracksOf.size() && !countAgain_; ++line) {
      if (tracksOf[line] == 0) continue;
      // A line can name a reference twice: its tracks are counted once.
      QStringList seen;
      const QString text = lines->Text(static_cast<std::uint32_t>(line));
      for (const QStringView item : ShownItems(text)) {
        const QString name = item.toString().toUpper();
        if (seen.contains(name)) continue;
        seen.append(name);
        tracks[name] += tracksOf[line];
      }
      co_await turn.Yield();
    }
    for (int row = 0; row < names_.Count() && !countAgain_; ++row) {
      const int count = tracks.value(names_[row].name.toUpper());
      names_.AlterUntold(row, [count](ReferenceRow& each) { each.tracks = count; });
      co_await turn.Yield();
    }
    if (!countAgain_ && names_.Count() > 0) names_.TellChanged(0, names_.Count() - 1);
  }
}

// The filter.

QString ReferenceChoice::WhyNoAdd() const {
  if (!set_) return tr("Choose genres, artists or albums first");
  if (*set_ == ReferenceSet::Playlists) return tr("Tracks are filtered by genres, artists and albums");
  if (chosen_.isEmpty()) return tr("No name is selected");
  const auto& all = filter_.All();
  const bool there = std::find(all.begin(), all.end(), Reference{*set_, chosen_}) != all.end();
  return there ? tr("The filter has it already") : QString();
}

void ReferenceChoice::AddToFilter() {
  if (!WhyNoAdd().isEmpty()) return;
  std::vector<Reference> added;
  added.push_back({*set_, chosen_});
  filter_.Append(std::move(added));
  Q_EMIT Changed();
}

void ReferenceChoice::RemoveFromFilter(const std::vector<int>& rows) {
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) filter_.Remove(*row);
  Q_EMIT Changed();
}

void ReferenceChoice::ClearFilter() {
  filter_.Replace({});
  Q_EMIT Changed();
}

// The selected track.

void ReferenceChoice::ShowTrack(Mref track) {
  if (track_ == track) return;
  track_ = track;
  ofTrack_.fill({});
  Q_EMIT TrackChanged();
}

QStringList ReferenceChoice::OfTrack(ReferenceSet set) const {
  const PooledTextColumn* lines = Lines(set);
  if (lines == nullptr || !catalogue_.IsTrack(track_)) return {};
  return ReferenceLine::Parse((*lines)[track_]).Shown();
}

void ReferenceChoice::ChooseOfTrack(ReferenceSet set, const QString& name) {
  if (ofTrack_[Place(set)] == name) return;
  ofTrack_[Place(set)] = name;
  Q_EMIT Changed();
}

// What happens to the catalogue.

void ReferenceChoice::FollowCatalogue() {
  catalogue_.Listen(
      this, [this](const ReferenceChanged& change) { ReferenceWasChanged(change); },
      [this](const kelvo::TrackChanged& change) {
        constexpr TrackFields kNames =
            TrackFields(TrackField::Genres) | TrackField::Artists | TrackField::Albums;
        if (!(change.fields & kNames)) return;
        CountSoon();
        if (change.track == track_) Q_EMIT TrackChanged();
      },
      [this](const TrackAdded&) { CountSoon(); },
      [this](const TrackRemoved& removed) {
        CountSoon();
        const bool gone = removed.track == track_;
        track_ = removed.Renumbered(track_);
        if (!gone) return;
        ofTrack_.fill({});
        Q_EMIT TrackChanged();
      },
      [this](const CatalogueReplaced&) {
        ShowTrack(Mref::None);
        chosen_.clear();
        filter_.Replace({});
        FillNames();
        Q_EMIT Changed();
      });
}

void ReferenceChoice::ReferenceWasChanged(const ReferenceChanged& change) {
  for (int row = filter_.Count() - 1; row >= 0; --row) {
    if (filter_[row].set != change.set || filter_[row].name != change.before) continue;
    if (change.name.isEmpty()) {
      filter_.Remove(row);
    } else {
      filter_.Alter(row, [&change](Reference& each) { each.name = change.name; });
    }
  }
  if (set_ == change.set) {
    if (!change.before.isEmpty() && chosen_ == change.before) chosen_ = change.name;
    FillNames();
  }
  Q_EMIT Changed();
}

}  // namespace kelvo

#include "playlists/FitPool.h"

#include "database/ReferenceLine.h"
#include "platform/RandomSource.h"
#include "platform/Words.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string_view>
#include <unordered_map>

namespace kelvo {
namespace {

constexpr std::string_view kDash = " - ";

/// Case and accents folded. Nearly all names are plain letters, which need no detour.
std::string Folded(std::string_view utf8) {
  const bool plain =
      std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
  if (!plain)
    return FoldedText(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()))).toStdString();
  std::string folded(utf8);
  for (char& each : folded) each = each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
  return folded;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string TitleOf(std::string_view name) {
  const std::size_t dash = name.find(kDash);
  std::string_view title = dash == std::string_view::npos ? name : name.substr(dash + kDash.size());
  const std::size_t bracket = title.find_first_of("([");
  // A title that begins with a bracket is all there is.
  if (bracket != std::string_view::npos && !Trimmed(title.substr(0, bracket)).empty())
    title = title.substr(0, bracket);
  return Folded(Trimmed(title));
}

/// Empty when the name has none.
std::string_view ArtistOf(std::string_view name) {
  const std::size_t dash = name.find(kDash);
  return dash == std::string_view::npos ? std::string_view() : Trimmed(name.substr(0, dash));
}

/// Texts as numbers from 0.
class Numbers {
 public:
  std::uint32_t Of(std::string text) {
    return known_.try_emplace(std::move(text), static_cast<std::uint32_t>(known_.size())).first->second;
  }
  [[nodiscard]] std::size_t Count() const { return known_.size(); }

 private:
  std::unordered_map<std::string, std::uint32_t> known_;
};

}  // namespace

QString ComparedTitle(const QString& trackName) {
  return QString::fromStdString(TitleOf(trackName.toStdString()));
}

FitPool::FitPool(const FitQuestion& question) : question_(question) {
  ReadNames();
  Sort();
}

void FitPool::ReadNames() {
  Numbers titles;
  Numbers artists;
  std::vector<std::vector<std::uint32_t>> lines;
  for (const QString& line : question_.artistLines) {
    std::vector<std::uint32_t>& names = lines.emplace_back();
    for (const QStringView name : ShownItems(line))
      names.push_back(artists.Of(Folded(name.trimmed().toUtf8().toStdString())));
  }
  const std::size_t count = question_.tracks.size();
  titles_.reserve(count);
  artistEnds_.reserve(count);
  bpm_.reserve(count);
  for (const FitTrack& track : question_.tracks) {
    titles_.push_back(titles.Of(TitleOf(track.name)));
    bpm_.push_back(track.bpm > 0 ? track.bpm : std::numeric_limits<double>::infinity());
    if (track.artists < lines.size() && !lines[track.artists].empty()) {
      const auto& names = lines[track.artists];
      artists_.insert(artists_.end(), names.begin(), names.end());
    } else if (const std::string_view artist = ArtistOf(track.name); !artist.empty()) {
      artists_.push_back(artists.Of(Folded(artist)));
    }
    artistEnds_.push_back(static_cast<std::uint32_t>(artists_.size()));
  }
  titleCount_ = titles.Count();
}

void FitPool::Sort() {
  const int longest = question_.seconds * 2;
  for (Track track = 0; track < question_.tracks.size(); ++track) {
    if (Seconds(track) > 0 && Seconds(track) <= longest) byTempo_.push_back(track);
  }
  RandomSource chance(question_.seed);
  for (std::size_t left = byTempo_.size(); left > 1; --left) {
    std::swap(byTempo_[left - 1], byTempo_[static_cast<std::size_t>(chance.Below(static_cast<int>(left)))]);
  }
  byLength_ = byTempo_;
  if (question_.followTempo) {
    std::stable_sort(byTempo_.begin(), byTempo_.end(),
                     [this](Track left, Track right) { return bpm_[left] < bpm_[right]; });
  }
  std::stable_sort(byLength_.begin(), byLength_.end(),
                   [this](Track left, Track right) { return Seconds(left) < Seconds(right); });
  lengthStarts_.assign(static_cast<std::size_t>(longest) + 2, 0);
  for (const Track track : byLength_) {
    ++lengthStarts_[static_cast<std::size_t>(Seconds(track)) + 1];
    if (lengths_.empty() || lengths_.back() != Seconds(track)) lengths_.push_back(Seconds(track));
  }
  std::partial_sum(lengthStarts_.begin(), lengthStarts_.end(), lengthStarts_.begin());
}

bool FitPool::ShareArtist(Track one, Track other) const {
  const auto of = [this](Track track) {
    const std::uint32_t begin = track == 0 ? 0 : artistEnds_[track - 1];
    return std::span(artists_).subspan(begin, artistEnds_[track] - begin);
  };
  const auto others = of(other);
  return std::ranges::any_of(of(one), [others](std::uint32_t artist) {
    return std::find(others.begin(), others.end(), artist) != others.end();
  });
}

std::span<const FitPool::Track> FitPool::OfLength(int seconds) const {
  if (seconds <= 0 || seconds > question_.seconds * 2) return {};
  const std::uint32_t begin = lengthStarts_[static_cast<std::size_t>(seconds)];
  return std::span(byLength_).subspan(begin, lengthStarts_[static_cast<std::size_t>(seconds) + 1] - begin);
}

int FitPool::MedianSeconds() const {
  return byLength_.empty() ? 0 : Seconds(byLength_[byLength_.size() / 2]);
}

}  // namespace kelvo

#include "playlists/TimeFit.h"

#include <QHash>
#include <QSet>

#include <gmock/gmock.h>

#include <bitset>
#include <cmath>
#include <random>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

/// A library by chance, the same for the same number: from a handful of tracks of few artists and lengths to
/// a thousand.
FitQuestion RandomQuestion(unsigned seed) {
  std::mt19937 random(seed);
  const auto below = [&random](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  FitQuestion question;
  question.seed = seed;
  question.seconds = 300 + below(7200);
  question.artistApart = below(3) * 900;
  question.followTempo = below(4) != 0;
  question.tempoWithin = 3 + below(15);
  for (int point = 0; point < TempoOutline::kPoints; ++point) question.outline.SetBpm(point, 80 + below(80));
  const int count = std::array{4, 12, 40, 150, 1000}[static_cast<std::size_t>(below(5))];
  const int artists = 1 + below(count);
  const int titles = 1 + below(2 * count);
  const int step = std::array{1, 1, 7, 60}[static_cast<std::size_t>(below(4))];
  for (int artist = 0; artist < artists; ++artist)
    question.artistLines.append(
        u"~ALL ARTISTS,Artist %1%2"_s.arg(artist).arg(artist % 5 == 0 ? u",Band"_s : u""_s));
  question.artistLines.append(u"~ALL ARTISTS"_s);
  for (int track = 0; track < count; ++track) {
    const int artist = below(artists + 1);
    const QString name =
        u"Artist %1 - Title %2%3"_s.arg(artist).arg(below(titles)).arg(below(9) == 0 ? u" (Live)"_s : u""_s);
    question.tracks.push_back({(30 + below(400)) / step * step, below(10) == 0 ? 0.0 : 70.0 + below(110),
                               name.toStdString(), static_cast<std::uint32_t>(artist)});
  }
  return question;
}

/// The least that any choice of the tracks misses the wanted length by.
int LeastMiss(const FitQuestion& question) {
  constexpr std::size_t kMost = 2 * 7500 + 1;
  std::bitset<kMost> sums;
  sums.set(0);
  for (const FitTrack& track : question.tracks) sums |= sums << static_cast<std::size_t>(track.seconds);
  for (int off = 0; off < question.seconds; ++off) {
    if (sums.test(static_cast<std::size_t>(question.seconds - off)) ||
        sums.test(static_cast<std::size_t>(question.seconds + off)))
      return off;
  }
  return question.seconds;
}

QSet<QString> ArtistsOf(const FitQuestion& question, const FitTrack& track) {
  const QStringList line = question.artistLines[track.artists].split(u',').mid(1);
  if (!line.isEmpty()) return {line.begin(), line.end()};
  return {QString::fromStdString(track.name).section(u" - "_s, 0, 0)};
}

/// Holds each promise of a sequence against the tracks it was made of.
void ExpectTrue(const FitQuestion& question, const std::vector<FitPick>& picks) {
  QSet<std::size_t> used;
  QSet<QString> titles;
  QHash<QString, int> ends;  // of each artist's last track
  int now = 0;
  for (const FitPick& pick : picks) {
    const FitTrack& track = question.tracks[pick.track];
    EXPECT_FALSE(used.contains(pick.track)) << "a track comes twice";
    used.insert(pick.track);
    EXPECT_EQ(pick.start, now);
    const double wanted = question.outline.At((now + track.seconds / 2.0) / question.seconds);
    EXPECT_DOUBLE_EQ(pick.wantedBpm, wanted);
    const bool beside = track.bpm <= 0 || std::abs(track.bpm - wanted) > question.tempoWithin;
    EXPECT_EQ(pick.tempo, question.followTempo && beside);
    const QString title = ComparedTitle(QString::fromStdString(track.name));
    EXPECT_EQ(pick.title, titles.contains(title));
    titles.insert(title);
    bool tooSoon = false;
    for (const QString& artist : ArtistsOf(question, track)) {
      tooSoon = tooSoon || (ends.contains(artist) && now - ends[artist] < question.artistApart);
      ends[artist] = now + track.seconds;
    }
    EXPECT_EQ(pick.artist, tooSoon);
    now += track.seconds;
  }
  EXPECT_EQ(std::abs(question.seconds - now), LeastMiss(question));
}

TEST(AListFittedToTime, KeepsItsPromisesOverLibrariesOfAnyKind) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(seed);
    const FitQuestion question = RandomQuestion(seed);
    FitControl control;
    const auto picks = FitToTime(question, control);
    ASSERT_TRUE(picks);
    ExpectTrue(question, *picks);
    if (HasFailure()) return;
  }
}

/// Tracks enough of all kinds.
FitQuestion RichQuestion(unsigned seed) {
  FitQuestion question;
  question.seed = seed;
  question.seconds = 5400 + static_cast<int>(seed);
  question.artistApart = 3600;
  question.artistLines = {u"~ALL ARTISTS"_s};
  for (int point = 0; point < TempoOutline::kPoints; ++point) question.outline.SetBpm(point, 90 + 5 * point);
  std::mt19937 random(seed);
  for (int track = 0; track < 3000; ++track) {
    question.tracks.push_back({150 + static_cast<int>(random() % 200),
                               80.0 + static_cast<double>(random() % 80),
                               u"Artist %1 - Title %2"_s.arg(track % 300).arg(track).toStdString(), 0});
  }
  return question;
}

TEST(AListFittedToTime, BreaksNoRuleWhereThereAreTracksEnoughAndIsAnotherEachTime) {
  QSet<std::size_t> taken;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    const FitQuestion question = RichQuestion(seed);
    FitControl control;
    const auto picks = FitToTime(question, control);
    ASSERT_TRUE(picks);
    EXPECT_TRUE(
        std::none_of(picks->begin(), picks->end(), [](const FitPick& pick) { return pick.BreaksRule(); }));
    const FitPick& last = picks->back();
    EXPECT_EQ(last.start + question.tracks[last.track].seconds, question.seconds);
  }
  FitQuestion question = RichQuestion(1);
  for (question.seed = 1; question.seed <= 5; ++question.seed) {
    FitControl control;
    taken.insert(FitToTime(question, control)->front().track);
  }
  EXPECT_GT(taken.size(), 1);
}

TEST(AListFittedToTime, GivesUpTheTempoBeforeTheArtistAndBothBeforeTheLength) {
  FitQuestion question;
  question.seconds = 600;
  question.artistApart = 1200;
  for (int point = 0; point < TempoOutline::kPoints; ++point) question.outline.SetBpm(point, 120);
  question.tracks = {{300, 120, "Ann - One", 0}, {300, 120, "Ann - Two", 0}, {300, 90, "Bob - Three", 0}};
  FitControl control;
  auto picks = FitToTime(question, control);
  ASSERT_EQ(picks->size(), 2U);
  EXPECT_EQ(std::count_if(picks->begin(), picks->end(), [](const FitPick& pick) { return pick.tempo; }), 1);
  EXPECT_FALSE((*picks)[1].artist);
  question.tracks[2].seconds = 299;
  picks = FitToTime(question, control);
  ASSERT_EQ(picks->size(), 2U);
  EXPECT_TRUE((*picks)[1].artist);
}

TEST(AListFittedToTime, IsEmptyWithoutTracksAndNoneWhenItIsStopped) {
  FitQuestion question;
  FitControl control;
  EXPECT_TRUE(FitToTime(question, control)->empty());
  question = RichQuestion(1);
  control.stop = true;
  EXPECT_FALSE(FitToTime(question, control));
}

TEST(TheOutline, IsALineThroughItsPointsBetweenItsEndsAndSurvivesItsSetting) {
  TempoOutline outline;
  outline.SetLow(90);
  outline.SetHigh(150);
  outline.SetBpm(0, 40);
  outline.SetBpm(1, 400);
  EXPECT_EQ(outline.Bpm(0), 90);
  EXPECT_EQ(outline.Bpm(1), 150);
  EXPECT_NEAR(outline.At(0.5 / (TempoOutline::kPoints - 1)), 120, 0.001);
  outline.SetHigh(100);
  EXPECT_EQ(outline.Bpm(1), 100);
  EXPECT_EQ(TempoOutline::FromSetting(outline.ToSetting()), outline);
  EXPECT_FALSE(TempoOutline::FromSetting(u"1,2,3"_s));
}

}  // namespace
}  // namespace kelvo

// A mix that hands made is remembered, saved, loaded and played again: what is heard is what was heard.

#include "app/windows/QueueOfPlaylists.h"
#include "audio/SimulatedStudio.h"
#include "console/Console.h"
#include "console/session/SessionToPlaylist.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "playlists/PlaylistManager.h"
#include "support/ScriptedPrompter.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr int kTracks = 20;
constexpr double kTrackSeconds = 24;
/// A group playlist keeps whole seconds: an event may come this much earlier or later than it did.
constexpr double kFormatSeconds = 1.1;
constexpr double kWindowSeconds = 0.1;

struct Start {
  double seconds;
  QString title;
};

/// What a run of the desk gave: the level of each tenth of a second in decibels, from the first sound on, and
/// the starts, counted from the first.
struct Heard {
  std::vector<double> levels;
  std::vector<Start> starts;
};

std::vector<double> LevelsOf(const Samples& sound) {
  constexpr auto window = static_cast<std::size_t>(kWindowSeconds * 44100) * 2;
  std::vector<double> levels;
  for (std::size_t at = 0; at + window <= sound.size(); at += window) {
    double power = 0;
    for (std::size_t each = at; each < at + window; ++each)
      power += static_cast<double>(sound[each]) * static_cast<double>(sound[each]);
    levels.push_back(10 * std::log10(std::max(power / window, 1e-6)));
  }
  return levels;
}

class MixReplay : public ::testing::Test {
 protected:
  void SetUp() override {
    // Each track has a tone and a level of its own.
    for (int track = 0; track < kTracks; ++track) {
      Samples tone = Sine(200 + 50 * track, kTrackSeconds);
      const float gain = 0.1F + 0.04F * static_cast<float>(track * 7 % kTracks);
      for (float& sample : tone) sample *= gain;
      const QString base = u"Band - Song %1"_s.arg(track + 1, 2, 10, QLatin1Char('0'));
      WaveKind mono;
      mono.channels = 1;
      database_.Add(Paths::Info, base + u".kif"_s, InfoBytes(QByteArray::number(kTrackSeconds)));
      database_.Add(Paths::Music, base + u".wav"_s, WaveFile(tone, mono));
    }
    settings_.SaveSetting(u"Kelvo"_s, u"Startup"_s, u"FFwFRev"_s, u"1"_s);
    QDir().mkpath(Rock());
    OpenDesk();
  }
  void OpenDesk() {
    desk_.reset();
    desk_.emplace(Console::Services{.loop = studio_.loop,
                                    .prompter = prompter_,
                                    .audio = studio_.engine,
                                    .settings = settings_,
                                    .catalogue = catalogue_,
                                    .paths = database_.paths,
                                    .title = u"Kelvo"_s,
                                    .aboutLine = u"About Kelvo"_s,
                                    .programFolder = database_.tree.Path(),
                                    .documents = database_.tree.Path(u"documents"_s)});
    desk_->Activate();
    ASSERT_TRUE(studio_.loop.RunUntil([this] { return desk_->CatalogueLoaded(); }));
    desk_->Fades().SetCrossPan(kDeckOneAlone);
    starts_.clear();
    studio_.loop.RunFor(1s);
    studio_.heard.clear();
    began_ = studio_.loop.Elapsed();
    desk_->Decks().OnStarted = [this, joined = desk_->Decks().OnStarted](Deck deck) {
      starts_.push_back({Since(), desk_->Decks().Record(deck).Title});
      joined(deck);
    };
  }
  [[nodiscard]] QString Rock() const { return database_.paths(Paths::Playlists) + u"/Rock"_s; }
  [[nodiscard]] PlaylistServices Store() {
    return {.loop = studio_.loop,
            .disks = desk_->SlowDisks(),
            .prompter = prompter_,
            .catalogue = catalogue_,
            .paths = database_.paths,
            .settings = desk_->Settings(),
            .queue = std::make_shared<QueueOfPlaylists>(desk_->Queue(), desk_->State())};
  }
  [[nodiscard]] Heard TakeHeard() {
    Heard heard{LevelsOf(studio_.FromFirstSound()), starts_};
    for (Start& start : heard.starts) start.seconds -= starts_.front().seconds;
    return heard;
  }

  [[nodiscard]] double Since() const {
    return std::chrono::duration<double>(studio_.loop.Elapsed() - began_).count();
  }

  // The hands.
  void Load(Deck deck, int row) {
    desk_->Queue().Click(row);
    desk_->Decks().LoadCommand(deck);
    ASSERT_TRUE(studio_.loop.RunUntil(
        [this, deck] { return desk_->Decks().Record(deck).State == DeckState::Loaded; }, 10s));
  }
  void WaitForWalk() {
    Transitions& fades = desk_->Fades();
    ASSERT_TRUE(studio_.loop.RunUntil([&] { return !fades.WalkActive() && !fades.Starting(); }, 30s));
  }
  void BringIn(Deck deck, int turn) {
    Transitions& fades = desk_->Fades();
    fades.SetFadeSpeed(12 + 5 * (turn % 3));
    switch (turn % 4) {
      case 0:
        fades.PressDub(deck);
        studio_.loop.RunFor(2300ms);
        fades.ReleaseDub(deck);
        break;
      case 1:
        fades.PressPartFade(deck);
        break;
      case 2:
        fades.PressPan(deck);
        break;
      default:
        // A pan that is thought better of, and taken up again.
        fades.PressPan(deck);
        studio_.loop.RunFor(2s);
        fades.Cancel();
        WaitForWalk();
        takenBack_.push_back({Since(), 0});
        studio_.loop.RunFor(1700ms);
        fades.PressPan(deck);
        break;
    }
    studio_.loop.RunFor(200ms);
    WaitForWalk();
    if (turn % 4 == 3) takenBack_.back().second = Since();
  }
  void MixByHand() {
    std::vector<Mref> tracks;
    for (int track = 1; track <= kTracks; ++track) tracks.push_back(ToMref(track));
    const Job<> add = desk_->Queue().AddTracks(tracks);
    ASSERT_TRUE(studio_.loop.RunUntil([&add] { return !add.Running(); }, 1s));
    DeckEngine& decks = desk_->Decks();
    for (int turn = 0; turn < kTracks; ++turn) {
      const Deck deck = turn % 2 == 0 ? Deck::One : Deck::Two;
      Load(deck, turn + 1);
      if (turn % 5 == 3) {
        decks.BeginFastMove(deck, FastMove::Forward);
        studio_.loop.RunFor(50ms);
        decks.EndFastMove(deck);
      }
      studio_.loop.RunFor(std::chrono::milliseconds(2400 + 370 * (turn % 4)));
      if (turn == 0) {
        decks.ManualStart(deck);
      } else {
        BringIn(deck, turn);
        decks.StopDeck(Other(deck));
      }
    }
    studio_.loop.RunFor(4s);
    decks.StopDeck(decks.OnAir().value_or(Deck::One));
    studio_.loop.RunFor(2s);
  }
  void SaveAsGroup(const QString& name) {
    const std::vector<SessionEvent> events(desk_->Session().Events().begin(),
                                           desk_->Session().Events().end());
    std::vector<int> picked(events.size());
    std::iota(picked.begin(), picked.end(), 0);
    ASSERT_EQ(WhyNotSaved(events, picked, SessionSave::Group), QString());
    std::vector<SaveRow> rows;
    for (const SessionArguments& each : ArgumentsOf(events, picked, SessionSave::Group, 0)) {
      const SessionEvent& load = events[static_cast<std::size_t>(each.row)];
      rows.push_back({load.Description, load.Path, each.text});
    }
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(kTracks));
    PlaylistManager manager({.playlists = Store(),
                             .mode = PlaylistMode::SaveGroupSession,
                             .rows = [rows] { return rows; },
                             .name = {}});
    manager.Enter();
    studio_.loop.RunFor(1s);
    manager.ChooseCategory(u"Rock"_s);
    manager.SetName(name);
    manager.Save();
    ASSERT_TRUE(studio_.loop.RunUntil([&manager] { return !manager.Busy(); }, 10s));
  }
  void Replay(const QString& name) {
    PlaylistLoad load(Store());
    const Job<bool> taken = load.FromStore(Rock() + u'/' + name, name);
    ASSERT_TRUE(studio_.loop.RunUntil([&taken] { return !taken.Running(); }, 10s));
    ASSERT_EQ(desk_->Queue().Count(), kTracks);
    desk_->Automatic().ToggleAutoPlay();
    ASSERT_TRUE(desk_->State().GroupPlayOn);
    ASSERT_TRUE(studio_.loop.RunUntil([this] { return !desk_->State().GroupPlayOn; }, 10min));
    studio_.loop.RunFor(2s);
  }

  SimulatedStudio studio_;
  TestDatabase database_;
  ScriptedPrompter prompter_;
  ErrorLog log_{studio_.loop, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{studio_.loop, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  std::vector<Start> starts_;
  /// Seconds from the taking back of a fade to the end of the next one.
  std::vector<std::pair<double, double>> takenBack_;
  Nanoseconds began_{0};
  std::optional<Console> desk_;
};

TEST_F(MixReplay, AMixOfTwentyTracksSoundsAgainAsItDid) {
  MixByHand();
  const Heard mixed = TakeHeard();
  ASSERT_EQ(mixed.starts.size(), static_cast<std::size_t>(kTracks));
  auto takenBack = takenBack_;
  for (auto& [from, to] : takenBack) {
    from -= starts_.front().seconds;
    to -= starts_.front().seconds;
  }
  SaveAsGroup(u"Evening"_s);
  OpenDesk();
  Replay(u"Evening(Grp)"_s);
  const Heard again = TakeHeard();

  ASSERT_EQ(again.starts.size(), mixed.starts.size());
  for (std::size_t each = 0; each < mixed.starts.size(); ++each) {
    EXPECT_EQ(again.starts[each].title, mixed.starts[each].title) << each;
    EXPECT_NEAR(again.starts[each].seconds, mixed.starts[each].seconds, kFormatSeconds) << each;
  }
  // Within the time that the format leaves open, each level was heard in the mix as well. A fade that was
  // taken back is kept like any other: the replay carries it out, and is as loud as the mix again after the
  // next one.
  ASSERT_NEAR(static_cast<double>(again.levels.size()) * kWindowSeconds,
              static_cast<double>(mixed.levels.size()) * kWindowSeconds, 3);
  constexpr double kDecibels = 1.5;
  const auto reach = static_cast<std::ptrdiff_t>(std::lround((kFormatSeconds + 0.1) / kWindowSeconds));
  const auto count = static_cast<std::ptrdiff_t>(std::min(again.levels.size(), mixed.levels.size()));
  int compared = 0;
  for (std::ptrdiff_t at = 0; at < count; ++at) {
    const auto [least, most] =
        std::minmax_element(mixed.levels.begin() + std::max<std::ptrdiff_t>(at - reach, 0),
                            mixed.levels.begin() + std::min(at + reach + 1, count));
    const double level = again.levels[static_cast<std::size_t>(at)];
    const double seconds = static_cast<double>(at) * kWindowSeconds;
    if (std::any_of(takenBack.begin(), takenBack.end(), [seconds](const auto& span) {
          return seconds > span.first - 2 * kFormatSeconds && seconds < span.second + kFormatSeconds;
        }))
      continue;
    ++compared;
    EXPECT_TRUE(level > *least - kDecibels && level < *most + kDecibels)
        << "at " << seconds << " s: " << level << " dB, was " << *least << " to " << *most;
  }
  EXPECT_GT(compared, 900);
}

}  // namespace

#include "audio/Recorder.h"
#include "audio/SimulatedStudio.h"
#include "database/GroupElement.h"
#include "database/TestDatabase.h"
#include "render/RenderQueue.h"
#include "render/Renderer.h"
#include "support/ScriptedPrompter.h"

#include <QDirIterator>
#include <QFile>

#include <gmock/gmock.h>
#include <sndfile.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <map>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace testing;
using ::testing::HasSubstr;

constexpr int kSeconds = 12;

/// All that a reader of its own finds in the file.
Samples ReadBack(const QString& path) {
  SF_INFO info{};
  SNDFILE* const file = sf_open(path.toUtf8().constData(), SFM_READ, &info);
  EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
  if (file == nullptr) return {};
  Samples all(static_cast<std::size_t>(info.frames) * 2);
  all.resize(static_cast<std::size_t>(sf_readf_float(file, all.data(), info.frames)) * 2);
  sf_close(file);
  return all;
}

/// A live desk with real sound in simulated time, whose queue holds four tracks, two of them at 48 kHz.
class RenderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int track = 0; track < 4; ++track) {
      const int rate = track % 2 == 0 ? 44100 : 48000;
      const QString name = u"Band - Song %1"_s.arg(track + 1);
      WaveKind kind;
      kind.rate = rate;
      database_.Add(
          Paths::Info, name + u".kif"_s,
          "~ALL CATEGORIES\r\n~ALL ARTISTS\r\n~ALL ALBUMS\r\n1999-Dec\r\n120\r\n7\r\n0\r\n3\r\n25\r\n" +
              QByteArray(track == 1 ? "1" : "0") + "\r\n0\r\n?\r\n12\r\n");
      database_.Add(
          Paths::Music, name + u".wav"_s,
          WaveFile(Noise(static_cast<std::size_t>(rate * kSeconds), 1U + static_cast<unsigned>(track)),
                   kind));
    }
    desk_.emplace(Console::Services{.loop = studio_.loop,
                                    .prompter = prompter_,
                                    .audio = studio_.engine,
                                    .settings = settings_,
                                    .catalogue = catalogue_,
                                    .paths = database_.paths,
                                    .title = u"Kelvo"_s,
                                    .aboutLine = u"About Kelvo"_s,
                                    .programFolder = database_.tree.Path(),
                                    .seed = 7});
    desk_->Activate();
    ASSERT_TRUE(studio_.loop.RunUntil([this] { return desk_->CatalogueLoaded(); }));
    const Job<> add = desk_->Queue().AddTracks({ToMref(1), ToMref(2), ToMref(3), ToMref(4)});
    ASSERT_TRUE(studio_.loop.RunUntil([&add] { return !add.Running(); }, 1s));
  }
  [[nodiscard]] QString Target(const QString& name = u"mix.wav"_s) const { return studio_.folder.Path(name); }
  RenderOrder Order(const QString& name = u"mix.wav"_s) {
    return {.desk = SetupOf(*desk_),
            .fill = CopyOfQueue(*desk_),
            .path = Target(name),
            .kind = *RenderKindOf(name)};
  }
  static RenderResult Run(RenderOrder order) {
    RenderRun run(std::move(order));
    run.Run();
    return run.Result();
  }
  [[nodiscard]] QStringList Left() const { return QDir(studio_.folder.Path()).entryList(QDir::Files); }
  /// Every file of the database with what is in it.
  [[nodiscard]] std::map<QString, QByteArray> Database() const {
    std::map<QString, QByteArray> all;
    for (QDirIterator each(database_.tree.Path(), QDir::Files, QDirIterator::Subdirectories);
         each.hasNext();) {
      QFile file(each.next());
      if (file.open(QIODevice::ReadOnly)) all[file.fileName()] = file.readAll();
    }
    return all;
  }
  QString MusicFile(int track) const { return catalogue_.TrackPaths(ToMref(track)); }

  SimulatedStudio studio_;
  TestDatabase database_;
  ScriptedPrompter prompter_;
  ErrorLog log_{studio_.loop, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{studio_.loop, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  std::optional<Console> desk_;
};

TEST_F(RenderTest, TheSamplesAreThoseOfARecordingOfTheSameRun) {
  settings_.Flush();
  const auto before = Database();
  const RenderResult result = Run(Order());
  ASSERT_EQ(result.end, RenderResult::End::Done) << result.error.toStdString();
  EXPECT_EQ(result.titles, 4);
  EXPECT_FALSE(result.endless);
  EXPECT_TRUE(result.skipped.isEmpty());
  EXPECT_EQ(Database(), before) << "the live desk's files are not touched";

  // The live desk, recorded. Its beats are made to fall on the start as those of a desk that has just begun.
  Recorder recorder(studio_.loop);
  const auto tap = studio_.engine.TapOf();
  studio_.loop.RunFor(1s - studio_.loop.Elapsed() % 1s);
  desk_->Status().Stop();
  recorder.Start(tap, Target(u"air.wav"_s), RecordingFile::Kind::Wav);
  studio_.loop.RunFor(1s);
  desk_->Status().Start();
  int starts = 0;
  desk_->Decks().OnStarted = [&, joined = desk_->Decks().OnStarted](Deck deck) {
    ++starts;
    joined(deck);
  };
  desk_->Queue().Select(1);
  desk_->Automatic().ToggleAutoPlay();
  ASSERT_TRUE(studio_.loop.RunUntil([&] { return starts == 4; }));
  studio_.loop.RunFor(2s);
  desk_->Automatic().TogglePauseAtEnd();
  studio_.loop.RunFor(15s);
  recorder.Stop();
  studio_.loop.RunFor(1s);
  ASSERT_EQ(starts, 4);

  const Samples rendered = ReadBack(Target());
  const Samples recorded = ReadBack(Target(u"air.wav"_s));
  const auto sound = [](const Samples& all) {
    return std::find_if(all.begin(), all.end(), [](float each) { return each != 0; });
  };
  const auto here = sound(rendered);
  const auto there = sound(recorded);
  ASSERT_NE(here, rendered.end());
  ASSERT_GE(recorded.end() - there, rendered.end() - here);
  const auto differs = std::mismatch(here, rendered.end(), there);
  EXPECT_EQ(differs.first, rendered.end())
      << "at " << static_cast<double>(differs.first - rendered.begin()) / 2 / kEngineRate << " s";
  EXPECT_TRUE(std::all_of(there + (rendered.end() - here), recorded.end(), [](float each) {
    return each == 0;
  })) << "the render ends with the last track";

  const QString sheet = QString::fromUtf8(studio_.folder.Read(u"mix.cue"_s));
  EXPECT_TRUE(
      sheet.startsWith(u"FILE \"mix.wav\" WAVE\r\n  TRACK 01 AUDIO\r\n    TITLE \"Song 1\"\r\n"
                       "    PERFORMER \"Band\"\r\n    INDEX 01 00:00:00\r\n"_s))
      << sheet.toStdString();
  EXPECT_EQ(sheet.count(u"TRACK"_s), 4);
}

TEST_F(RenderTest, EveryModeAndFormatEndsWithItsLastTitle) {
  struct Case {
    AutoMode mode;
    bool random;
    QString name;
  };
  for (const Case& each :
       {Case{AutoMode::Kelvo, true, u"mix.flac"_s}, Case{AutoMode::Jukebox, false, u"mix.mp3"_s}}) {
    RenderOrder order = Order(each.name);
    order.desk.mode = each.mode;
    order.desk.random = each.random;
    order.desk.seed = 3;
    const RenderResult result = Run(std::move(order));
    ASSERT_EQ(result.end, RenderResult::End::Done) << result.error.toStdString();
    EXPECT_EQ(result.titles, 4) << each.name.toStdString();
    EXPECT_FALSE(result.endless);
    EXPECT_EQ(result.bytes, QFileInfo(Target(each.name)).size());
    const double seconds = static_cast<double>(ReadBack(Target(each.name)).size()) / 2 / kEngineRate;
    EXPECT_NEAR(seconds, result.seconds, 0.1);
    // The gaps of a jukebox are in it, the overlaps of fades shorten it.
    EXPECT_GT(seconds, each.mode == AutoMode::Jukebox ? 48 : 12);
  }
}

TEST_F(RenderTest, AGroupPlaylistIsRenderedAsItRunsAndOneThatRepeatsIsEnded) {
  // On another desk the tracks have other numbers.
  QueueFill fill{.name = u"Mix(Grp)"_s, .group = true, .clearFirst = true, .rows = {}};
  const auto add = [&](int number, int deck, int loaded, int started, bool repeat) {
    GroupElement element{
        .index = 1, .seconds = loaded, .track = ToMref(number), .deck = deck, .length = kSeconds};
    std::vector<GroupElement> line{element};
    element.seconds = started;
    element.code = SessionCode::TrackStarted;
    line.push_back(element);
    element.seconds = 130;
    element.index = 0;
    element.code = SessionCode::Repeat;
    if (repeat) line.push_back(element);
    fill.rows.push_back({ToMref(number), catalogue_.TrackNames[ToMref(number)], MusicFile(number), u"Grp"_s,
                         PrintGroupLine(line)});
  };
  for (const bool repeats : {false, true}) {
    fill.rows.clear();
    add(4, 2, 100, 102, false);
    add(2, 3, 103, 109, false);
    add(1, 2, 116, 118, repeats);
    desk_->Queue().Take(fill);
    const RenderResult result = Run(Order(repeats ? u"again.wav"_s : u"mix.wav"_s));
    ASSERT_EQ(result.end, RenderResult::End::Done) << result.error.toStdString();
    EXPECT_EQ(result.endless, repeats);
    if (repeats) continue;
    EXPECT_EQ(result.titles, 3);
    EXPECT_NEAR(result.seconds, 118 - 102 + kSeconds, 0.1);
    const QString sheet = QString::fromUtf8(studio_.folder.Read(u"mix.cue"_s));
    EXPECT_TRUE(sheet.contains(u"TITLE \"Song 2\"\r\n    PERFORMER \"Band\"\r\n    INDEX 01 00:07:00"_s))
        << sheet.toStdString();
  }
}

TEST_F(RenderTest, WhatCannotBePlayedIsPassedOverAndToldAndNothingAtAllIsAFailure) {
  ASSERT_TRUE(QFile::remove(MusicFile(4)));
  const RenderResult result = Run(Order());
  EXPECT_EQ(result.end, RenderResult::End::Done) << result.error.toStdString();
  EXPECT_EQ(result.titles, 3) << "the first is not played again in place of the last";
  ASSERT_EQ(result.skipped.size(), 1);
  EXPECT_TRUE(result.skipped.front().startsWith(u"Band - Song 4 : "_s))
      << result.skipped.front().toStdString();

  for (int track = 1; track < 4; ++track) ASSERT_TRUE(QFile::remove(MusicFile(track)));
  const RenderResult nothing = Run(Order(u"nothing.wav"_s));
  EXPECT_EQ(nothing.end, RenderResult::End::Failed);
  EXPECT_EQ(nothing.error, u"Nothing In The Play Queue Can Be Played !"_s);
  EXPECT_EQ(Left(), (QStringList{u"mix.cue"_s, u"mix.wav"_s}));
  desk_->Queue().MoveTo(1, 2);
  EXPECT_EQ(Run(Order()).end, RenderResult::End::Failed) << "a file that is there stays";
}

TEST_F(RenderTest, AStopAndAFullDiskLeaveNothing) {
  RenderOrder order = Order();
  RenderRun* stopped = nullptr;
  Timer timer;
  order.fill = [&, fill = order.fill](RenderDesk& desk) {
    timer = desk.Loop().After(20s, [&stopped] { stopped->Stop(); });
    return fill(desk);
  };
  {
    RenderRun run(std::move(order));
    stopped = &run;
    run.Run();
    EXPECT_EQ(run.Result().end, RenderResult::End::Stopped);
    EXPECT_NEAR(run.Seconds(), 19, 2);
    EXPECT_GT(run.Share(), 0.2);
    EXPECT_LT(run.Share(), 0.9);
  }
  EXPECT_EQ(Left(), QStringList());

  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{.rlim_cur = 1'000'000, .rlim_max = before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  const RenderResult full = Run(Order());
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, SIG_DFL);
  EXPECT_EQ(full.end, RenderResult::End::Failed);
  EXPECT_THAT(full.error.toStdString(), HasSubstr(Target().toStdString()));
  EXPECT_EQ(Left(), QStringList());
}

}  // namespace
}  // namespace kelvo

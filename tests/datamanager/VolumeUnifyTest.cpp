// The volume unify, with a tool that does what each test wants of it.

#include "audio/TestSounds.h"
#include "database/TestDatabase.h"
#include "datamanager/FakeGainTool.h"
#include "datamanager/UnifySettings.h"
#include "datamanager/VolumeUnify.h"
#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TurnUntil.h"

#include <QDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

namespace {

QByteArray InfoWith(const QByteArray& gain) {
  return InfoBytes().replace("-3.5,0.2", gain);
}

class UnifyTest : public ::testing::Test {
 protected:
  QString AddTrack(const QString& base, const QByteArray& mode, double gain, const QByteArray& record = "?") {
    CatalogueRow row;
    row.name = base;
    row.extension = u".mp3"_s;
    row.gain = QString::fromUtf8(record);
    database.Add(Paths::Info, base + u".kif"_s, InfoWith(record));
    const QString path = database.Add(Paths::Music, base + u".mp3"_s, FakeGainTool::Music(mode, gain));
    catalogue.Append(row);
    return path;
  }
  VolumeUnify& Make(EventLoop& on, int processes = 2, GainTool::Limits limits = GainTool::Limits()) {
    unify.reset();
    files = std::make_shared<CatalogueGainFiles>(on, catalogue, database.paths);
    VolumeUnify::Services services{.loop = on,
                                   .disks = disks,
                                   .prompter = prompter,
                                   .settings = ProgramSettings(settings, u"Kelvo"_s),
                                   .files = files,
                                   .tool = GainTool(on, toolPath, limits),
                                   .measuredFile = database.tree.Path(u"cache/gains.txt"_s),
                                   .processes = processes};
    services.inUse = [this](const QString& path) { return inUse && inUse(path); };
    unify = std::make_unique<VolumeUnify>(std::move(services));
    unify->List();
    return *unify;
  }
  void List() {
    ASSERT_TRUE(loop.RunUntil([this] { return !unify->Listing(); }));
  }
  void Unify() {
    List();
    unify->Unify();
    ASSERT_TRUE(loop.RunUntil([this] { return !unify->Running(); }));
    loop.RunFor(1s);
  }
  const UnifyRow& Row(const QString& base) {
    for (const UnifyRow& row : unify->Rows().All()) {
      if (row.path.contains(u'/' + base + u'.')) return row;
    }
    ADD_FAILURE() << "no row " << base.toStdString();
    return unify->Rows()[0];
  }
  QByteArray Music(const QString& base) {
    return database.tree.Read(Paths::FolderName(Paths::Music) + u'/' + base + u".mp3"_s);
  }

  TestDatabase database;
  SimulatedEventLoop loop;
  ScriptedPrompter prompter;
  ErrorLog log{loop, prompter, database.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings{loop, database.tree.Path(u"settings.ini"_s)};
  Disks disks{loop};
  Catalogue catalogue;
  FakeGainTool tool{database.tree};
  QString toolPath = tool.Path();
  std::shared_ptr<CatalogueGainFiles> files;
  std::function<bool(const QString&)> inUse;
  std::unique_ptr<VolumeUnify> unify;

  void SetUp() override { catalogue.Replace(CatalogueTables(database.paths(Paths::Music))); }
};

TEST_F(UnifyTest, EveryFileGetsToTheTargetTheSameWithAnyNumberOfProcesses) {
  QByteArrayList seen;
  for (const int processes : {1, 3}) {
    catalogue.Replace(CatalogueTables(database.paths(Paths::Music)));
    database.tree.Write(u"mp3gain.log"_s, "");
    database.tree.Write(u"cache/gains.txt"_s, "");
    AddTrack(u"A - Loud"_s, "ok", -6.1);
    AddTrack(u"B - Quiet"_s, "tagged", 3.0, "86.0,3.0");
    AddTrack(u"C - Right"_s, "ok", 0.4);
    AddTrack(u"D - Known"_s, "ok", 9.0, "80.0,0.0");
    AddTrack(u"E - Cut"_s, "cut", -14.2);
    // The tool's own temporary file would have this name.
    const QString temporary = database.Add(Paths::Music, u"A - Loud.TMP"_s, "mine");
    QFile(catalogue.TrackPaths(ToMref(1))).setPermissions(QFile::ReadOwner);
    Make(loop, processes);
    Unify();
    EXPECT_EQ(Row(u"A - Loud"_s).change, u"0.0"_s);
    EXPECT_EQ(FakeGainTool::Steps(Music(u"A - Loud"_s)), -4);
    EXPECT_EQ(FakeGainTool::Steps(Music(u"B - Quiet"_s)), 2);
    EXPECT_EQ(FakeGainTool::Steps(Music(u"C - Right"_s)), 0);
    EXPECT_EQ(FakeGainTool::Steps(Music(u"E - Cut"_s)), -9) << "the gain in its tag is cut off at 10";
    EXPECT_EQ(Music(u"D - Known"_s), FakeGainTool::Music("ok", 9.0)) << "its change is 0.0";
    for (const QString& call : tool.Calls()) EXPECT_FALSE(call.contains(u"D - Known"_s));
    EXPECT_EQ(tool.Calls(u"/o /s s"_s).size(), 3) << "what a tag tells is not measured";
    EXPECT_EQ(tool.Calls(u"/g"_s).size(), 3);
    EXPECT_EQ(database.Info(u"A - Loud"_s), InfoWith("89.1,0.0")) << "nothing else in the file changes";
    EXPECT_EQ(database.Info(u"C - Right"_s), InfoWith("88.6,0.0"));
    EXPECT_EQ(catalogue.TrackGain[ToMref(1)], u"89.1,0.0"_s);
    EXPECT_EQ(unify->SumWords(), u"3 changed, 1 right already."_s);
    EXPECT_EQ(unify->Words(), QString());
    EXPECT_EQ(unify->Chosen(), (std::vector<int>{0, 1, 2, 4}));
    EXPECT_EQ(QFile::exists(temporary), true);
    EXPECT_EQ(QDir(database.paths(Paths::Music))
                  .entryList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)
                  .size(),
              6);
    QByteArray all;
    for (const char16_t* base : {u"A - Loud", u"B - Quiet", u"C - Right", u"D - Known", u"E - Cut"})
      all += Music(QString::fromUtf16(base)) + database.Info(QString::fromUtf16(base));
    seen.append(all);
  }
  EXPECT_EQ(seen[0], seen[1]);
  EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(UnifyTest, AFileInUseWaitsAndIsDoneWhenItIsFreeWhateverItsNameIsByThen) {
  const QString held = AddTrack(u"A - Held"_s, "ok", 3.0);
  AddTrack(u"B - Free"_s, "ok", 3.0);
  QString inDeck = held;
  inUse = [&inDeck](const QString& path) { return path == inDeck; };
  Make(loop);
  List();
  unify->Unify();
  ASSERT_TRUE(loop.RunUntil([this] { return unify->Words() == u"Waiting for 1 track in use"_s; }));
  EXPECT_EQ(Music(u"A - Held"_s), FakeGainTool::Music("ok", 3.0));
  EXPECT_EQ(FakeGainTool::Steps(Music(u"B - Free"_s)), 2);
  EXPECT_EQ(Row(u"A - Held"_s).state, UnifyState::Waiting);
  EXPECT_EQ(database.Info(u"A - Held"_s), InfoWith("86.0,3.0")) << "what was measured is kept";
  loop.RunFor(10min);
  EXPECT_TRUE(unify->Running());
  // Taken into a deck again while the tool works on its copy, and renamed while it waits.
  int asked = 0;
  inUse = [&asked](const QString&) { return ++asked == 2; };
  ASSERT_TRUE(loop.RunUntil([&asked] { return asked >= 2; }));
  EXPECT_EQ(Music(u"A - Held"_s), FakeGainTool::Music("ok", 3.0));
  QFile::rename(held, database.paths(Paths::Music) + u"/A - New.mp3"_s);
  QFile::rename(database.paths(Paths::Info) + u"/A - Held.kif"_s,
                database.paths(Paths::Info) + u"/A - New.kif"_s);
  catalogue.Rename(ToMref(1), u"A - New.mp3"_s);
  ASSERT_TRUE(loop.RunUntil([this] { return !unify->Running(); }));
  EXPECT_EQ(FakeGainTool::Steps(Music(u"A - New"_s)), 2);
  EXPECT_EQ(database.Info(u"A - New"_s), InfoWith("89.0,0.0"));

  AddTrack(u"C - Held"_s, "ok", 3.0);
  inUse = [](const QString&) { return true; };
  List();
  unify->Unify();
  ASSERT_TRUE(loop.RunUntil([this] { return unify->Words().startsWith(u"Waiting"_s); }));
  unify->Cancel();
  ASSERT_TRUE(loop.RunUntil([this] { return !unify->Running(); }));
  EXPECT_EQ(unify->Words(), u"Operation Cancelled ! "_s);
  EXPECT_EQ(Row(u"C - Held"_s).words, u"Left as it is: it is in use"_s);
  EXPECT_EQ(unify->SumWords(), u"1 left out."_s);
}

TEST_F(UnifyTest, WhatWasMeasuredIsKeptByACancelAndByARestart) {
  for (int track = 0; track < 6; ++track) AddTrack(u"T%1 - Song"_s.arg(track), "ok", 3.0);
  Make(loop, 1);
  List();
  // From inside the run, when the third file is about to be changed.
  int asked = 0;
  inUse = [&](const QString&) {
    if (++asked == 5) unify->Cancel();
    return false;
  };
  Unify();
  EXPECT_EQ(unify->Words(), u"Operation Cancelled ! "_s);
  EXPECT_EQ(unify->SumWords(), u"2 changed, 4 left out."_s);
  EXPECT_EQ(database.Info(u"T1 - Song"_s), InfoWith("89.0,0.0"));
  EXPECT_EQ(database.Info(u"T2 - Song"_s), InfoWith("86.0,3.0"));
  EXPECT_EQ(database.Info(u"T3 - Song"_s), InfoWith("?"));
  inUse = nullptr;
  Make(loop, 2);
  Unify();
  EXPECT_EQ(tool.Calls(u"/o /s s"_s).size(), 6) << "no file is measured twice";
  EXPECT_EQ(tool.Calls(u"/g"_s).size(), 2 + 4);
  // For another target too; and the files that were changed are known as they are now.
  Make(loop, 2);
  List();
  std::vector<int> all{0, 1, 2, 3, 4, 5};
  unify->SetTarget(u"86"_s, u"0"_s, all);
  ASSERT_TRUE(loop.RunUntil([this] { return Row(u"T5 - Song"_s).change == u"-3.0"_s; }));
  Unify();
  EXPECT_EQ(tool.Calls(u"/o /s s"_s).size(), 6);
  EXPECT_EQ(tool.Calls(u"/g -2"_s).size(), 6);
  EXPECT_EQ(database.Info(u"T5 - Song"_s), InfoWith("83.0,0.0")) << "the volume counts the target twice";
  // One that changed behind our back is measured anew.
  database.Add(Paths::Music, u"T5 - Song.mp3"_s, FakeGainTool::Music("ok", -3.0) + "more");
  unify->Measure({5});
  ASSERT_TRUE(loop.RunUntil([this] { return !unify->Running(); }));
  EXPECT_EQ(tool.Calls(u"/o /s s"_s).size(), 7);
  EXPECT_EQ(Row(u"T5 - Song"_s).change, u"-6.0"_s);
  EXPECT_EQ(tool.Calls(u"/g"_s).size(), 12) << "measuring changes nothing";
}

TEST_F(UnifyTest, AToolThatFailsSpoilsNoFile) {
  const auto expectWhole = [this](const QString& base, const QByteArray& mode) {
    EXPECT_EQ(Music(base), FakeGainTool::Music(mode, 3.0)) << mode.toStdString();
  };
  QStringList words;
  // One bad file, and a good one behind it that is done all the same.
  for (const QByteArray mode : {"garbage", "named", "absurd", "die", "cantopen"}) {
    catalogue.Replace(CatalogueTables(database.paths(Paths::Music)));
    const QString bad = u"A "_s + QString::fromUtf8(mode);
    const QString good = u"B "_s + QString::fromUtf8(mode);
    AddTrack(bad, mode, 3.0);
    AddTrack(good, "ok", 3.0);
    Make(loop, 1);
    words.clear();
    QObject::connect(unify.get(), &VolumeUnify::Changed, [&] { words.append(unify->Words()); });
    Unify();
    expectWhole(bad, mode);
    EXPECT_EQ(FakeGainTool::Steps(Music(good)), 2) << mode.toStdString();
    EXPECT_EQ(Row(bad).state, UnifyState::Failed);
    EXPECT_EQ(unify->SumWords(), u"1 changed, 1 failed."_s);
    const QString path = database.paths(Paths::Music) + u'/' + bad + u".mp3"_s;
    QString told = u"Error While Analyzing: "_s + bad + u".mp3"_s;
    if (mode == "cantopen") told = u"Cannot Open File "_s + path;
    if (mode == "named") told = u"Error While Analyzing: Not enough samples in %1 to do analysis"_s.arg(path);
    if (mode == "absurd") told = u"Error While Analyzing: "_s + path;
    EXPECT_TRUE(words.contains(told)) << mode.toStdString() << words.join(u'\n').toStdString();
    if (mode != "cantopen") {
      EXPECT_EQ(Row(bad).volume, u"?"_s);
    }
  }
  EXPECT_TRUE(prompter.asked.empty());
  // What ends the whole run, with a message.
  for (const QByteArray mode : {"full", "truncate", "other", "nothing", "killed"}) {
    catalogue.Replace(CatalogueTables(database.paths(Paths::Music)));
    const QString bad = u"A "_s + QString::fromUtf8(mode);
    AddTrack(bad, mode, 3.0);
    AddTrack(u"B "_s + QString::fromUtf8(mode), "ok", 3.0);
    Make(loop, 1);
    Unify();
    expectWhole(bad, mode);
    EXPECT_EQ(FakeGainTool::Steps(Music(u"B "_s + QString::fromUtf8(mode))), 0);
    EXPECT_TRUE(prompter.Told().last().startsWith(mode == "full"
                                                      ? u"Cannot Continue..No Disc Space Left"_s
                                                      : u"Cannot Continue..The Volume Tool Failed"_s))
        << mode.toStdString();
  }
  toolPath = u"/nowhere/mp3gain"_s;
  Make(loop);
  Unify();
  EXPECT_THAT(prompter.Told().last().toStdString(), HasSubstr("mp3gain"));
  EXPECT_EQ(prompter.asked.size(), 6U);
}

TEST_F(UnifyTest, AToolThatHangsOrFloodsIsEnded) {
  AddTrack(u"A - Hangs"_s, "hang", 3.0);
  AddTrack(u"B - Floods"_s, "flood", 3.0);
  AddTrack(u"C - Good"_s, "ok", 3.0);
  QtEventLoop real;
  Make(real, 3, {.silence = 1s, .bytes = 100'000});
  // The looks at disks are those of the simulated loop.
  const auto until = [this](const std::function<bool()>& holds) {
    return TurnUntil([&] {
      loop.RunFor(1ms);
      return holds();
    });
  };
  ASSERT_TRUE(until([this] { return !unify->Listing(); }));
  unify->Unify();
  ASSERT_TRUE(until([this] { return !unify->Running(); }));
  EXPECT_EQ(unify->SumWords(), u"1 changed, 2 failed."_s);
  // And by the operator.
  unify->Unify();
  ASSERT_TRUE(until([this] { return Row(u"A - Hangs"_s).state == UnifyState::Analysing; }));
  unify->Cancel();
  ASSERT_TRUE(until([this] { return !unify->Running(); }));
  EXPECT_EQ(unify->Words(), u"Operation Cancelled ! "_s);
  unify.reset();
}

TEST_F(UnifyTest, WhatIsNoMp3IsMeasuredAndNeverGivenToTheTool) {
  const QByteArray sound = WaveFile(Sine(1000, 5));
  const QString path = database.Add(Paths::Music, u"A - Wave.wav"_s, sound);
  CatalogueRow row;
  row.name = u"A - Wave"_s;
  row.extension = u".wav"_s;
  database.Add(Paths::Info, u"A - Wave.kif"_s, InfoWith("?"));
  catalogue.Append(row);
  Make(loop);
  Unify();
  EXPECT_TRUE(tool.Calls().isEmpty());
  EXPECT_TRUE(unify->Chosen().empty());
  // A sine of 1 kHz at half of full scale on both sides: -6.0 LUFS, which is 101 dB.
  EXPECT_NEAR(Row(u"A - Wave"_s).volume.toDouble(), 101, 0.3);
  EXPECT_EQ(Row(u"A - Wave"_s).state, UnifyState::CantChange);
  EXPECT_EQ(Row(u"A - Wave"_s).words, u"Measured; can't be changed"_s);
  EXPECT_TRUE(catalogue.TrackGain[ToMref(1)].endsWith(u",0.0"_s)) << "it is not asked about again";
  EXPECT_EQ(QFile(path).size(), sound.size());
}

TEST_F(UnifyTest, TheTargetIsCutToItsRangeAndAskedAboveTheRecommended) {
  AddTrack(u"A - Song"_s, "ok", 3.0);
  Make(loop);
  List();
  unify->Measure({0});
  ASSERT_TRUE(loop.RunUntil([this] { return !unify->Running(); }));
  const auto set = [this](const QString& whole, const QString& tenths) {
    unify->SetTarget(whole, tenths, {0});
    loop.RunFor(100ms);
    return QString::number(unify->TargetInt()) + u'.' + QString::number(unify->TargetDec());
  };
  prompter.answers = {Answer::Yes, Answer::Yes, Answer::No};
  EXPECT_EQ(set(u"92"_s, u"0"_s), u"92.0"_s);
  EXPECT_EQ(Row(u"A - Song"_s).volume, u"89.0"_s);
  EXPECT_EQ(Row(u"A - Song"_s).change, u"6.0"_s);
  EXPECT_EQ(set(u"110"_s, u"57"_s), u"105.5"_s);
  EXPECT_EQ(prompter.asked.back().help.topic, 9100);
  EXPECT_TRUE(prompter.Told().last().startsWith(u"The Recommended Maximum Db Setting is: 89\r\n"_s));
  EXPECT_EQ(set(u"100"_s, u"0"_s), u"89.0"_s) << "No: what the settings hold";
  EXPECT_EQ(set(u"12"_s, u"3"_s), u"75.3"_s);
  EXPECT_DOUBLE_EQ(unify->GainAdjust(), -13.7);
  EXPECT_EQ(set(u""_s, u"3"_s), u"75.3"_s);
  EXPECT_EQ(Music(u"A - Song"_s), FakeGainTool::Music("ok", 3.0)) << "a preview touches no file";
  unify->KeepTarget();
  EXPECT_EQ(settings.GetSetting(u"Kelvo"_s, u"MpGain"_s, u"GainInt"_s, {}), u"75"_s);
  EXPECT_EQ(settings.GetSetting(u"Kelvo"_s, u"MpGain"_s, u"GainDec"_s, {}), u"3"_s);
}

TEST_F(UnifyTest, PlainFilesNeedNoDatabase) {
  const QString snippet = database.tree.Write(u"Quiz Mixers/Gong.mp3"_s, FakeGainTool::Music("ok", -3.0));
  VolumeUnify plain({.loop = loop,
                     .disks = disks,
                     .prompter = prompter,
                     .settings = ProgramSettings(settings, u"Kelvo"_s),
                     .files = std::make_shared<PlainGainFiles>(QStringList{snippet, u"/nowhere/x.mp3"_s}),
                     .tool = GainTool(loop, toolPath)});
  plain.List();
  ASSERT_TRUE(loop.RunUntil([&] { return !plain.Listing(); }));
  plain.Unify();
  ASSERT_TRUE(loop.RunUntil([&] { return !plain.Running(); }));
  EXPECT_EQ(plain.SumWords(), u"1 changed, 1 failed."_s);
  EXPECT_EQ(FakeGainTool::Steps(database.tree.Read(u"Quiz Mixers/Gong.mp3"_s)), -2);

  // Nor do the jingles of the database have an info file.
  const QString jingle = database.Add(Paths::Jingles, u"Horn.mp3"_s, FakeGainTool::Music("ok", 3.0));
  catalogue.AddJingle(jingle);
  Make(loop);
  unify->ListOnly({jingle});
  Unify();
  EXPECT_EQ(unify->SumWords(), u"1 changed."_s);
  EXPECT_EQ(Row(u"Horn"_s).volume, u"89.0"_s);
}

TEST(TreatedCopies, TakeTheFilesPlaceWholeOrNotAtAll) {
  const TemporaryTree tree;
  const QByteArray before = FakeGainTool::Music("ok", 3.0);
  const QByteArray after = QByteArray(before).replace("+000", "+002");
  const QString path = tree.Write(u"song.mp3"_s, before);
  QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
  const QString copy = PrepareTreatedCopy(path);
  const auto take = [&] { TakeTreatedCopy(copy, path); };
  int step = 0;
  for (;; ++step) {
    tree.Write(u"song.mp3"_s, before);
    tree.Write(u".kelvo-gain/song.mp3"_s, after);
    if (!KilledBefore(step, take)) break;
    EXPECT_TRUE(tree.Read(u"song.mp3"_s) == before || tree.Read(u"song.mp3"_s) == after);
  }
  EXPECT_GE(step, 2) << "the flush and the renaming";
  EXPECT_EQ(tree.Read(u"song.mp3"_s), after);
  EXPECT_FALSE(QFile(path).permissions() & QFile::ReadOther);
  tree.Write(u".kelvo-gain/other.mp3"_s, "left by a killed run");
  DropCopies(path);
  EXPECT_FALSE(tree.Exists(u".kelvo-gain"_s));
}

}  // namespace

#include "console/ConsoleSettings.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using testing::TemporaryTree;

class ConsoleSettingsTest : public ::testing::Test {
 protected:
  void Set(const QString& section, const QString& key, const QString& value) {
    store_.SaveSetting(u"Kelvo"_s, section, key, value);
  }
  [[nodiscard]] QString Get(const QString& section, const QString& key) const {
    return store_.GetSetting(u"Kelvo"_s, section, key);
  }
  [[nodiscard]] ConsoleSettings Read() const { return ReadConsoleSettings(store_, u"Kelvo"_s, tree_.Path()); }

  TemporaryTree tree_;
  SimulatedEventLoop loop_;
  SettingsStore store_{loop_, tree_.Path(u"settings.ini"_s)};
};

TEST_F(ConsoleSettingsTest, WhatIsMissingOrNoNumberTakesItsDefault) {
  for (const QString& key : {u"FFwFRev"_s, u"DefaultFadeSpeed"_s, u"PrevSecs"_s})
    Set(u"Startup"_s, key, u"many"_s);
  Set(u"Startup"_s, u"DefaultDelta"_s, u"99999999"_s);
  Set(u"Startup"_s, u"DmanAccess"_s, u"maybe"_s);
  const ConsoleSettings settings = Read();
  EXPECT_EQ(settings.decks.FFwFRev, 5);
  EXPECT_EQ(settings.JukeLag, 2);
  EXPECT_EQ(settings.defaults.DefaultFadeSpeed, 25);
  EXPECT_EQ(settings.defaults.DefaultDelta, 32767) << "held at the end of its type";
  EXPECT_EQ(settings.PrevSecs, 15);
  EXPECT_EQ(settings.PanFadeBias, 12);
  EXPECT_TRUE(settings.DmanAccess);
  EXPECT_TRUE(settings.decks.FixTrackDur);
  EXPECT_TRUE(settings.decks.AfadeSet);
  EXPECT_EQ(settings.PFLDevice, -1);
  EXPECT_EQ(settings.PFLDeviceName, u"None"_s);
  EXPECT_EQ(settings.AudioWarningFilePath, tree_.Path(u"ello.Mp3"_s));
}

TEST_F(ConsoleSettingsTest, TheCorrectionOfDurationsIsOnForTheNumberOneAlone) {
  const std::pair<QString, bool> values[] = {
      {u"1"_s, true}, {u"True"_s, false}, {u"0"_s, false}, {u"-1"_s, false}};
  for (const auto& [text, on] : values) {
    Set(u"Startup"_s, u"FixTrackDurErrors"_s, text);
    EXPECT_EQ(Read().decks.FixTrackDur, on) << text.toStdString();
  }
}

TEST_F(ConsoleSettingsTest, AudioWarningsNeedTheirFileForThisRunOnly) {
  Set(u"Startup"_s, u"AudioWarnings"_s, u"1"_s);
  EXPECT_FALSE(Read().AudioWarningsOn);
  EXPECT_EQ(Get(u"Startup"_s, u"AudioWarnings"_s), u"1"_s);
  tree_.Write(u"ello.Mp3"_s, "sound");
  EXPECT_TRUE(Read().AudioWarningsOn);
}

TEST_F(ConsoleSettingsTest, ThePasswordIsReadOnlyWhenItGuardsSomething) {
  Set(u"Startup"_s, u"DmanPassWord"_s, u"secret"_s);
  EXPECT_EQ(Read().DmanPassWord, QString());
  Set(u"Startup"_s, u"DmanAccess"_s, u"False"_s);
  EXPECT_EQ(Read().DmanPassWord, u"secret"_s);
}

TEST_F(ConsoleSettingsTest, TheListsOfTheDeskAreReadAndWrittenBackAlike) {
  const QString jingles = u"-600,1200,7,Horn,Clap,,Bell,1,2,,4,Rock,Amber,Gold"_s;
  Set(u"ConStartup"_s, u"JingleSettings"_s, jingles);
  Set(u"ConStartup"_s, u"PlaySettings"_s, u"33,8,-500"_s);
  Set(u"Startup"_s, u"PanFadeBias"_s, u"15"_s);
  const ConsoleSettings settings = Read();
  EXPECT_EQ(settings.jingles.jingleVolume, -600);
  EXPECT_EQ(settings.jingles.autoFadeDepth, 1200);
  EXPECT_EQ(settings.jingles.autoFadeSpeed, 7);
  EXPECT_THAT(settings.jingles.captions, ElementsAre(u"Horn"_s, u"Clap"_s, u""_s, u"Bell"_s));
  EXPECT_THAT(settings.jingles.tags, ElementsAre(u"1"_s, u"2"_s, u""_s, u"4"_s));
  EXPECT_THAT(settings.jingles.filters, ElementsAre(u"Rock"_s, u"Amber"_s, u"Gold"_s));
  EXPECT_EQ(settings.play.fadeSpeed, 33);
  EXPECT_EQ(settings.play.delta, 8);
  EXPECT_EQ(settings.play.monitorVolume, -500);

  SaveConsoleSettings(store_, u"Kelvo"_s, settings, 1280, 800);
  EXPECT_EQ(Get(u"ConStartup"_s, u"JingleSettings"_s), jingles);
  EXPECT_EQ(Get(u"ConStartup"_s, u"PlaySettings"_s), u"33,8,-500"_s);
  EXPECT_EQ(Get(u"ConStartup"_s, u"Width"_s), u"1280"_s);
  EXPECT_EQ(Get(u"ConStartup"_s, u"Height"_s), u"800"_s);
  EXPECT_EQ(Get(u"ConStartup"_s, u"PanFadeBias"_s), u"15"_s);
}

TEST_F(ConsoleSettingsTest, TheBiasThatTheDeskWritesIsReadByNobody) {
  Set(u"ConStartup"_s, u"PanFadeBias"_s, u"3"_s);
  EXPECT_EQ(Read().PanFadeBias, 12);
}

TEST_F(ConsoleSettingsTest, ShortListsLeaveTheRestAtRest) {
  Set(u"Startup"_s, u"DefaultFadeSpeed"_s, u"40"_s);
  EXPECT_EQ(Read().play.fadeSpeed, 40) << "without a list of its own the slider takes the default speed";
  Set(u"ConStartup"_s, u"JingleSettings"_s, u"-600"_s);
  Set(u"ConStartup"_s, u"PlaySettings"_s, u"900"_s);
  EXPECT_EQ(Read().jingles.autoFadeDepth, 0);
  EXPECT_EQ(Read().jingles.autoFadeSpeed, 1);
  EXPECT_EQ(Read().play.fadeSpeed, 50);
  EXPECT_EQ(Read().play.delta, 0);
}

TEST_F(ConsoleSettingsTest, AColourIsThreeNumbersUpTo255AndNothingElse) {
  EXPECT_EQ(ReadColour(store_, u"Kelvo"_s, ColourGroup::Console), (Colour{164, 117, 56}));
  EXPECT_EQ(ReadColour(store_, u"Kelvo"_s, ColourGroup::Lists), (Colour{66, 189, 166}));
  for (const QString& text :
       {u"10,20"_s, u"10,20,256"_s, u"10,20,-1"_s, u"10,20,30,40"_s, u"a,b,c"_s, u""_s}) {
    Set(u"Startup"_s, u"DeckBackCol"_s, text);
    EXPECT_EQ(ReadColour(store_, u"Kelvo"_s, ColourGroup::Decks), std::nullopt) << text.toStdString();
  }
  Set(u"Startup"_s, u"DeckBackCol"_s, u" 0, 255 ,7"_s);
  EXPECT_EQ(ReadColour(store_, u"Kelvo"_s, ColourGroup::Decks)->ToText(), u"0,255,7"_s);
}

}  // namespace
}  // namespace kelvo

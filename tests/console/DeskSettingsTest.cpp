// The settings of the desk, as they are read from the store and act on the joined desk.

#include "console/DeskFixture.h"
#include "console/decks/DeckSettings.h"
#include "database/DatabaseSettings.h"

#include <array>

namespace kelvo {
namespace {

using namespace testing;
using ::testing::ElementsAre;

class DeskSettingsTest : public DeskTest {
 protected:
  void SetDesk(const QString& key, const QString& value) {
    settings_.SaveSetting(u"Kelvo"_s, u"ConStartup"_s, key, value);
  }
  [[nodiscard]] QString Desk(const QString& key) {
    return settings_.GetSetting(u"Kelvo"_s, u"ConStartup"_s, key);
  }
  ProgramSettings read_{settings_, u"Kelvo"_s};
};

TEST_F(DeskSettingsTest, WhatIsMissingOrNoNumberTakesItsDefault) {
  for (const QString& key : {u"FFwFRev"_s, u"DefaultFadeSpeed"_s, u"PrevSecs"_s}) Set(key, u"many"_s);
  Set(u"DefaultDelta"_s, u"99999999"_s);
  Set(u"DmanAccess"_s, u"maybe"_s);
  EXPECT_EQ(read_.Get(setting::FFwFRev), 5);
  EXPECT_EQ(read_.Get(setting::JukeLag), 2);
  EXPECT_EQ(read_.Get(setting::PrevSecs), 15);
  EXPECT_EQ(read_.Get(setting::PanFadeBias), 12);
  EXPECT_TRUE(read_.Get(setting::DmanAccess));
  EXPECT_TRUE(read_.Get(setting::FixTrackDurErrors));
  EXPECT_TRUE(read_.Get(setting::AfadeSet));
  EXPECT_FALSE(read_.Get(setting::AudioWarnings));
  const TrackDefaults defaults = ReadTrackDefaults(read_);
  EXPECT_EQ(defaults.DefaultFade, 0);
  EXPECT_EQ(defaults.DefaultFadeSpeed, 25);
  EXPECT_EQ(defaults.DefaultDelta, 32767) << "held at the end of its type";
  SetDesk(u"PanFadeBias"_s, u"3"_s);
  EXPECT_EQ(read_.Get(setting::PanFadeBias), 12) << "what the desk writes is not what it reads";
}

TEST_F(DeskSettingsTest, TheListsOfTheDeskAreReadAndWrittenBackAlike) {
  const QString jingles = u"600,1200,7,Station Id J,Clap,,Bell,Station Id July,Clap,,Bell,Rock,Amber,Gold"_s;
  SetDesk(u"JingleSettings"_s, jingles);
  SetDesk(u"PlaySettings"_s, u"33,8,5"_s);
  Set(u"PanFadeBias"_s, u"15"_s);
  Make();
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 33);
  EXPECT_EQ(desk_->Automatic().SldDelta(), 8);
  EXPECT_EQ(desk_->Speak().DepthSlider(), 1200);
  EXPECT_EQ(desk_->Speak().SpeedSlider(), 7);
  desk_->SaveSettings();
  EXPECT_EQ(Desk(u"JingleSettings"_s), jingles);
  EXPECT_EQ(Desk(u"PlaySettings"_s), u"33,8,5"_s);
  EXPECT_EQ(Desk(u"PanFadeBias"_s), u"15"_s);
}

TEST_F(DeskSettingsTest, ACommaInACaptionShiftsNoOtherField) {
  JingleSettings jingles;
  jingles.captions = {u"Hip, hip"_s, u"100%"_s, u""_s, u"%2C"_s};
  jingles.tags = {u"one,two"_s, u"2"_s, u"3"_s, u"4"_s};
  jingles.filters = QStringList{u"Rock, Pop"_s};
  EXPECT_EQ(jingles.ToSetting(), u"0,1000,5,Hip%2C hip,100%,,%252C,one%2Ctwo,2,3,4,Rock%2C Pop"_s);
  read_.Set(setting::JingleSettings, jingles);
  const std::optional<JingleSettings> again = read_.Get(setting::JingleSettings);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->captions, jingles.captions);
  EXPECT_EQ(again->tags, jingles.tags);
  EXPECT_EQ(again->filters, jingles.filters);
}

TEST_F(DeskSettingsTest, ShortListsLeaveTheRestAtRest) {
  Set(u"DefaultFadeSpeed"_s, u"40"_s);
  Make();
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 40) << "without a list of its own the slider takes the default speed";
  SetDesk(u"JingleSettings"_s, u"-600"_s);
  SetDesk(u"PlaySettings"_s, u"900"_s);
  const std::optional<JingleSettings> jingles = read_.Get(setting::JingleSettings);
  ASSERT_TRUE(jingles);
  EXPECT_EQ(jingles->autoFadeDepth, 0);
  EXPECT_EQ(jingles->autoFadeSpeed, 1);
  Make();
  EXPECT_EQ(desk_->Fades().FadeSpeed(), 50);
  EXPECT_EQ(desk_->Automatic().SldDelta(), 0);
  SetDesk(u"PlaySettings"_s, u"NoPlay"_s);
  EXPECT_FALSE(read_.Get(setting::PlaySettings));
}

TEST_F(DeskSettingsTest, AChangeActsOnTheRunningDesk) {
  AddThreeTracks();
  database_.Add(Paths::Music, u"new.mp3"_s);
  QFile::remove(database_.paths(Paths::Info) + u"/alpha.kif"_s);
  Open();
  EnqueueAll();
  QFile::remove(database_.paths(Paths::Info) + u"/alpha.kif"_s);
  read_.Set(setting::DefaultFadeSpeed, 44);
  Load(Deck::One, 1);
  EXPECT_EQ(Record(Deck::One).Play.FadeSpeed.fadeOut, 44);
  read_.Set(setting::FFwFRev, 20);
  Decks().BeginFastMove(Deck::One, FastMove::Forward);
  Decks().EndFastMove(Deck::One);
  EXPECT_EQ(Record(Deck::One).Position, 20);

  read_.Set(setting::PanFadeBias, 3);
  Decks().ManualStart(Deck::One);
  Load(Deck::Two, 2);
  desk_->Fades().BeginTransition(Deck::Two, TransitionKind::Pan);
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Fades().CrossPan() >= -100; }, 60s));
  EXPECT_EQ(Record(Deck::Two).Loss, 3 * -desk_->Fades().CrossPan());
}

}  // namespace
}  // namespace kelvo

// The configuration: the real window, joined with the desk, over the real store of settings.

#include "app/BesideTheDesk.h"
#include "config/windows/ConfigWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/Fader.h"
#include "ui/Panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

const QString kAlter = u"Are You Sure You Want To Alter Configuration Settings ?"_s;

class TheConfiguration : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    for (const Group group : {Group::Console, Group::Decks, Group::Lists, Group::Bites})
      colours_.emplace_back(group, Theme::GroupColour(group));
  }
  void TearDown() override {
    beside_.reset();
    window_.reset();
    for (const auto& [group, colour] : colours_) Theme::SetGroupColour(group, colour);
  }
  void OpenConfiguration() {
    if (!window_) OpenDesk();
    Press(u"Configuration"_s);
    Dialog().activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return Dialog().isActiveWindow(); }));
  }
  static ConfigWindow& Dialog() { return *Opened<ConfigWindow>(); }
  template <typename Control>
  static Control& Find(const QString& name) {
    return *FindNamed<Control>(Dialog(), name);
  }
  static void GoTo(int tab) { Find<QTabWidget>(u"TabStrip1"_s).setCurrentIndex(tab); }
  void Click(const QString& name) {
    Find<QAbstractButton>(name).click();
    loop_.RunFor(100ms);
  }
  /// With the keyboard: Home, and arrows up.
  static void Move(const QString& slider, int value) {
    auto& fader = Find<Fader>(slider);
    QTest::keyClick(&fader, fader.orientation() == Qt::Vertical ? Qt::Key_End : Qt::Key_Home);
    if (fader.value() != fader.minimum()) QTest::keyClick(&fader, Qt::Key_Home);
    while (fader.value() < value) QTest::keyClick(&fader, Qt::Key_Up);
    EXPECT_EQ(fader.value(), value) << slider.toStdString();
  }
  static void Choose(const QString& box, const QString& words) {
    auto& combo = Find<QComboBox>(box);
    const int index = combo.findText(words);
    ASSERT_GE(index, 0);
    combo.setCurrentIndex(index);
    Q_EMIT combo.activated(index);
  }
  [[nodiscard]] QString Stored(const QString& key, const QString& section = u"Startup"_s) const {
    return settings_.GetSetting(u"Kelvo"_s, section, key, u"nothing"_s);
  }
  QColor HeadOf(const QString& title) {
    for (auto* panel : window_->findChildren<kelvo::Panel*>()) {
      if (panel->Title().startsWith(title)) return panel->grab().toImage().pixelColor(panel->width() / 2, 2);
    }
    ADD_FAILURE() << "no panel " << title.toStdString();
    return {};
  }

  std::vector<std::pair<Group, QColor>> colours_;
};

TEST_F(TheConfiguration, EveryKindOfSettingIsSavedAndActsAtOnce) {
  Set(u"PFLDeviceName"_s, u"Headphones"_s);
  Set(u"PFLDeviceId"_s, u"usb-2"_s);
  audio_.outputIds = {{u"Headphones"_s, u"usb-1"_s}};
  OpenConfiguration();
  QTest::keyClick(Dialog().focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(Dialog().focusWidget()->objectName(), u"SldSpectralDisplay"_s) << "from the tabs into the page";
  for (int tab = 0; tab < 6; ++tab) {
    GoTo(tab);
    ExpectWellLaidOut(Dialog());
  }
  EXPECT_TRUE(Find<QLabel>(u"LblDeviceTrouble"_s).text().startsWith(u"It isn't there"_s));
  EXPECT_EQ(Find<QListWidget>(u"LstSCards"_s).currentItem()->text(), u"Headphones  (not there)"_s)
      << "it was its twin";
  Move(u"Slider2"_s, 7);
  Move(u"Slider1"_s, 33);
  Move(u"Slider3"_s, 9);
  Move(u"Slider4"_s, 20);
  Move(u"Slider5"_s, 25);
  Move(u"Slider6"_s, 3);
  EXPECT_EQ(Find<QLabel>(u"Text1"_s).text(), u"33"_s);
  for (const QString& check : {u"Check1"_s, u"Check3"_s, u"Check5"_s, u"ChkVbr"_s}) Click(check);
  Click(u"Option4"_s);
  Choose(u"List1"_s, u"192"_s);
  Choose(u"List2"_s, u"48000"_s);
  Choose(u"List3"_s, u"0"_s);
  Choose(u"cboOption"_s, u"8  Extreme"_s);
  Find<QListWidget>(u"LstSCards"_s).setCurrentRow(1);
  EXPECT_EQ(Find<QLabel>(u"LblCScard"_s).text(), u"Headphones"_s);
  Find<QListWidget>(u"LstSCards"_s).setCurrentRow(0);
  EXPECT_EQ(Find<QLabel>(u"LblCScard"_s).text(), u"Headphones"_s) << "the programme's output is no monitor";

  EnqueueAll();
  desk_->Pfl().OpenFile(catalogue_.TrackPaths(ToMref(1)), u"Alpha"_s);
  loop_.RunFor(100ms);
  ASSERT_TRUE(desk_->Pfl().DeviceMissing());
  prompter_.answers = {Answer::Yes};
  Click(u"Command1"_s);
  EXPECT_EQ(prompter_.Told().last(), kAlter);
  EXPECT_FALSE(Dialog().isVisible());
  for (const auto& [key, value] : std::initializer_list<std::pair<QString, QString>>{
           {u"DefaultDelta"_s, u"7"_s},
           {u"DefaultFadeSpeed"_s, u"33"_s},
           {u"SpectralDisplay"_s, u"9"_s},
           {u"FFwFRev"_s, u"20"_s},
           {u"PrevSecs"_s, u"25"_s},
           {u"PanFadeBias"_s, u"3"_s},
           {u"JukeLag"_s, u"4"_s},
           {u"AfadeSet"_s, u"False"_s},
           {u"AudioWarnings"_s, u"0"_s},
           {u"FixTrackDurErrors"_s, u"0"_s},
           {u"PFLDevice"_s, u"1"_s},
           {u"PFLDeviceName"_s, u"Headphones"_s},
           {u"PFLDeviceId"_s, u"usb-1"_s},
           {u"ConBackCol"_s, u"164,117,56"_s},
           {u"AudioWarningFilePath"_s, database_.tree.Path(u"ello.Mp3"_s)}})
    EXPECT_EQ(Stored(key), value) << key.toStdString();
  EXPECT_EQ(Stored(u"Presets"_s, u"Mp3Encoding"_s), u"8,192,48000,0,0"_s);

  loop_.RunFor(100ms);
  EXPECT_FALSE(desk_->Pfl().DeviceMissing()) << "what is open in the monitor goes on there";
  desk_->Pfl().Close();
  QFile::remove(database_.paths(Paths::Info) + u"/alpha.kif"_s);
  Load(Deck::One, 1);
  EXPECT_EQ(Record(Deck::One).Play.FadeSpeed.fadeOut, 33);
  EXPECT_EQ(Record(Deck::One).Play.FadePosition.fadeOut, 7);
  Decks().BeginFastMove(Deck::One, FastMove::Forward);
  Decks().EndFastMove(Deck::One);
  EXPECT_EQ(Record(Deck::One).Position, 20);
}

TEST_F(TheConfiguration, ColoursAreSeenOnTheDeskAtOnceAndGoWithACancel) {
  OpenConfiguration();
  GoTo(1);
  Move(u"SldConRed"_s, 10);
  Move(u"SldConGreen"_s, 20);
  Move(u"SldConBlue"_s, 30);
  EXPECT_EQ(HeadOf(u"AUTO PLAY"_s), QColor(10, 20, 30));
  EXPECT_EQ(Find<QLabel>(u"Labgr_0"_s).text(), u"Green 20"_s);
  EXPECT_EQ(Find<QLabel>(u"LblUnsaved"_s).text(), u"Not saved yet"_s);
  EXPECT_EQ(Stored(u"ConBackCol"_s), u"nothing"_s);
  prompter_.answers = {Answer::Cancel, Answer::No};
  QTest::keyClick(&Dialog(), Qt::Key_Escape);
  EXPECT_TRUE(Dialog().isVisible());
  QTest::keyClick(&Dialog(), Qt::Key_Escape);
  EXPECT_FALSE(Dialog().isVisible());
  EXPECT_EQ(prompter_.Told(), (QStringList{u"Save Changes ?"_s, u"Save Changes ?"_s}));
  EXPECT_EQ(Stored(u"ConBackCol"_s), u"nothing"_s);
  EXPECT_EQ(HeadOf(u"AUTO PLAY"_s), QColor(164, 117, 56));

  OpenConfiguration();
  EXPECT_EQ(Find<Fader>(u"SldConRed"_s).value(), 164);
  Move(u"SldConRed"_s, 255);
  prompter_.answers = {Answer::Yes};
  QTest::keyClick(&Dialog(), Qt::Key_Escape);
  EXPECT_FALSE(Dialog().isVisible());
  EXPECT_EQ(Stored(u"ConBackCol"_s), u"255,117,56"_s);
  EXPECT_EQ(HeadOf(u"AUTO PLAY"_s), QColor(255, 117, 56)) << "what was saved stays";
}

TEST_F(TheConfiguration, AResetIsInTheFormAloneAndCanBeUndone) {
  Set(u"PanFadeBias"_s, u"20"_s);
  Set(u"PrevSecs"_s, u"30"_s);
  Set(u"DeckBackCol"_s, u"1,2,3"_s);
  OpenConfiguration();
  GoTo(5);
  EXPECT_FALSE(Find<QPushButton>(u"Command3"_s).isEnabled());
  Click(u"Check4_11"_s);
  Click(u"Check4_6"_s);
  EXPECT_EQ(Find<QCheckBox>(u"Check4_11"_s).text(), u"Pan Fade Bias"_s);
  prompter_.answers = {Answer::No, Answer::Yes};
  Click(u"Command3"_s);
  EXPECT_EQ(Find<Fader>(u"Slider6"_s).value(), 20);
  Click(u"Command3"_s);
  EXPECT_EQ(prompter_.Told().last(),
            u"The Selected Values Have Been Reset\r\nPlease Examine The Reset Values, Then Click Save And "
            "Close !"_s);
  EXPECT_EQ(Find<Fader>(u"Slider6"_s).value(), 15);
  EXPECT_EQ(Find<Fader>(u"Slider5"_s).value(), 30) << "it was not ticked";
  EXPECT_EQ(HeadOf(u"AUDIO STREAM ONE"_s), QColor(44, 166, 211));
  EXPECT_EQ(Stored(u"PanFadeBias"_s), u"20"_s);
  Click(u"Command8"_s);
  EXPECT_EQ(Find<Fader>(u"Slider6"_s).value(), 20);
  EXPECT_EQ(HeadOf(u"AUDIO STREAM ONE"_s), QColor(1, 2, 3));
  EXPECT_FALSE(Find<QPushButton>(u"Command8"_s).isEnabled());
  QTest::keyClick(&Dialog(), Qt::Key_Escape);
  EXPECT_FALSE(Dialog().isVisible()) << "nothing to save is left";
}

TEST_F(TheConfiguration, PresetsThatCannotBeEncodedStopTheSave) {
  settings_.SaveSetting(u"Kelvo"_s, u"Mp3Encoding"_s, u"Presets"_s, u"4,137,22050,4,1"_s);
  OpenConfiguration();
  EXPECT_EQ(Find<QComboBox>(u"List1"_s).currentText(), u"137"_s);
  Move(u"Slider6"_s, 3);
  prompter_.answers = {Answer::Yes, Answer::Ok, Answer::Yes, Answer::Ok, Answer::Yes};
  Click(u"Command1"_s);
  EXPECT_EQ(prompter_.Told().last(), u"The Mp3 Quality Setting 137 Is Not A valid Option !"_s);
  EXPECT_EQ(Stored(u"PanFadeBias"_s), u"nothing"_s);
  EXPECT_TRUE(Dialog().isVisible());
  Choose(u"List1"_s, u"192"_s);
  EXPECT_EQ(Find<QComboBox>(u"List1"_s).findText(u"137"_s), -1);
  Click(u"Command1"_s);
  EXPECT_EQ(prompter_.Told().last(), u"At A Sample Rate Of 22050 The Bit Rate Can Be No More Than 160 !"_s);
  Choose(u"List1"_s, u"160"_s);
  Click(u"Command1"_s);
  EXPECT_FALSE(Dialog().isVisible());
  EXPECT_EQ(Stored(u"Presets"_s, u"Mp3Encoding"_s), u"4,160,22050,4,1"_s);
}

TEST_F(TheConfiguration, AWarningLoopMayLastThreeQuartersOfASecond) {
  const QString fits = database_.tree.Write(u"fits.mp3"_s, "x");
  const QString longer = database_.tree.Write(u"longer.mp3"_s, "x");
  audio_.SetDuration(fits, 0.75);
  audio_.SetDuration(longer, 0.76);
  OpenConfiguration();
  EXPECT_TRUE(Find<QLabel>(u"LblLoopTrouble"_s).isVisible());
  EXPECT_FALSE(Find<QPushButton>(u"CmdPlayLoop"_s).isEnabled());
  prompter_.paths = {longer, fits};
  prompter_.answers = {Answer::Ok};
  Click(u"Command6"_s);
  EXPECT_EQ(prompter_.Told().last(),
            u"The file longer.mp3 Duration Is too long for Warning loop\r\nLength Can Be No More Than 0.75 "
            "Seconds !"_s);
  EXPECT_EQ(Stored(u"AudioWarningFilePath"_s), u"nothing"_s);
  Click(u"Command6"_s);
  EXPECT_EQ(Stored(u"AudioWarningFilePath"_s), fits) << "at once";
  EXPECT_EQ(Find<QLabel>(u"LblWarningLoop"_s).text(), fits);
  EXPECT_FALSE(Find<QLabel>(u"LblLoopTrouble"_s).isVisible());
  Click(u"CmdPlayLoop"_s);
  EXPECT_EQ(audio_.players.back()->FileName(), fits);
  EXPECT_EQ(audio_.players.back()->State(), PlayState::Playing);

  // On air only the monitor may sound.
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdPlayLoop"_s).isEnabled());
  EXPECT_FALSE(Find<QPushButton>(u"Command4"_s).isEnabled());
  Find<QListWidget>(u"LstSCards"_s).setCurrentRow(1);
  EXPECT_TRUE(Find<QPushButton>(u"CmdPlayLoop"_s).isEnabled());
  EXPECT_TRUE(Find<QPushButton>(u"Command4"_s).isEnabled());
}

TEST_F(TheConfiguration, WhatIsStoredAndMakesNoSenseLoadsAsDefaultsWithinTheRanges) {
  for (const QString& key : {u"DefaultFadeSpeed"_s, u"PanFadeBias"_s, u"JukeLag"_s, u"ConBackCol"_s})
    Set(key, u"-nonsense,"_s);
  Set(u"DefaultDelta"_s, u"99999"_s);
  Set(u"PrevSecs"_s, u"-4"_s);
  settings_.SaveSetting(u"Kelvo"_s, u"Mp3Encoding"_s, u"Presets"_s, u"4,128,x"_s);
  OpenConfiguration();
  EXPECT_EQ(Find<Fader>(u"Slider1"_s).value(), 25);
  EXPECT_EQ(Find<Fader>(u"Slider6"_s).value(), 15);
  EXPECT_EQ(Find<Fader>(u"Slider2"_s).value(), 60);
  EXPECT_EQ(Find<Fader>(u"Slider5"_s).value(), 1);
  EXPECT_TRUE(Find<QRadioButton>(u"Option2"_s).isChecked());
  EXPECT_EQ(Find<Fader>(u"SldConRed"_s).value(), 164);
  EXPECT_EQ(Find<QComboBox>(u"List1"_s).currentText(), u"128"_s);
  EXPECT_TRUE(Find<QLabel>(u"LblUnsaved"_s).text().isEmpty());
}

TEST_F(TheConfiguration, IsClosedToAnAiringDeskAndFollowsTheOutputs) {
  OpenDesk();
  audio_.outputNames = QStringList{u"Main"_s};
  OpenConfiguration();
  EXPECT_FALSE(Find<QListWidget>(u"LstSCards"_s).isEnabled());
  audio_.outputNames = QStringList{u"Main"_s, u"Booth"_s};
  loop_.RunFor(2s);
  EXPECT_TRUE(Find<QListWidget>(u"LstSCards"_s).isEnabled());
  EXPECT_EQ(Find<QListWidget>(u"LstSCards"_s).item(1)->text(), u"Booth"_s);
  QTest::keyClick(&Dialog(), Qt::Key_Escape);
  audio_.outputNames.clear();
  OpenConfiguration();
  EXPECT_EQ(prompter_.Told().last(), u"No Audio Mixers Detected! src: CMixer:Create"_s);
  QTest::keyClick(&Dialog(), Qt::Key_Escape);

  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  EXPECT_FALSE(Offered(u"Configuration"_s));
}

}  // namespace

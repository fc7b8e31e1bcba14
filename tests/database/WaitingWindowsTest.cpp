// The windows over the files that wait in the utility folder.

#include "database/ImportOnScreen.h"
#include "database/windows/TransferWindow.h"
#include "database/windows/UtilityWindow.h"
#include "ui/Fader.h"
#include "ui/ProgressStrip.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>

namespace kelvo {
namespace {

using testing::OnScreen;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

/// Remembers the player of the window, to see what is heard.
class HeardAudio : public ClockAudio {
 public:
  using ClockAudio::ClockAudio;
  std::unique_ptr<MediaPlayer> MakePlayer(const QString& output) override {
    auto made = ClockAudio::MakePlayer(output);
    player = made.get();
    return made;
  }
  MediaPlayer* player = nullptr;
};

class UtilityOnScreen : public OnScreen<UtilityWindow, UtilityFolder> {
 protected:
  void OpenUtility() {
    Open({.loop = loop_,
          .settings = {settings_, u"Kelvo"_s},
          .audio = heard_,
          .catalogue = catalogue_,
          .paths = database_.paths});
  }
  QString Playing() { return Find<QLabel>(u"LblPlaying"_s).text(); }
  HeardAudio heard_{loop_};
};

TEST_F(UtilityOnScreen, TheFilesThatWaitAreListedAndHeard) {
  OpenUtility();
  EXPECT_EQ(List().model()->rowCount(), 0);
  EXPECT_FALSE(Enabled(u"CmdPlay"_s));
  EXPECT_FALSE(Enabled(u"CmdStop"_s));
  database_.Add(Paths::Utility, u"Amber/Way#2005-Dec# #.mp3"_s);
  database_.Add(Paths::Utility, u"Zulu/plain.wav"_s);
  QTest::keyClick(&*shown_, Qt::Key_F5);
  loop_.RunFor(100ms);
  EXPECT_THAT(Names(), ElementsAre(u"Way.mp3"_s, u"plain.wav"_s));
  EXPECT_EQ(Cell(0, 1), u"Amber"_s);

  List().selectRow(1);
  Click(u"CmdPlay"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(Playing(), u"Currently Playing Sample plain.wav"_s);
  EXPECT_EQ(heard_.player->State(), PlayState::Playing);
  Click(u"CmdStop"_s);
  EXPECT_EQ(Playing(), QString());
  EXPECT_NE(heard_.player->State(), PlayState::Playing);
  EXPECT_FALSE(Enabled(u"CmdStop"_s));
  List().selectRow(0);
  QTest::keyClick(&List(), Qt::Key_Return);
  loop_.RunFor(100ms);
  EXPECT_EQ(Playing(), u"Currently Playing Sample Way.mp3"_s);
  shown_->close();
  EXPECT_NE(heard_.player->State(), PlayState::Playing) << "nobody sees what would sound";
}

TEST_F(UtilityOnScreen, TheVolumeIsSetByItsSliderAndFoundAgain) {
  OpenUtility();
  auto& slider = Find<Fader>(u"SldVolume"_s);
  slider.setFocus();
  for (int press = 0; press < 3; ++press) QTest::keyClick(&slider, Qt::Key_Left);
  const int loss = 3 * slider.singleStep();
  EXPECT_EQ(slider.value(), loss) << "to the left is softer";
  EXPECT_EQ(heard_.player->Volume(), -2 * loss);
  loop_.RunFor(1s);
  OpenUtility();
  EXPECT_EQ(Find<Fader>(u"SldVolume"_s).value(), loss);
  EXPECT_EQ(heard_.player->Volume(), -2 * loss);
}

TEST_F(UtilityOnScreen, AFileThatCannotBePlayedIsTold) {
  heard_.SetDuration(database_.Add(Paths::Utility, u"Amber/broken.mp3"_s), -1);
  OpenUtility();
  List().selectRow(0);
  Click(u"CmdPlay"_s);
  loop_.RunFor(1s);
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_TRUE(prompter_.asked[0].text.startsWith(u"broken.mp3 cannot be played.\r\n"_s))
      << prompter_.asked[0].text.toStdString();
  EXPECT_EQ(Playing(), QString());
  EXPECT_FALSE(Enabled(u"CmdStop"_s));
}

class TransferOnScreen : public OnScreen<TransferWindow, Transfer> {
 protected:
  void OpenTransfer() {
    Open({.loop = loop_,
          .prompter = prompter_,
          .audio = audio_,
          .catalogue = catalogue_,
          .paths = database_.paths,
          .settings = {settings_, u"Kelvo"_s}});
    loop_.RunFor(1s);
  }
  QString Stage(const QString& title) {
    return database_.Add(Paths::Utility, u"Amber/"_s + title + u"#2005-Dec#Best#.mp3"_s);
  }
};

TEST_F(TransferOnScreen, FilesAreSelectedEditedAndDeletedByTheirButtons) {
  OpenTransfer();
  EXPECT_FALSE(Enabled(u"CmdMove"_s));
  EXPECT_FALSE(Enabled(u"CmdSelectAll"_s));
  const QString first = Stage(u"Amber - One"_s);
  const QString second = Stage(u"Amber - Two"_s);
  QTest::keyClick(&*shown_, Qt::Key_F5);
  loop_.RunFor(1s);
  ASSERT_EQ(List().model()->rowCount(), 2);
  Click(u"CmdSelectAll"_s);
  EXPECT_EQ(Find<QPushButton>(u"CmdSelectAll"_s).text(), u"Clear All"_s);
  EXPECT_TRUE(Enabled(u"CmdDelete"_s));
  Click(u"CmdSelectAll"_s);
  EXPECT_EQ(Find<QPushButton>(u"CmdSelectAll"_s).text(), u"Select All"_s);
  EXPECT_FALSE(Enabled(u"CmdDelete"_s));

  catalogue_.AddReference(ReferenceSet::Genres, u"Blues"_s);
  catalogue_.AddReference(ReferenceSet::Genres, u"Rock"_s);
  const QModelIndex category = List().model()->index(0, TransferRows::Category);
  List().setCurrentIndex(category);
  QTest::keyClick(&List(), Qt::Key_F2);
  auto* choice = List().viewport()->findChild<QComboBox*>();
  ASSERT_NE(choice, nullptr);
  EXPECT_EQ(Find<QLabel>(u"LblTransfer"_s).text(), u"Extracting Genre Names"_s);
  EXPECT_GE(choice->findText(u"Rock"_s, Qt::MatchFixedString), 0);
  choice->setEditText(u"Folk"_s);
  QTest::keyClick(choice->lineEdit(), Qt::Key_Return);
  QCoreApplication::processEvents();
  EXPECT_EQ(category.data().toString(), u"Folk"_s);

  const bool oneIsFirst = Cell(0).contains(u"One"_s);
  List().selectRow(0);
  prompter_.answers = {Answer::No};
  Click(u"CmdDelete"_s);
  loop_.RunFor(1s);
  EXPECT_TRUE(QFile::exists(first) && QFile::exists(second));
  prompter_.answers = {Answer::Yes};
  Click(u"CmdDelete"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(
      prompter_.Told().last(),
      u"This Action Will Delete All Selected Files in The List !\r\nContinue With Delete ?\r\n\r\n1 file is "
      "selected."_s);
  EXPECT_TRUE(Find<QLabel>(u"LblTransfer"_s).text().startsWith(u"1 File Deleted"_s));
  EXPECT_FALSE(QFile::exists(oneIsFirst ? first : second));
  EXPECT_TRUE(QFile::exists(oneIsFirst ? second : first));
  EXPECT_EQ(List().model()->rowCount(), 1);
}

TEST_F(TransferOnScreen, AFileThatIsNoMusicStaysAndIsToldOf) {
  const QString broken = Stage(u"Amber - Broken"_s);
  const QString good = Stage(u"Amber - Good"_s);
  audio_.SetDuration(broken, -1);
  OpenTransfer();
  Click(u"CmdSelectAll"_s);
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  EXPECT_FALSE(Enabled(u"CmdMove"_s)) << "one run at a time";
  EXPECT_TRUE(Find<QPushButton>(u"CmdStop"_s).isVisible());
  loop_.RunFor(5s);
  EXPECT_FALSE(Find<QPushButton>(u"CmdStop"_s).isVisible());
  EXPECT_THAT(Names(), ElementsAre(u"Amber - Broken.mp3"_s));
  EXPECT_EQ(prompter_.asked.size(), 2U) << "the question and the trouble";
  EXPECT_TRUE(QFile::exists(broken));
  EXPECT_FALSE(QFile::exists(good));
  EXPECT_TRUE(database_.Holds(Paths::Music, u"Amber - Good.mp3"_s));
  EXPECT_EQ(catalogue_.LastTrack(), 1);
}

TEST_F(TransferOnScreen, WhatTheFilterShowsIsWhatIsMovedAndDeleted) {
  const QString one = Stage(u"Amber - \u00C9t\u00E9"_s);
  const QString two = Stage(u"Amber - Two"_s);
  OpenTransfer();
  QTest::keyClick(&*shown_, Qt::Key_F, Qt::ControlModifier);
  auto& filter = Find<QLineEdit>(u"TxtFilter"_s);
  ASSERT_TRUE(filter.hasFocus());
  QTest::keyClicks(&filter, u"two"_s);
  QTest::keyClick(&filter, Qt::Key_Return);
  ASSERT_TRUE(List().hasFocus());
  EXPECT_THAT(Names(), ElementsAre(u"Amber - Two.mp3"_s));
  EXPECT_TRUE(Find<QLabel>(u"LblTransfer"_s).text().startsWith(u"It cannot be moved: "_s))
      << "it is no music";
  prompter_.answers = {Answer::Yes};
  Click(u"CmdDelete"_s);
  EXPECT_FALSE(Find<ProgressStrip>(u"PrgFile"_s).isVisible()) << "nothing is copied";
  loop_.RunFor(1s);
  EXPECT_FALSE(QFile::exists(two));
  filter.setText(u"ete"_s);
  EXPECT_EQ(Names().size(), 1) << "typed without accents";
  Click(u"CmdSelectAll"_s);
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  EXPECT_TRUE(Find<ProgressStrip>(u"PrgFile"_s).isVisible());
  loop_.RunFor(5s);
  EXPECT_FALSE(QFile::exists(one));
  EXPECT_EQ(catalogue_.LastTrack(), 1);
}

TEST_F(TransferOnScreen, AStopLeavesWhatIsNotMovedAndARunGoesOnInAClosedWindow) {
  for (int number = 0; number < 6; ++number) Stage(u"Amber - Song %1"_s.arg(number));
  OpenTransfer();
  Click(u"CmdSelectAll"_s);
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  Click(u"CmdStop"_s);
  loop_.RunFor(5s);
  const int left = List().model()->rowCount();
  EXPECT_GT(left, 0);
  EXPECT_EQ(catalogue_.LastTrack(), 6 - left);
  EXPECT_EQ(Find<QLabel>(u"LblTransfer"_s).text(), u"%1 Of 6 Files Moved"_s.arg(6 - left));
  List().selectAll();
  prompter_.answers = {Answer::Yes};
  Click(u"CmdMove"_s);
  shown_->close();
  loop_.RunFor(10s);
  EXPECT_EQ(catalogue_.LastTrack(), 6);
  EXPECT_EQ(List().model()->rowCount(), 0);
}

}  // namespace
}  // namespace kelvo

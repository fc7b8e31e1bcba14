#include "app/BesideTheDesk.h"
#include "playlists/windows/PlayEditWindow.h"
#include "playlists/windows/WaveEndView.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/Fader.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class PlayEditBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    Set(u"PFLDeviceName"_s, u"Headphones"_s);
    OpenDesk();
    EnqueueAll();
  }
  /// The queue's row is selected and its button pressed.
  void EditRow(int index) {
    Queue().Click(index);
    QTest::mouseClick(FindNamed<QPushButton>(*window_, u"CmdClEdit"_s), Qt::LeftButton);
    loop_.RunFor(1s);
  }
  PlayEditWindow& Shown() { return *Opened<PlayEditWindow>(); }
  /// With the keyboard in the window.
  void PressEscape() {
    Shown().activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return Shown().isActiveWindow(); }));
    QTest::keyClick(&Shown(), Qt::Key_Escape);
    loop_.RunFor(1s);
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(Shown(), name);
  }
  void Press(const QString& name) {
    QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    loop_.RunFor(1s);
  }
  QString Told() { return prompter_.asked.empty() ? QString() : prompter_.asked.back().text; }
  /// The players of the monitor's try that run.
  [[nodiscard]] std::vector<FaultyPlayer*> Trying(std::size_t before) const {
    std::vector<FaultyPlayer*> found;
    for (std::size_t place = before; place < audio_.players.size(); ++place) {
      if (audio_.players[place]->State() == PlayState::Playing) found.push_back(audio_.players[place]);
    }
    return found;
  }
};

TEST_F(PlayEditBesideTheDesk, FieldsGoToTheFileTheListsAndTheDeckThatHoldsTheTrack) {
  Load(Deck::One, 2);
  EXPECT_EQ(Record(Deck::One).Info, u"Starts: Soft : Ends: Strong"_s);
  EditRow(2);
  ASSERT_TRUE(Shown().isVisible());
  ExpectWellLaidOut(Shown());
  EXPECT_LE(Shown().minimumSizeHint().width(), 1000);
  EXPECT_LE(Shown().minimumSizeHint().height(), 700);
  EXPECT_EQ(Find<QLabel>(u"Label2"_s).text(), u"Artist And Song Title : beta"_s);
  EXPECT_EQ(Find<QCheckBox>(u"Check1"_s).text(), u"This Track Will Play Using Custom Settings As Below"_s);
  Press(u"Check1"_s);
  EXPECT_EQ(Find<QCheckBox>(u"Check1"_s).text(), u"This Track Will Play Using Kelvo Default Settings"_s);
  EXPECT_FALSE(Find<Fader>(u"Slider1_0"_s).isEnabled());
  Press(u"Check1"_s);
  Press(u"Option5_1"_s);
  EXPECT_FALSE(Find<Fader>(u"Slider2_1"_s).isEnabled()) << "a dub has no speed";
  EXPECT_TRUE(Find<Fader>(u"Slider2_0"_s).isEnabled());
  Press(u"Option1"_s);
  QTest::keyClick(&Find<Fader>(u"Slider1_0"_s), Qt::Key_Right);
  auto& genre = Find<QComboBox>(u"Combo4_0"_s);
  genre.lineEdit()->selectAll();
  QTest::keyClicks(genre.lineEdit(), u"Fresh"_s);
  Press(u"Command4_0"_s);
  Find<QPlainTextEdit>(u"Text4"_s).setPlainText(u"Loud\nend"_s);
  Press(u"Command1"_s);
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_EQ(Told(), QString()) << "nothing was asked";

  const QByteArray file = database_.Info(u"beta"_s);
  EXPECT_TRUE(file.startsWith("~ALL CATEGORIES,Rock,Pop,Fresh\r\n")) << file.toStdString();
  EXPECT_TRUE(file.contains("\r\n1,2,1\r\n11,5\r\n20,30\r\n1\r\n1\r\n-3.5,0.2\r\n60\r\nLoud\r\nend\r\n"))
      << file.toStdString();
  EXPECT_TRUE(catalogue_.GenreList.contains(u"Fresh"_s));
  EXPECT_EQ(Record(Deck::One).Play.FadePosition.fadeOut, 11);
  EXPECT_EQ(Record(Deck::One).Info, u"Starts: Strong : Ends: Strong"_s);
  EXPECT_TRUE(Record(Deck::One).TrackInfoText.contains(u"Loud\r\nend"_s));
  EXPECT_EQ(Queue().Selected(), 2);
}

TEST_F(PlayEditBesideTheDesk, ClosingWithChangesAsksAndAnotherTrackWaitsForTheAnswer) {
  EditRow(1);
  Press(u"Option1"_s);
  prompter_.answers = {Answer::Cancel};
  PressEscape();
  EXPECT_EQ(Told(), u"Save Changes ?"_s);
  ASSERT_TRUE(Shown().isVisible());
  prompter_.answers = {Answer::Cancel};
  EditRow(3);
  EXPECT_EQ(Find<QLabel>(u"Label2"_s).text(), u"Artist And Song Title : alpha"_s);
  EXPECT_TRUE(Find<QRadioButton>(u"Option1"_s).isChecked());
  const QByteArray before = database_.Info(u"alpha"_s);
  prompter_.answers = {Answer::No};
  Press(u"Command2"_s);
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_EQ(database_.Info(u"alpha"_s), before);
  EditRow(1);
  Press(u"Option1"_s);
  prompter_.answers = {Answer::Yes};
  Press(u"Command2"_s);
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_NE(database_.Info(u"alpha"_s), before);
  EXPECT_EQ(catalogue_.TrackStartEnd[ToMref(1)], u"1,1"_s);

  // Another form of the console takes its place and asks nothing: the changes are still there.
  EditRow(2);
  Press(u"Option1"_s);
  QTest::mouseClick(FindNamed<QPushButton>(*window_, u"Command14"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_FALSE(Shown().isVisible());
  EditRow(2);
  EXPECT_TRUE(Shown().isVisible());
  EXPECT_TRUE(Find<QRadioButton>(u"Option1"_s).isChecked());
  EXPECT_TRUE(Find<QAbstractButton>(u"Command1"_s).isEnabled());
}

TEST_F(PlayEditBesideTheDesk, TheFadePointIsDraggedAndMovedByKeysUnlessTheDefaultsCount) {
  EditRow(1);
  auto& end = Find<WaveEndView>(u"WaveFadeIn"_s);
  auto& start = Find<WaveEndView>(u"WaveFadeOut"_s);
  EXPECT_EQ(end.value(), 10);
  const auto at = [](const WaveEndView& view, double share) {
    return QPoint(static_cast<int>((view.width() - 1) * share), view.height() / 2);
  };
  QTest::mousePress(&end, Qt::LeftButton, {}, at(end, 0.5));
  QTest::mouseMove(&end, at(end, 0.75));
  QTest::mouseRelease(&end, Qt::LeftButton, {}, at(end, 0.75));
  EXPECT_EQ(Find<Fader>(u"Slider1_0"_s).value(), kWaveSeconds / 4) << "seconds before the end";
  QTest::keyClick(&end, Qt::Key_Left);
  EXPECT_EQ(Find<Fader>(u"Slider1_0"_s).value(), kWaveSeconds / 4 + 1);
  QTest::keyClick(&start, Qt::Key_Left);
  EXPECT_EQ(Find<Fader>(u"Slider1_1"_s).value(), 4);
  Press(u"Check1"_s);
  QTest::mouseClick(&end, Qt::LeftButton, {}, at(end, 0.1));
  EXPECT_EQ(Find<Fader>(u"Slider1_0"_s).value(), kWaveSeconds / 4 + 1);
  EXPECT_FALSE(end.grab().isNull());
  // A fade longer than the picture and the slider keeps its length.
  prompter_.answers = {Answer::No};
  Press(u"Command2"_s);
  database_.Add(Paths::Info, u"alpha.kif"_s, InfoBytes("8").replace("10,5", "300,5"));
  EditRow(1);
  EXPECT_EQ(Find<Fader>(u"Slider1_0"_s).value(), 300);
  Press(u"Rsetd"_s);
  EXPECT_EQ(Find<Fader>(u"Slider3"_s).minimum(), 8);
  EXPECT_EQ(Find<Fader>(u"Slider3"_s).maximum(), 8);
  ExpectWellLaidOut(Shown());
  Press(u"Command6"_s);
  Press(u"Command1"_s);
  EXPECT_TRUE(database_.Info(u"alpha"_s).contains("\r\n300,5\r\n"));
}

TEST_F(PlayEditBesideTheDesk, ATrialIsHeardInTheMonitorAloneAndNeverOnTheMainOutput) {
  Load(Deck::Two, 3);
  const std::size_t before = audio_.players.size();
  EditRow(2);
  EXPECT_EQ(Find<QPushButton>(u"CmdTryIt"_s).text(), u"Try It"_s);
  Press(u"CmdTryIt"_s);
  loop_.RunFor(1s);
  EXPECT_EQ(Find<QPushButton>(u"CmdTryIt"_s).text(), u"Stop"_s);
  // The row before, from five seconds ahead of its own ten on.
  std::vector<FaultyPlayer*> playing = Trying(before);
  ASSERT_EQ(playing.size(), 1U);
  EXPECT_TRUE(playing[0]->FileName().endsWith(u"/alpha.mp3"_s));
  EXPECT_NEAR(playing[0]->CurrentPosition(), 47, 1.1);
  loop_.RunFor(5s);
  playing = Trying(before);
  ASSERT_EQ(playing.size(), 2U);
  EXPECT_TRUE(playing[1]->FileName().endsWith(u"/beta.mp3"_s));
  EXPECT_LT(playing[1]->CurrentPosition(), 5);
  loop_.RunFor(20s);
  EXPECT_TRUE(Trying(before).empty()) << "it ends by itself";
  EXPECT_EQ(Find<QPushButton>(u"CmdTryIt"_s).text(), u"Try It"_s);
  for (std::size_t place = before; place < audio_.players.size(); ++place)
    EXPECT_EQ(audio_.outputs[place], u"Headphones"_s);
  EXPECT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  EXPECT_EQ(desk_->State().CrossPan, desk_->Fades().CrossPan());

  Press(u"CmdTryIt"_s);
  Press(u"CmdTryIt"_s);
  EXPECT_TRUE(Trying(before).empty()) << "stopped by hand";
  Press(u"CmdTryIt"_s);
  desk_->Pfl().SetDevice(u"Main"_s);
  loop_.RunFor(1s);
  EXPECT_TRUE(Trying(before).empty()) << "the device was changed to the one on air";
  auto& tryIt = Find<QPushButton>(u"CmdTryIt"_s);
  EXPECT_FALSE(tryIt.isEnabled());
  EXPECT_TRUE(tryIt.toolTip().endsWith(u"The monitor's device is the one that is on air"_s));
  desk_->Pfl().SetDevice(u"None"_s);
  EXPECT_TRUE(tryIt.toolTip().endsWith(u"No sound device is chosen for the monitor"_s));
  desk_->Pfl().SetDevice(u"Headphones"_s);
  EXPECT_TRUE(tryIt.isEnabled());
  Press(u"CmdTryIt"_s);
  PressEscape();
  EXPECT_FALSE(Shown().isVisible());
  EXPECT_TRUE(Trying(before).empty()) << "it goes with the window";
}

TEST_F(PlayEditBesideTheDesk, OpensOnTheTrackOfTheDeckOfTheLibraryOrOfTheQueue) {
  Load(Deck::One, 3);
  QTest::mouseClick(FindNamed<QPushButton>(*window_, u"CmdDeckEdit1"_s), Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_EQ(Find<QLabel>(u"Label2"_s).text(), u"Artist And Song Title : gamma"_s);
  Shown().close();
  loop_.RunFor(1s);
  auto* words = FindNamed<QLineEdit>(*window_, u"TrackFilter"_s);
  words->setText(u"beta"_s);
  loop_.RunFor(1s);
  auto* list = FindNamed<QAbstractItemView>(*window_, u"TrackList"_s);
  window_->activateWindow();
  list->setFocus();
  list->setCurrentIndex(list->model()->index(0, 0));
  QTest::keyClick(list, Qt::Key_E, Qt::ControlModifier);
  loop_.RunFor(1s);
  ASSERT_TRUE(Shown().isVisible());
  EXPECT_EQ(Find<QLabel>(u"Label2"_s).text(), u"Artist And Song Title : beta"_s);
}

TEST_F(PlayEditBesideTheDesk, ATrackOnAirAndOneThatWaitsObeyFromTheNextDecision) {
  desk_->Automatic().ToggleAutoPlay();
  loop_.RunFor(20s);
  ASSERT_EQ(Record(Deck::One).State, DeckState::Playing);
  ASSERT_EQ(Record(Deck::Two).State, DeckState::Loaded);
  EXPECT_EQ(desk_->Automatic().AutoDelta(), 10);
  EditRow(1);
  Find<Fader>(u"Slider1_0"_s).setFocus();
  for (int press = 0; press < 3; ++press) QTest::keyClick(&Find<Fader>(u"Slider1_0"_s), Qt::Key_PageUp);
  const int chosen = Find<Fader>(u"Slider1_0"_s).value();
  EXPECT_EQ(chosen, 25);
  Press(u"Command1"_s);
  EXPECT_EQ(desk_->Automatic().AutoDelta(), 25) << "the track on air";
  desk_->Automatic().SetDelta(24);
  EditRow(2);
  Press(u"Option1"_s);
  Press(u"Command1"_s);
  EXPECT_EQ(desk_->Automatic().AutoDelta(), 24) << "what decides nothing leaves the operator's own delta";
  EditRow(2);
  auto& fade = Find<Fader>(u"Slider1_1"_s);
  for (int press = 0; press < 5; ++press) QTest::keyClick(&fade, Qt::Key_PageUp);
  Press(u"Command1"_s);
  EXPECT_EQ(desk_->Automatic().AutoDelta(), 30) << "the long start of the waiting track";
  ASSERT_TRUE(loop_.RunUntil([this] { return Record(Deck::Two).State == DeckState::Playing; }, 30s));
  EXPECT_NEAR(Player(Deck::One).CurrentPosition(), 30, 2.5);
}

}  // namespace

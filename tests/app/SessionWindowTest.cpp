#include "app/BesideTheDesk.h"
#include "console/windows/SessionWindow.h"
#include "database/GroupElement.h"
#include "database/PlaylistEntry.h"
#include "platform/AppendLine.h"
#include "playlists/windows/PlaylistWindow.h"
#include "support/Lookup.h"
#include "support/WindowParts.h"
#include "ui/ListTable.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class TheSessionBesideTheDesk : public BesideTheDesk {
 protected:
  void SetUp() override {
    BesideTheDesk::SetUp();
    QDir().mkpath(Place(u"Rock"_s));
  }
  [[nodiscard]] QString Place(const QString& relative) const {
    return database_.paths(Paths::Playlists) + u'/' + relative;
  }
  /// Alpha by itself, beta panned in over it, gamma loaded where alpha was.
  void MixByHand() {
    EnqueueAll();
    desk_->Fades().SetFadeSpeed(20);
    Load(Deck::One, 1);
    Decks().ManualStart(Deck::One);
    loop_.RunFor(10s);
    Load(Deck::Two, 2);
    desk_->Fades().StartRoutine(Deck::Two, TransitionKind::Pan);
    ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Fades().WalkActive(); }, 10s));
    ASSERT_TRUE(loop_.RunUntil([this] { return !desk_->Fades().WalkActive(); }, 60s));
    Decks().StopDeck(Deck::One);
    Load(Deck::One, 3);
    Decks().StopDeck(Deck::Two);
    loop_.RunFor(2s);
  }
  template <typename Window>
  Window& Shown() {
    loop_.RunFor(2s);
    Window* shown = nullptr;
    for (QWidget* each : QApplication::topLevelWidgets()) {
      auto* window = qobject_cast<Window*>(each);
      if (window != nullptr && window->isVisible()) shown = window;
    }
    EXPECT_NE(shown, nullptr);
    shown->activateWindow();
    EXPECT_TRUE(TurnUntil([shown] { return shown->isActiveWindow(); }));
    return *shown;
  }
  SessionWindow& Session() { return Shown<SessionWindow>(); }
  void ShowSession() {
    QTest::mouseClick(FindNamed<QPushButton>(*window_, u"Command15"_s), Qt::LeftButton);
    Session();
  }
  void Click(QWidget& window, const QString& button) {
    auto* found = FindNamed<QPushButton>(window, button);
    EXPECT_TRUE(found->isEnabled()) << button.toStdString();
    QTest::mouseClick(found, Qt::LeftButton);
    loop_.RunFor(2s);
  }
  ListTable& List(const QString& name) { return *FindNamed<ListTable>(Session(), name); }
  QString Cell(const QString& list, int row, int column) {
    return List(list).model()->index(row, column).data().toString();
  }
  void Pick(const QString& list, int row, Qt::KeyboardModifiers keys = {}) {
    ListTable& table = List(list);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, keys,
                      table.visualRect(table.model()->index(row, 0)).center());
    loop_.RunFor(100ms);
  }
  /// In the form that a save has opened. Returns the name that it began with.
  QString SaveIn(const QString& category) {
    auto& form = Shown<PlaylistWindow>();
    auto& list = *FindNamed<ListTable>(form, u"LstCategories"_s);
    for (int row = 0; row < list.model()->rowCount(); ++row) {
      if (list.model()->index(row, 0).data().toString() == category) list.selectRow(row);
    }
    loop_.RunFor(2s);
    const QString name = FindNamed<QLineEdit>(form, u"Text1"_s)->text();
    Click(form, u"Cmdsave"_s);
    Click(form, u"Command1"_s);
    return name;
  }
};

TEST_F(TheSessionBesideTheDesk, AMixByHandBecomesAGroupPlaylist) {
  OpenDesk();
  MixByHand();
  ShowSession();
  ExpectWellLaidOut(Session());
  EXPECT_EQ(Session().windowTitle(), u"Session List 01/06/2007"_s);
  const int rows = List(u"ListView1"_s).model()->rowCount();
  ASSERT_EQ(rows, 9);
  EXPECT_EQ(FindNamed<QLabel>(Session(), u"LblSessionList"_s)->text(), u"Listed Element 9 Of 200"_s);
  EXPECT_EQ(Cell(u"ListView1"_s, 0, 0), u"alpha"_s);
  EXPECT_EQ(Cell(u"ListView1"_s, 4, 0), u"Fade Started"_s);
  EXPECT_EQ(Cell(u"ListView1"_s, 4, 3), u"3"_s);
  EXPECT_EQ(Cell(u"ListView1"_s, 4, 4), u"Pan"_s);
  EXPECT_EQ(Cell(u"ListView1"_s, 4, 7), u"30"_s);

  Pick(u"ListView1"_s, 1);
  Pick(u"ListView1"_s, 4, Qt::ShiftModifier);
  Click(Session(), u"Command2"_s);
  EXPECT_EQ(prompter_.asked.back().text, u"The First Element of Your Selections Must be LOAD Track !"_s);
  Pick(u"ListView1"_s, 0);
  Pick(u"ListView1"_s, 3, Qt::ControlModifier);
  Pick(u"ListView1"_s, 6, Qt::ControlModifier);
  Click(Session(), u"Command2"_s);
  EXPECT_EQ(prompter_.asked.back().help.topic, 23100);
  ASSERT_EQ(prompter_.asked.size(), 2U);

  SessionWindow& session = Session();
  Click(session, u"Command3"_s);
  EXPECT_EQ(FindNamed<QPushButton>(session, u"Command3"_s)->text(), u"Clear Selects"_s);
  QTest::keyClick(&session, Qt::Key_G, Qt::ControlModifier);
  const QString name = SaveIn(u"Rock"_s);
  EXPECT_FALSE(session.isVisible()) << "one form of the console at a time";
  EXPECT_TRUE(name.startsWith(u"Session 01-06-2007 09-"_s)) << name.toStdString();
  const PlaylistFolder saved = ReadPlaylist(Place(u"Rock/"_s + name + u"(Grp)"_s));
  ASSERT_EQ(saved.entries.size(), 3U);
  EXPECT_EQ(saved.entries[0].name.name, u"alpha"_s);
  EXPECT_EQ(saved.entries[0].link->targetPath, catalogue_.TrackPaths(ToMref(1)));
  int elements = 0;
  for (const PlaylistEntry& entry : saved.entries) {
    const auto line = ParseGroupLine(entry.line.value_or(QString()));
    ASSERT_TRUE(line);
    for (const GroupElement& element : *line) EXPECT_EQ(element.index, ++elements);
  }
  EXPECT_EQ(elements, rows);
  ShowSession();
  EXPECT_EQ(Cell(u"ListView1"_s, 0, 5), saved.entries[0].line) << "and stands under Arguments";
  EXPECT_EQ(List(u"ListView1"_s).selectionModel()->selectedRows().size(), 3) << "the loads stay picked";
}

TEST_F(TheSessionBesideTheDesk, AStandardSaveTeachesTheTracksTheirFades) {
  Set(u"DefaultDelta"_s, u"9"_s);
  OpenDesk();
  MixByHand();
  ShowSession();
  Click(Session(), u"Command3"_s);
  Click(Session(), u"Command5"_s);
  const QString name = SaveIn(u"Rock"_s);
  EXPECT_EQ(ReadPlaylist(Place(u"Rock/"_s + name)).entries.size(), 3U);
  EXPECT_TRUE(database_.Info(u"beta"_s).contains("\r\n1,2,3\r\n10,9\r\n20,30\r\n"))
      << database_.Info(u"beta"_s).constData();
  EXPECT_EQ(database_.Info(u"alpha"_s), InfoBytes("60")) << "it came in without a fade";
}

TEST_F(TheSessionBesideTheDesk, EarlierShowsTheDaysAndSavesFromThem) {
  OpenDesk();
  const SessionArchive archive = desk_->Archive();
  const auto keep = [&](const QDate& day, int track, SessionCode code, double clock) {
    SessionEvent event;
    event.Code = code;
    event.Time = clock;
    event.Path = track == 0 ? u"/elsewhere/gone.mp3"_s : catalogue_.TrackPaths(ToMref(track));
    AppendWholeLine(archive.FilePath(day), SessionLine{QDateTime(day, QTime(20, 0)), event}.Print());
  };
  const QDate wednesday(2007, 5, 30);
  const QDate thursday(2007, 5, 31);
  keep(wednesday, 3, SessionCode::Loaded, 60);
  keep(wednesday, 3, SessionCode::TrackStarted, 90);
  keep(wednesday, 2, SessionCode::Loaded, 100);
  keep(wednesday, 0, SessionCode::Loaded, 200);
  keep(thursday, 1, SessionCode::Loaded, 5);
  ShowSession();
  EXPECT_FALSE(FindNamed<QPushButton>(Session(), u"Command2"_s)->isEnabled()) << "nothing is recorded";
  QTest::mouseClick(FindNamed<QRadioButton>(Session(), u"OptEarlier"_s), Qt::LeftButton);
  ExpectWellLaidOut(Session());
  ASSERT_EQ(List(u"LstDays"_s).model()->rowCount(), 2);
  EXPECT_TRUE(Cell(u"LstDays"_s, 0, 0).endsWith(u"31/05/2007"_s));
  EXPECT_EQ(List(u"LstEarlier"_s).model()->rowCount(), 1) << "the last day is shown at once";
  Pick(u"LstDays"_s, 1);
  ASSERT_EQ(List(u"LstEarlier"_s).model()->rowCount(), 4);
  EXPECT_EQ(Cell(u"LstEarlier"_s, 1, 1), u"20:01:30"_s) << "by the clock on the wall";
  EXPECT_EQ(Cell(u"LstEarlier"_s, 2, 2), u"2"_s) << "found by its file";
  EXPECT_FALSE(FindNamed<QPushButton>(Session(), u"Command4"_s)->isEnabled()) << "what is kept stays";

  Click(Session(), u"Command3"_s);
  Click(Session(), u"Command2"_s);
  EXPECT_EQ(prompter_.Told().last(), u"Tracks Left Out, They Are Not In The Data Base Any More : 1"_s);
  const QString name = SaveIn(u"Rock"_s);
  const PlaylistFolder saved = ReadPlaylist(Place(u"Rock/"_s + name + u"(Grp)"_s));
  ASSERT_EQ(saved.entries.size(), 2U);
  EXPECT_EQ(saved.entries[0].line, u"1,20:01:00,3,2,0,-1,1,-1,0#2,20:01:30,3,2,0,-1,3,-1,0"_s);
}

TEST_F(TheSessionBesideTheDesk, ItIsClosedWhileATrackPlaysAndClearedOnAYes) {
  OpenDesk();
  EnqueueAll();
  auto& button = *FindNamed<QPushButton>(*window_, u"Command15"_s);
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  const QString why = u"Can't Display Whilst Tracks Are Playing - Please Stop Decks"_s;
  EXPECT_FALSE(button.isEnabled());
  EXPECT_TRUE(button.toolTip().contains(why)) << button.toolTip().toStdString();
  EXPECT_FALSE(Offered(u"Session"_s));
  Decks().StopDeck(Deck::One);
  loop_.RunFor(2s);
  EXPECT_FALSE(button.toolTip().contains(why));
  ShowSession();
  Session().move(130, 150);
  prompter_.answers = {Answer::No, Answer::Yes};
  Click(Session(), u"Command4"_s);
  EXPECT_EQ(prompter_.asked.back().text, u"Clear The Session List ?"_s);
  EXPECT_EQ(List(u"ListView1"_s).model()->rowCount(), 3);
  Click(Session(), u"Command4"_s);
  EXPECT_EQ(List(u"ListView1"_s).model()->rowCount(), 0);
  EXPECT_EQ(FindNamed<QLabel>(Session(), u"LblSessionList"_s)->text(), QString());
  Click(Session(), u"Command1"_s);
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"SesionStartup"_s, u"SessionPosx"_s), u"130"_s);
}

}  // namespace

// What the panels of the desk show, and which of their commands they offer.

#include "console/ConsoleOnScreen.h"
#include "console/windows/AirAlarm.h"
#include "ui/Fader.h"
#include "ui/NoticeBar.h"

#include <QAbstractSlider>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

class ConsolePanels : public ConsoleOnScreen {
 protected:
  void AddMany(int tracks) {
    for (int number = 1; number <= tracks; ++number)
      AddTrack(u"track %1"_s.arg(number, 2, 10, QChar(u'0')), 60, 60);
  }
  bool InSight(ListTable& list, int row) {
    return list.viewport()->rect().contains(list.visualRect(list.model()->index(row - 1, 0)));
  }
  std::vector<int> SelectedRows(ListTable& list) {
    std::vector<int> rows;
    for (const QModelIndex& index : list.selectionModel()->selectedRows()) rows.push_back(index.row() + 1);
    std::sort(rows.begin(), rows.end());
    return rows;
  }
  bool Enabled(const QString& name) { return Find<QWidget>(name).isEnabled(); }
};

TEST_F(ConsolePanels, TheFieldOfADeckMovesWhileItPlaysAndNamesTheTrackThatIsHeard) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  loop_.RunFor(2s);
  auto& one = Find<QWidget>(u"PlayIndicator1"_s);
  auto& two = Find<QWidget>(u"PlayIndicator2"_s);
  const QImage rest = one.grab().toImage();
  Click(u"CmdMan2"_s);
  Click(u"CmdMan3"_s);
  loop_.RunFor(2s);
  EXPECT_EQ(one.accessibleDescription(), u"Currently Playing: Alpha"_s);
  EXPECT_EQ(two.accessibleDescription(), QString()) << "the slider is not on its side";
  const QImage before = two.grab().toImage();
  loop_.RunFor(1s);
  EXPECT_NE(two.grab().toImage(), before);
  desk_->Decks().StopDeck(Deck::One);
  loop_.RunFor(2s);
  EXPECT_EQ(one.grab().toImage(), rest);
}

TEST_F(ConsolePanels, WholeNamesStandInBothListsOfAnOrdinaryScreen) {
  AddTrack(u"neon harbour and friends - breadcrumb station"_s, 60, 60);
  OpenWindow();
  QTest::keyClicks(&Find<QLineEdit>(u"TrackFilter"_s), u"neon"_s);
  ASSERT_EQ(Library().model()->rowCount(), 1);
  ASSERT_EQ(Cell(Library(), 0).size(), 45);
  DoubleClick(Library(), 0);
  ASSERT_EQ(Queue().Count(), 1);
  for (const int width : {1366, 1600, 1920}) {
    Resize(width, 768);
    for (const ListTable* list : {&Library(), &QueueList()}) {
      const QModelIndex name = list->model()->index(0, 0);
      EXPECT_LE(list->sizeHintForIndex(name).width(), list->columnWidth(0))
          << width << ' ' << list->objectName().toStdString();
    }
  }
  const QString comment = QueueList().model()->index(0, 0).data(Qt::ToolTipRole).toString();
  EXPECT_TRUE(comment.endsWith(u"\nPlay Me"_s)) << "also where its column has no room";
}

TEST_F(ConsolePanels, TheNameOfTheQueueIsReadOnTheSmallestDesk) {
  OpenWindow();
  auto& name = Find<QLineEdit>(u"TxtPlayListName"_s);
  for (const int width : {1024, 1366}) {
    Resize(width, 768);
    EXPECT_GT(name.width(), name.fontMetrics().horizontalAdvance(u" (No Name) "_s)) << width;
    const QList<QLabel*> labels = window_->findChildren<QLabel*>();
    const auto label = std::find_if(labels.begin(), labels.end(), [](const QLabel* each) {
      return each->text() == u"Play List Name/Id"_s;
    });
    ASSERT_NE(label, labels.end());
    EXPECT_GE((*label)->width(), (*label)->fontMetrics().horizontalAdvance((*label)->text())) << width;
  }
}

TEST_F(ConsolePanels, TheFadersFollowWhatTheDeskSetsByItself) {
  OpenWindow();
  desk_->Fades().SetFadeSpeed(40);
  desk_->Automatic().SetDelta(7);
  EXPECT_EQ(Find<Fader>(u"SldFadeSp"_s).value(), 40);
  EXPECT_EQ(Find<Fader>(u"SldDelta"_s).value(), 7);
}

TEST_F(ConsolePanels, NothingLiesOverAnythingElse) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  // The loading window has gone by now.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  for (const int width : {1024, 1600}) {
    Resize(width, 768);
    const QList<QWidget*> all = window_->findChildren<QWidget*>();
    for (const QWidget* each : all) {
      if (each->layout() == nullptr || !each->isVisible()) continue;
      QList<QWidget*> parts = each->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
      parts.removeIf([](const QWidget* part) {
        return !part->isVisible() || part->isWindow() || part->objectName() == u"FocusRing"_s;
      });
      for (qsizetype first = 0; first < parts.size(); ++first) {
        for (qsizetype second = first + 1; second < parts.size(); ++second) {
          EXPECT_FALSE(parts[first]->geometry().intersects(parts[second]->geometry()))
              << each->objectName().toStdString() << ": " << parts[first]->metaObject()->className() << ' '
              << parts[first]->objectName().toStdString() << ", " << parts[second]->metaObject()->className()
              << ' ' << parts[second]->objectName().toStdString();
        }
      }
    }
  }
}

TEST_F(ConsolePanels, TheTitlesOfTheDecksAreYellowAndReadable) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  for (const QString& name : {u"lbldisplay1"_s, u"lbldisplay2"_s}) {
    const QColor ink = Find<QLabel>(name).palette().color(QPalette::Active, QPalette::WindowText);
    EXPECT_NEAR(ink.hslHue(), 58, 8) << name.toStdString();
    EXPECT_GT(Theme::Contrast(ink, Theme::GroupGround(Group::Decks)), 7) << name.toStdString();
  }
}

TEST_F(ConsolePanels, ASilentAirIsCriedOutAndNothingMovesForIt) {
  OpenWindow();
  auto& alarm = Find<AirAlarm>(u"AirAlarm"_s);
  const auto places = [this] {
    QHash<const QWidget*, QRect> found;
    const QList<QWidget*> all = window_->findChildren<QWidget*>();
    for (const QWidget* each : all) {
      const bool takesHand =
          qobject_cast<const QAbstractButton*>(each) || qobject_cast<const QAbstractSlider*>(each) ||
          qobject_cast<const QAbstractItemView*>(each) || qobject_cast<const QLineEdit*>(each);
      if (takesHand && each->isVisible()) found[each] = QRect(each->mapTo(&*window_, QPoint()), each->size());
    }
    return found;
  };
  const auto brightness = [&alarm] {
    const QImage picture = alarm.grab().toImage().convertToFormat(QImage::Format_Grayscale8);
    double sum = 0;
    for (int x = 0; x < picture.width(); ++x) sum += qGray(picture.pixel(x, 2));
    return sum / picture.width();
  };
  for (const int width : {1024, 1600}) {
    Resize(width, 768);
    EXPECT_FALSE(alarm.isVisible());
    const auto before = places();
    DeskStatus status;
    status.airSilent = true;
    window_->ShowAir(status);
    ASSERT_TRUE(alarm.isVisible());
    EXPECT_EQ(places(), before);
    const QRect place(alarm.mapTo(&*window_, QPoint()), alarm.size());
    for (const QRect& each : before) EXPECT_FALSE(place.intersects(each)) << width;
    ASSERT_TRUE(loop_.RunUntil([&] { return alarm.Lit(); }, 1s));
    const double lit = brightness();
    ASSERT_TRUE(loop_.RunUntil([&] { return !alarm.Lit(); }, 1s));
    EXPECT_GT(lit, brightness() + 100) << "seen without red too";
    Resize(width + 200, 768);
    const QRect moved(alarm.mapTo(&*window_, QPoint()), alarm.size());
    const auto after = places();
    for (const QRect& each : after) EXPECT_FALSE(moved.intersects(each)) << width;
    window_->ShowAir({});
    window_->ShowAir(status);
    EXPECT_EQ(moved, QRect(alarm.mapTo(&*window_, QPoint()), alarm.size())) << "it went with its place";
    window_->ShowAir({});
  }
}

TEST_F(ConsolePanels, DisksThatDoNotAnswerAreNamedUntilTheyDo) {
  OpenWindow();
  auto& notices = *window_->findChild<NoticeBar*>();
  DeskStatus status;
  status.silentDisks = {u"MUSIC"_s, u"ARCHIVE"_s};
  window_->ShowAir(status);
  window_->ShowAir(status);
  const QString text = u"The disk %1 doesn't answer: its tracks are passed over"_s;
  EXPECT_EQ(notices.Text(), text.arg(u"ARCHIVE"_s));
  EXPECT_EQ(notices.toolTip().count(u"<p>"_s), 2) << "each once";
  EXPECT_FALSE(Find<QWidget>(u"AirAlarm"_s).isVisible());
  status.silentDisks = {u"MUSIC"_s};
  window_->ShowAir(status);
  EXPECT_EQ(notices.Text(), text.arg(u"MUSIC"_s));
  window_->ShowAir({});
  EXPECT_EQ(notices.Text(), QString());
}

TEST_F(ConsolePanels, TheQueueOffersOnlyWhatItDoes) {
  OpenWindow();
  EnqueueAll();
  const QHeaderView& heads = *QueueList().horizontalHeader();
  Queue().Click(1);
  EXPECT_FALSE(Enabled(u"CmdQueUp"_s));
  EXPECT_TRUE(Enabled(u"CmdQueDown"_s));
  EXPECT_TRUE(heads.sectionsClickable());
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(100ms);
  EXPECT_FALSE(Enabled(u"CmdQueCut"_s));
  EXPECT_FALSE(Enabled(u"CmdQueClear"_s));
  EXPECT_FALSE(heads.sectionsClickable());
  loop_.RunFor(20s);
  EXPECT_TRUE(Enabled(u"CmdQueUp"_s)) << "rows are moved in automatic play too";
  Click(u"CmdAutoPlay"_s);
  EXPECT_TRUE(Enabled(u"CmdQueCut"_s));
  EXPECT_TRUE(Enabled(u"CmdQueClear"_s));
  EXPECT_TRUE(heads.sectionsClickable());
  Queue().SetGroup({});
  EXPECT_FALSE(heads.sectionsClickable());
}

TEST_F(ConsolePanels, TheQueueShowsANewRowAndGoesBackToThePositionAfterAWhile) {
  AddMany(60);
  OpenWindow();
  std::vector<Mref> tracks;
  for (int row = 1; row < catalogue_.LastTrack(); ++row) tracks.push_back(ToMref(row));
  Enqueue(tracks);
  Queue().Select(1);
  Click(u"CmdAutoPlay"_s);
  loop_.RunFor(20s);
  const int position = Queue().Selected();
  ASSERT_TRUE(InSight(QueueList(), position));
  Enqueue({ToMref(catalogue_.LastTrack())});
  EXPECT_TRUE(InSight(QueueList(), Queue().Count()));
  EXPECT_EQ(Queue().Selected(), position);
  loop_.RunFor(3s);
  EXPECT_TRUE(InSight(QueueList(), Queue().Count())) << "long enough to be seen";
  loop_.RunFor(10s);
  ASSERT_EQ(Queue().Selected(), position);
  EXPECT_TRUE(InSight(QueueList(), position));
}

TEST_F(ConsolePanels, AFadeTakesTheCommandsThatDoNothingAndShowsThatTheListsWait) {
  OpenWindow();
  EnqueueAll();
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  Click(u"CmdMan2"_s);
  Click(u"CmdMan3"_s);
  desk_->Fades().SetCrossPan(kDeckOneAlone);
  loop_.RunFor(1s);
  const auto pointerOver = [this](QWidget& widget) {
    QTest::mouseMove(&widget);
    return window_->windowHandle()->cursor().shape();
  };
  EXPECT_EQ(pointerOver(*QueueList().viewport()), Qt::ArrowCursor);
  desk_->Fades().BeginTransition(Deck::Two, TransitionKind::Pan);
  const auto walkTo = [this](int side) {
    EXPECT_TRUE(loop_.RunUntil([&] { return desk_->Fades().CrossPan() >= side; }, 20s));
  };
  walkTo(-180);
  EXPECT_FALSE(Enabled(u"CmdDeckStop1"_s));
  EXPECT_FALSE(Enabled(u"CmdDeckStop2"_s));
  EXPECT_TRUE(Enabled(u"CmdLoad2"_s)) << "it tells that it failed";
  EXPECT_FALSE(Enabled(u"CmdLoad3"_s));
  Click(u"CmdLoad2"_s);
  EXPECT_TRUE(Find<QWidget>(u"LblLoadFail1"_s).isVisible());
  EXPECT_EQ(pointerOver(*QueueList().viewport()), Qt::WaitCursor);
  EXPECT_EQ(pointerOver(Find<QWidget>(u"SldCrossPan"_s)), Qt::ArrowCursor);
  EXPECT_EQ(pointerOver(*Library().viewport()), Qt::WaitCursor);
  walkTo(0);
  EXPECT_FALSE(Enabled(u"CmdLoad2"_s));
  walkTo(kDeckTwoAlone);
  loop_.RunFor(500ms);
  EXPECT_EQ(window_->windowHandle()->cursor().shape(), Qt::ArrowCursor) << "though the mouse stands still";
  for (const QString& name :
       {u"CmdDeckStop1"_s, u"CmdDeckStop2"_s, u"CmdLoad2"_s, u"CmdLoad3"_s, u"CmdRF2_2"_s})
    EXPECT_TRUE(Enabled(name)) << name.toStdString();
}

TEST_F(ConsolePanels, TheBannerOfARequestIsAsWideAsItsBox) {
  OpenWindow();
  EnqueueAll();
  QueueEntry wish = Queue().Row(1);
  wish.requestText = u"Request From: Ann"_s;
  Queue().AppendRow(wish, 0);
  auto& box = Find<QPlainTextEdit>(u"TrackInfoText1"_s);
  qsizetype before = 0;
  for (const int width : {1024, 1600}) {
    Resize(width, 850);
    Load(Deck::One, 2);
    Load(Deck::One, 4);
    const QString banner = box.toPlainText().section(u'\n', 0, 0);
    ASSERT_TRUE(banner.contains(u"*REQUESTS*"_s)) << banner.toStdString();
    EXPECT_GT(banner.size(), before);
    EXPECT_LE(box.fontMetrics().horizontalAdvance(banner), box.viewport()->width());
    before = banner.size();
  }
}

TEST_F(ConsolePanels, WhatIsSelectedWhileTracksAreAddedStaysSelected) {
  OpenWindow();
  QTest::keyClicks(&Find<QLineEdit>(u"TrackFilter"_s), u"a"_s);
  ASSERT_EQ(Library().model()->rowCount(), 3);
  Library().selectAll();
  // As when the disk takes its time over the first one: by the end of the adding all three are selected.
  desk_->Browser().AddToQueue({ToMref(1)});
  loop_.RunFor(100ms);
  EXPECT_EQ(Queue().Count(), 1);
  EXPECT_EQ(SelectedRows(Library()), (std::vector<int>{2, 3}));
}

TEST_F(ConsolePanels, NewTracksComeToTheListThatTheOperatorHasOpen) {
  database_.tree.MakeFolder(Paths::FolderName(Paths::Categories) + u"/Rock"_s);
  OpenWindow();
  auto& box = Find<QLineEdit>(u"TrackFilter"_s);
  box.setText(u"nobody"_s);
  catalogue_.Append({});
  loop_.RunFor(1s);
  EXPECT_EQ(Find<QLabel>(u"LblTrackCount"_s).text(), u"0 of 4"_s);
  box.clear();
  auto& genres = Find<ListTable>(u"GenreList"_s);
  DoubleClick(genres, 0);
  loop_.RunFor(1s);
  QTest::mouseClick(Library().horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  loop_.RunFor(1s);
  Library().selectRow(1);
  ASSERT_EQ(Cell(Library(), 1), u"Beta"_s);
  CatalogueRow row;
  row.name = u"aardvark"_s;
  row.extension = u".mp3"_s;
  row.genres = u"~ALL CATEGORIES,Rock"_s;
  row.artists = u"~ALL ARTISTS,The Newcomers"_s;
  catalogue_.Append(row);
  catalogue_.AddReference(ReferenceSet::Genres, u"Blues"_s);
  loop_.RunFor(1s);
  ASSERT_EQ(Library().model()->rowCount(), 4) << "all but the one without a genre";
  EXPECT_EQ(Cell(Library(), 0), u"Aardvark"_s);
  EXPECT_EQ(SelectedRows(Library()), (std::vector<int>{3})) << "the selection goes along with its track";
  EXPECT_EQ(Cell(genres, 0), u"BLUES"_s);
  EXPECT_EQ(SelectedRows(genres), (std::vector<int>{2}));
  EXPECT_EQ(Find<QLabel>(u"LblChosenGenre"_s).text(), u"ROCK"_s);
  EXPECT_EQ(Cell(Find<ListTable>(u"ArtistList"_s), 1), u"THE NEWCOMERS"_s);
}

TEST_F(ConsolePanels, TheListShowsNewNamesAndLosesRemovedTracksWithTheSelectionAsItWas) {
  OpenWindow();
  QTest::keyClicks(&Find<QLineEdit>(u"TrackFilter"_s), u"a"_s);
  Library().selectAll();
  ASSERT_EQ(SelectedRows(Library()), (std::vector<int>{1, 2, 3}));
  QString painted;
  QObject::connect(Library().model(), &QAbstractItemModel::dataChanged, &*window_,
                   [&](const QModelIndex& first) { painted = first.data().toString(); });
  catalogue_.Rename(ToMref(2), u"bravado.mp3"_s);
  EXPECT_EQ(painted, u"Bravado"_s);
  catalogue_.Remove(ToMref(1));
  loop_.RunFor(100ms);
  EXPECT_EQ(Cell(Library(), 0), u"Bravado"_s);
  EXPECT_EQ(Cell(Library(), 1), u"Gamma"_s);
  EXPECT_EQ(SelectedRows(Library()), (std::vector<int>{1, 2}));
  EXPECT_EQ(Find<QLabel>(u"LblTrackCount"_s).text(), u"2 of 2"_s);
  Click(u"CmdAddToQueue"_s);
  loop_.RunFor(100ms);
  EXPECT_EQ(Column(TrackColumn), QStringList{u"Gamma"_s}) << "the other file was not renamed on disk";
}

}  // namespace

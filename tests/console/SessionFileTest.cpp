#include "console/DeskFixture.h"
#include "console/session/SessionFile.h"
#include "platform/AppendLine.h"
#include "platform/AtomicFile.h"
#include "platform/FileSteps.h"

namespace kelvo::testing {
namespace {

const QDate kFriday(2007, 6, 1);

SessionEvent Event(SessionCode code, double clock, const QString& path = u"/music/ann - one.mp3"_s) {
  SessionEvent event;
  event.Code = code;
  event.Time = clock;
  event.Path = path;
  return event;
}

/// The days of a folder that goes with the test.
class SessionFiles : public ::testing::Test {
 protected:
  void Add(const QDate& day, const QDateTime& start, SessionCode code, double clock) const {
    AppendWholeLine(archive_.FilePath(day), SessionLine{start, Event(code, clock)}.Print());
  }
  [[nodiscard]] QStringList Times(const QDate& day) const {
    QStringList times;
    for (const SessionEvent& event : archive_.ReadDay(day)) times.append(event.TimeWords());
    return times;
  }
  TemporaryTree tree_;
  SessionArchive archive_{tree_.Path(u"Sessions"_s), u"Kelvo"_s};
  const QDateTime noon_{kFriday, QTime(12, 0)};
  const QDateTime evening_{kFriday, QTime(21, 30)};
};

TEST_F(SessionFiles, ALineComesBackWhateverTheTrackIsCalled) {
  SessionEvent event = Event(SessionCode::Loaded, 3725.25, u"/music/100%09\ttab\nÄrger 夜.mp3"_s);
  event.OnDeck = Deck::Two;
  event.FadeType = TransitionKind::Pan;
  event.Speed = 26;
  event.Pos = 12.5;
  event.Length = 215;
  const QByteArray line = SessionLine{evening_, event}.Print();
  EXPECT_EQ(line.count('\n'), 1);
  const auto read = SessionLine::Parse(line.chopped(1));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->sessionStart, evening_);
  EXPECT_EQ(read->event.Path, event.Path);
  EXPECT_EQ(SessionLine({read->sessionStart, read->event}).Print(), line);
  for (qsizetype length = 0; length < line.size() - 1; ++length)
    EXPECT_FALSE(SessionLine::Parse(line.first(length))) << "broken off at " << length;
}

TEST_F(SessionFiles, AKillAtAnyMomentLosesNoMoreThanTheLineBeingWritten) {
  for (int step = 0;; ++step) {
    const QString path = archive_.FilePath(kFriday);
    QFile::remove(path);
    for (int second = 0; second < 2; ++second) Add(kFriday, evening_, SessionCode::TrackStarted, second);
    const bool killed = KilledBefore(step, [&] {
      Add(kFriday, evening_, SessionCode::TrackStarted, 2);
      Add(kFriday, evening_, SessionCode::TrackStarted, 3);
    });
    // The next start goes on behind whatever was left.
    Add(kFriday, evening_, SessionCode::TrackStopped, 9);
    const QStringList times = Times(kFriday);
    SCOPED_TRACE(times.join(u' ').toStdString());
    ASSERT_GE(times.size(), 3);
    EXPECT_EQ(times.first(2), (QStringList{u"21:30:00"_s, u"21:30:01"_s}));
    EXPECT_EQ(times.last(), u"21:30:09"_s);
    const QStringList between = times.sliced(2, times.size() - 3);
    const QStringList whole{u"21:30:02"_s, u"21:30:03"_s};
    EXPECT_EQ(between, whole.first(between.size())) << "none is lost before one that is there";
    if (!killed) {
      EXPECT_EQ(between, whole);
      EXPECT_GT(step, 4) << "the steps are seen";
      return;
    }
    ASSERT_LT(step, 200);
  }
}

TEST_F(SessionFiles, ADayIsToldByTheClockOnTheWallAndTheNightBelongsToItsEvening) {
  const QDate saturday = kFriday.addDays(1);
  Add(kFriday, noon_, SessionCode::Loaded, 60);
  Add(kFriday, noon_, SessionCode::TrackStarted, 90);
  Add(kFriday, evening_, SessionCode::FadeEnded, 10);
  Add(kFriday, evening_, SessionCode::Loaded, 20);
  Add(kFriday, evening_, SessionCode::DubEnded, 25);
  Add(saturday, evening_, SessionCode::TrackStopped, 3 * 3600);
  Add(saturday, evening_, SessionCode::Loaded, 12 * 3600);
  Add(saturday, QDateTime(saturday, QTime(1, 0)), SessionCode::Loaded, 0);
  EXPECT_EQ(Times(kFriday), (QStringList{u"12:01:00"_s, u"12:01:30"_s, u"21:30:10"_s, u"21:30:25"_s,
                                         u"21:30:25"_s, u"24:30:00"_s}))
      << "an end pulls the row before it, but not that of another session";
  EXPECT_EQ(Times(saturday), (QStringList{u"00:30:00"_s, u"09:30:00"_s, u"01:00:00"_s}));
  EXPECT_EQ(archive_.Days(), (std::vector{saturday, kFriday}));
}

TEST_F(SessionFiles, GarbageInAFileHidesNothingElse) {
  Add(kFriday, noon_, SessionCode::Loaded, 60);
  QByteArray bytes = ReadWholeFile(archive_.FilePath(kFriday));
  const QByteArray line = bytes;
  for (QByteArray spoilt : {"\tx\t"_ba, "\tnan\t"_ba, "\t60.000\t99\t"_ba})
    bytes += QByteArray(line).replace("\t60.000\t", spoilt);
  bytes += QByteArray(300, '\0') + "\n" + QByteArray(5000, '\t') + "\n\n" + line;
  ReplaceFile(archive_.FilePath(kFriday), bytes);
  EXPECT_EQ(Times(kFriday), (QStringList{u"12:01:00"_s, u"12:01:00"_s}));
  tree_.Write(u"Sessions/Kelvo, Session Events 31-02-2007.tsv"_s, "x");
  tree_.Write(u"Sessions/Kelvo, Session Log 01-06-2007.txt"_s, "x");
  EXPECT_EQ(archive_.Days(), std::vector{kFriday});
}

using SessionOfADesk = DeskTest;

TEST_F(SessionOfADesk, WhatFallsOutOfTheListIsInTheFileOfTheDay) {
  AddThreeTracks();
  Open();
  for (int number = 0; number < 203; ++number)
    desk_->Session().RecordSessionEvent({SessionCode::TrackStarted, Deck::One, ToMref(1)});
  desk_->Session().Clear();
  loop_.RunFor(1s);
  EXPECT_TRUE(desk_->Session().Events().empty());
  const std::vector<SessionEvent> kept = desk_->Archive().ReadDay(kFriday);
  ASSERT_EQ(kept.size(), 203U) << "also the one that started the list over";
  EXPECT_EQ(kept.front().Path, catalogue_.TrackPaths(ToMref(1)));
  EXPECT_TRUE(database_.tree.Exists(
      u"documents/Kelvo2007 - Reports/Sessions/Kelvo, Session Events 01-06-2007.tsv"_s));
}

}  // namespace
}  // namespace kelvo::testing

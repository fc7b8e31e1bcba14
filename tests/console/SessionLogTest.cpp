#include "console/DeskFixture.h"

#include <QFile>

namespace kelvo::testing {
namespace {

using ::testing::ElementsAre;

constexpr auto kPlace = "documents/Kelvo2007 - Reports/Sessions/Kelvo, Session Log 01-06-2007.txt";

class SessionLogTest : public DeskTest {
 protected:
  [[nodiscard]] QString Path() const { return database_.tree.Path(QString::fromLatin1(kPlace)); }
  [[nodiscard]] QByteArray Text() const { return database_.tree.Read(QString::fromLatin1(kPlace)); }
  [[nodiscard]] bool ReadOnly() const {
    return (QFile::permissions(Path()) & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther)) == 0;
  }
  const QByteArray header_ =
      "Kelvo, Session Log 01-06-2007.txt ( Kelvo ) \r\n" + QByteArray(61, '-') + "\r\n\r\n";
};

TEST_F(SessionLogTest, WhatGoesOnAirByHandAndByItselfIsLoggedInOneFileADay) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  desk_->Fades().StartRoutine(Deck::One, TransitionKind::PartFade);
  loop_.RunFor(5s);
  EXPECT_EQ(Text(), header_ + "Manual Play : 9 : 00 ~ " + Record(Deck::One).Title.toUtf8() + "\r\n");
  EXPECT_TRUE(ReadOnly());

  loop_.RunFor(70s);
  desk_->Automatic().ToggleAutoPlay();
  loop_.RunFor(30s);
  const QStringList lines = QString::fromLatin1(Text()).split(u"\r\n"_s, Qt::SkipEmptyParts);
  ASSERT_GE(lines.size(), 4);
  EXPECT_TRUE(lines[3].startsWith(u"Auto Play : 9 : 01 ~ "_s)) << lines[3].toStdString();
  EXPECT_EQ(Text().count(header_), 1) << "the header stands once";
  EXPECT_TRUE(ReadOnly());
}

TEST_F(SessionLogTest, ANameOfTwoLinesIsOneLineOfTheLog) {
  AddTrack(u"two\nlines"_s, 60, 60);
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  loop_.RunFor(2s);
  EXPECT_TRUE(Text().endsWith("Manual Play : 9 : 00 ~ Two Lines\r\n")) << Text().toStdString();
}

TEST_F(SessionLogTest, APlainStartIsLoggedOnceForEachTrack) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::Two, 1);
  Decks().ManualStart(Deck::Two);
  loop_.RunFor(5s);
  Decks().StopCommand(Deck::Two);
  Panel().Confirm();
  Decks().ManualStart(Deck::Two);
  loop_.RunFor(5s);
  EXPECT_EQ(Text(), header_ + "Manual Play : 9 : 00 ~ Alpha\r\n") << "the same track goes on";
  Decks().StopDeck(Deck::Two);
  Load(Deck::Two, 2);
  Decks().ManualStart(Deck::Two);
  loop_.RunFor(5s);
  EXPECT_TRUE(Text().endsWith("~ Alpha\r\nManual Play : 9 : 00 ~ Beta\r\n")) << Text().toStdString();
}

TEST_F(SessionLogTest, TheDaysLogGoesOnInTheNextSessionAndKeepsTitlesBeyondTheCodePage) {
  SessionLog(loop_, database_.tree.Path(u"documents"_s), u"Kelvo"_s).LogPlay(u"First"_s, false);
  loop_.RunFor(1s);
  SessionLog again(loop_, database_.tree.Path(u"documents"_s), u"Kelvo"_s);
  again.LogPlay(u"夜 - 雨"_s, true);
  loop_.RunFor(1s);
  EXPECT_EQ(Text(), "\xEF\xBB\xBF" + header_ + "Manual Play : 9 : 00 ~ First\r\n" +
                        u"Auto Play : 9 : 00 ~ 夜 - 雨\r\n"_s.toUtf8());
}

TEST_F(SessionLogTest, ALogThatCannotBeWrittenStopsNoDeck) {
  AddThreeTracks();
  database_.tree.Write(u"documents"_s, "a file where the folder should be");
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  desk_->Fades().StartRoutine(Deck::One, TransitionKind::PartFade);
  loop_.RunFor(5s);
  EXPECT_EQ(Record(Deck::One).State, DeckState::Playing);
  EXPECT_THAT(prompter_.asked, ElementsAre()) << "nobody is disturbed";
  EXPECT_TRUE(Log().contains(u"LogPlay"_s));
}

}  // namespace
}  // namespace kelvo::testing

#include "console/DeskFixture.h"

#include <QDir>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::DeskTest;
using ::testing::ElementsAre;
using testing::InfoBytes;

class ConsoleTest : public DeskTest {
 protected:
  /// Whether the desk agrees to close.
  bool MayClose(bool bySystem) {
    std::optional<bool> may;
    Finish(Ask(bySystem, &may));
    return may.value_or(false);
  }
  Job<> Ask(bool bySystem, std::optional<bool>* may) { *may = co_await desk_->QueryClose(bySystem); }

  Job<> Find(QString words, QStringList* names) {
    for (const Mref track : co_await desk_->Filter().Find(loop_, words))
      names->append(catalogue_.TrackNames[track]);
  }
  [[nodiscard]] QStringList Found(const QString& words) {
    QStringList names;
    Finish(Find(words, &names));
    return names;
  }
};

TEST_F(ConsoleTest, TheFirstActivationLoadsTheCatalogueAndNoLaterOne) {
  AddThreeTracks();
  Make();
  EXPECT_EQ(desk_->StatusLine(), u"About Kelvo"_s);
  EXPECT_TRUE(desk_->PendingCatalogueLoad());
  int progress = 0;
  QObject::connect(&*desk_, &Console::LoadProgress, [&progress] { ++progress; });
  desk_->Activate();
  const CatalogueLoader* load = desk_->Load();
  ASSERT_NE(load, nullptr);
  desk_->Activate();
  EXPECT_EQ(desk_->Load(), load);
  loop_.RunFor(1s);
  EXPECT_GT(progress, 3);
  EXPECT_FALSE(desk_->PendingCatalogueLoad());
  EXPECT_TRUE(desk_->CatalogueLoaded());
  EXPECT_EQ(desk_->Load(), nullptr);
  EXPECT_EQ(desk_->StatusLine(), u"Total Tracks :3"_s);
  desk_->Activate();
  EXPECT_EQ(desk_->Load(), nullptr);
}

TEST_F(ConsoleTest, AnUnstableFileIsToldAndEndsTheProgram) {
  database_.AddTrack(u"short"_s, "~ALL CATEGORIES\r\n");
  Make();
  bool mustEnd = false;
  desk_->OnMustEnd = [&mustEnd] { mustEnd = true; };
  prompter_.answers = {Answer::Ok};
  desk_->Activate();
  loop_.RunFor(1s);
  EXPECT_TRUE(mustEnd);
  EXPECT_FALSE(desk_->CatalogueLoaded());
  ASSERT_EQ(prompter_.Told().size(), 1);
  EXPECT_TRUE(prompter_.Told().front().startsWith(
      u"Kelvo Has Encountered Unstable File/s and has to Close\r\nPlease Restart Kelvo\r\n"
      "Recent Changes May Need To be Repeated !\r\n"_s));
  EXPECT_TRUE(prompter_.Told().front().endsWith(u"/short.kif"_s)) << "or nobody knows which to mend";
  EXPECT_TRUE(Log().contains(u"short.kif"_s));
}

TEST_F(ConsoleTest, TheDeskGoesInTheMiddleOfItsLoad) {
  for (int number = 0; number < 700; ++number) database_.AddTrack(QString::number(number));
  Make();
  desk_->Activate();
  ASSERT_TRUE(loop_.RunUntil([this] { return desk_->Load()->tracks.value > 10; }));
  desk_.reset();
  loop_.RunFor(1s);
  EXPECT_EQ(catalogue_.LastTrack(), 0);
}

TEST_F(ConsoleTest, ClosingAsksUnlessTheSystemClosesASilentDesk) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  prompter_.answers = {Answer::No, Answer::No, Answer::Yes};
  EXPECT_FALSE(MayClose(false));
  Load(Deck::Two, 1);
  Decks().ManualStart(Deck::Two);
  EXPECT_FALSE(MayClose(true)) << "a deck plays";
  loop_.RunFor(1s);
  EXPECT_GT(Record(Deck::Two).Position, 0.5);
  EXPECT_TRUE(MayClose(false));
  EXPECT_THAT(prompter_.Told(), ::testing::Each(u"Quit Kelvo ? "_s));
  const double stopped = Record(Deck::Two).Position;
  loop_.RunFor(1s);
  EXPECT_EQ(Record(Deck::Two).Position, stopped) << "the timers have stopped";
  Player(Deck::Two).Stop();
  EXPECT_TRUE(MayClose(true));
  EXPECT_EQ(prompter_.asked.size(), 3U);
}

TEST_F(ConsoleTest, ALostSoundDeviceIsToldUntilItIsBackAndTheDecksRunOn) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  EXPECT_EQ(desk_->DeviceNotice(), QString());
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnSilentClock, u"Desk"_s});
  EXPECT_EQ(desk_->DeviceNotice(),
            u"Sound device lost: Desk. The decks run on in silence until it is back."_s);
  loop_.RunFor(5s);
  EXPECT_NEAR(Record(Deck::One).Position, 5, 0.3);
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnDefault, u"Desk"_s});
  EXPECT_TRUE(desk_->DeviceNotice().contains(u"The default device plays in its place"_s));
  audio_.SetDefaultOutputStatus({OutputStatus::Kind::OnAir, u"Desk"_s});
  EXPECT_EQ(desk_->DeviceNotice(), QString());
  EXPECT_TRUE(Log().contains(u"Sound device back: Desk"_s));
}

TEST_F(ConsoleTest, WhatTheDeskFoundItWritesForItsNextStart) {
  AddThreeTracks();
  Open();
  desk_->Fades().SetFadeSpeed(99);
  desk_->SaveSettings();
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"ConStartup"_s, u"PlaySettings"_s), u"50,3,0"_s);
}

TEST_F(ConsoleTest, SessionTimesRunFromTheStartOfTheDesk) {
  AddThreeTracks();
  Open();
  EnqueueAll();
  loop_.RunFor(100s - loop_.Elapsed());
  Load(Deck::One, 1);
  Decks().ManualStart(Deck::One);
  ASSERT_EQ(desk_->Session().Events().size(), 2U);
  EXPECT_EQ(desk_->Session().Events()[0].Description, u"alpha"_s);
  EXPECT_NEAR(desk_->Session().Events()[1].Time, 100, 0.2);
}

TEST_F(ConsoleTest, TheFilterFindsWordsInAnyOrderAndWithoutAccents) {
  for (const QString& name : {u"Beyoncé - Halo"_s, u"BEYONCE - Déjà Vu"_s, u"Halo Benders - Be"_s,
                              u"Über Alles"_s, u"ZAZ - Je Veux"_s}) {
    AddTrack(name, 60, 60);
  }
  Open();
  EXPECT_THAT(Found(u"halo bey"_s), ElementsAre(u"Beyoncé - Halo"_s));
  EXPECT_THAT(Found(u"beyoncé"_s), ElementsAre(u"BEYONCE - Déjà Vu"_s, u"Beyoncé - Halo"_s));
  EXPECT_THAT(Found(u"  alle UBER "_s), ElementsAre(u"Über Alles"_s));
  EXPECT_THAT(Found(u"zaz veux"_s), ElementsAre(u"ZAZ - Je Veux"_s));
  EXPECT_EQ(Found(u""_s).size(), 5);
  EXPECT_TRUE(Found(u"halohalo"_s).isEmpty());
  EXPECT_TRUE(Found(u"halo bey nothing"_s).isEmpty());
}

}  // namespace
}  // namespace kelvo

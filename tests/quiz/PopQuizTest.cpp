#include "quiz/QuizFixture.h"
#include "quiz/QuizSheet.h"

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;

namespace {

constexpr ElementKind kChain = ElementKind::Chain;
constexpr ElementKind kSnippet = ElementKind::Snippet;
constexpr ElementKind kQuestion = ElementKind::Question;

TEST_F(QuizTest, IsSetUpFormattedAndRunElementByElement) {
  AddTracks(7);
  Make();
  EXPECT_EQ(quiz_->StartWords(), u"Welcome To Pop Quiz V1.1"_s);
  quiz_->AddElement(kQuestion);
  EXPECT_EQ(prompter_.Told(), QStringList{u"Please Select One Or More Genres!"_s});
  Format({kQuestion, kSnippet, kChain});
  EXPECT_EQ(quiz_->Plan().TracksRequired(), 7);
  EXPECT_EQ(quiz_->Text(), u"Pop Quiz Ready"_s);
  EXPECT_EQ(quiz_->StartWords(), u"Start Element 1 Of 3"_s);

  RunElement();
  EXPECT_TRUE(quiz_->Text().startsWith(u"Question (Element 1 Of 3)\n"_s));
  EXPECT_FALSE(quiz_->WhyNoReplay().isEmpty());
  RunElement();
  EXPECT_EQ(quiz_->Text(), u"Play Snippet (Element 2 Of 3)\nWho was the Artist And Track Just Played ?"_s);
  // A sound between two elements is in nobody's way, before the last one either.
  quiz_->TryMixer();
  Settle();
  EXPECT_EQ(quiz_->StartWords(), u"Start Element 3 Of 3"_s);
  EXPECT_EQ(quiz_->WhyNoStart(), QString());
  RunElement();
  EXPECT_EQ(quiz_->Text(),
            u"Play Snippet String (Element 3 Of 3)\n"
            "Who Were the 5 Artists And Tracks Snippets Just Played ?"_s);
  EXPECT_EQ(quiz_->StartWords(), u"Done"_s);
  EXPECT_FALSE(quiz_->WhyNoStart().isEmpty());
  EXPECT_EQ(Rows(), (QStringList{u"1 - Asking Question"_s, u"2 - Playing Snippet"_s,
                                 u"3 - Playing Snippets Chain"_s}));
  std::vector<int> played = Played();
  EXPECT_EQ(std::set<int>(played.begin(), played.end()).size(), 6U);

  quiz_->ShowAnswers();
  ASSERT_EQ(Answers().size(), 5);
  const int first = played[1];
  EXPECT_EQ(Answers().first(), u"(1) Artist %1, Title %1 (File Id= %1 : Start= 0 : End= 5"_s.arg(first));
  quiz_->Select(1);
  EXPECT_THAT(Answers(), IsEmpty());
  quiz_->ShowAnswers();
  EXPECT_EQ(Answers(), QStringList{u"Artist %1, Title %1 (File Id= %1 : Start= 0 : End= 5"_s.arg(played[0])});
  const QString sheet = QuizSheetHtml(u"<Night>"_s, quiz_->Items());
  const qsizetype answers = sheet.indexOf(u"page-break"_s);
  EXPECT_FALSE(sheet.left(answers).contains(u"Title %1"_s.arg(played[0])));
  EXPECT_TRUE(sheet.mid(answers).contains(u"Artist %1, Title %1"_s.arg(played[0])));
  EXPECT_FALSE(sheet.contains(u"<Night>"_s));
}

TEST_F(QuizTest, CollectsEachTrackOnceAndNeedsAsManyAsItsElementsTake) {
  AddTracks(2, u"~ALL CATEGORIES,Pop,rock"_s);
  AddTracks(1, u"~ALL CATEGORIES,Jazz"_s);
  catalogue_.Append({.name = u"Nobody"_s, .extension = u".mp3"_s, .genres = u"~ALL CATEGORIES,Pop"_s});
  Make();
  ASSERT_EQ(quiz_->Plan().Genres().Count(), 2);
  quiz_->Plan().ChooseAll();
  quiz_->AddElement(kChain);
  QuizSetup setup = quiz_->Plan().Setup();
  setup.chainQty = 2;
  quiz_->Plan().SetSetup(setup);
  EXPECT_EQ(quiz_->Plan().TracksRequired(), 2);
  quiz_->Format();
  Settle();
  EXPECT_EQ(quiz_->TracksFound(), 2);
  EXPECT_EQ(quiz_->WhyNoStart(), QString());
  quiz_->AddElement(kQuestion);
  EXPECT_FALSE(quiz_->WhyNoStart().isEmpty());
  quiz_->Format();
  Settle();
  EXPECT_EQ(
      prompter_.Told().last(),
      u"Your 2 Element Set Up Requires 3 Tracks to be Available For Use !\r\nKelvo Found 2 Suitable Tracks "
      "Within The Specified Genres !\r\nPlease select More Genres !"_s);
  EXPECT_FALSE(quiz_->WhyNoStart().isEmpty());
}

TEST_F(QuizTest, FadesEachSnippetInAndOutAndPlaysTheMixerBehindIt) {
  AddTracks(3);
  Make();
  WatchedPlayer::watchLevels = true;
  QuizSetup setup = quiz_->Plan().Setup();
  setup.chainQty = 2;
  quiz_->Plan().SetSetup(setup);
  Format({kChain});
  audio_.events.clear();
  RunElement();
  // Per snippet: the level before the start, 25 steps up, 25 steps down.
  std::vector<double> starts;
  int up = 0;
  QStringList orders;
  double fadeBegan = 0;
  for (const auto& [what, at] : audio_.events) {
    if (what == u"track play"_s) {
      fadeBegan = at;
      up = 0;
    }
    if (what.startsWith(u"track -"_s) || what == u"track 0"_s) {
      const int level = what.section(u' ', 1).toInt();
      if (fadeBegan > 0 && up <= 25 && level == -2500 + 100 * up) {
        EXPECT_NEAR(at, fadeBegan + 0.005 * up, 0.0001);
        ++up;
      }
    } else if (what != u"mixer 0"_s) {
      orders.append(what);
      starts.push_back(at);
    }
  }
  EXPECT_EQ(up, 26);
  EXPECT_EQ(orders.filter(u"play"_s),
            (QStringList{u"track play"_s, u"mixer play"_s, u"track play"_s, u"mixer play"_s}));
  // Five seconds, an eighth of fade out, then the mixer for its second.
  ASSERT_GE(starts.size(), 4U);
  EXPECT_EQ(orders.mid(0, 3), (QStringList{u"track play"_s, u"track stop"_s, u"mixer play"_s}));
  EXPECT_NEAR(starts[1] - starts[0], 5.125, 0.03);
  EXPECT_NEAR(starts[3] - starts[2], 1.0, 0.06);
}

TEST_F(QuizTest, StoppedGivesItsTracksBackAndOffersTheSameElementAgain) {
  AddTracks(5);
  Make();
  Format({kChain});
  // In the middle of the third snippet, in a mixer, and at once.
  for (const Nanoseconds after : {14s + 0ms, 5s + 600ms, 0s + 3ms, 60ms + 0s}) {
    quiz_->StartElement();
    loop_.RunFor(after);
    EXPECT_TRUE(quiz_->Locked());
    EXPECT_FALSE(quiz_->WhyNoStart().isEmpty());
    quiz_->Stop();
    const Nanoseconds asked = loop_.Elapsed();
    Settle();
    EXPECT_LE(loop_.Elapsed() - asked, 300ms);
    EXPECT_EQ(quiz_->Text(), u"Play Snippets Cancelled"_s);
    EXPECT_EQ(quiz_->StartWords(), u"Start Element 1 Of 1"_s);
    EXPECT_THAT(Rows(), IsEmpty());
    EXPECT_EQ(quiz_->Selected(), -1);
  }
  // All five are needed, so none may be missing.
  RunElement();
  EXPECT_EQ(quiz_->StartWords(), u"Done"_s);
  EXPECT_EQ(Played().size(), 5U);
}

TEST_F(QuizTest, EndsWhereItsFilesFailIt) {
  AddTracks(3, u"~ALL CATEGORIES,Pop"_s, 4);
  audio_.SetDuration(catalogue_.TrackPaths(ToMref(2)), -1);
  Make();
  // A snippet of a track that is too short ends with the track.
  Format({kSnippet, kSnippet, kSnippet});
  const Nanoseconds began = loop_.Elapsed();
  RunElement();
  EXPECT_LT(loop_.Elapsed() - began, 6s);
  RunElement();
  // One of them can't be played: nothing is left for the third.
  RunElement();
  EXPECT_THAT(prompter_.Told().last().toStdString(), ::testing::HasSubstr("No Track Is Left"));
  EXPECT_EQ(Rows().size(), 2);
  EXPECT_EQ(quiz_->StartWords(), u"Start Element 3 Of 3"_s);
  EXPECT_THAT(Played(), Each(::testing::Ne(2)));
  // A disk that does not answer is given up.
  catalogue_.Remove(ToMref(2));
  audio_.Hangs = [](const QString& path) { return path.endsWith(u".mp3"_s); };
  Format({kSnippet});
  quiz_->StartElement();
  loop_.RunFor(21s);
  EXPECT_FALSE(quiz_->Locked());
  audio_.Hangs = nullptr;
  // Without its mixer no element begins.
  quiz_->ChooseSound(QuizSound::Mixer, u"None"_s);
  Format({kQuestion});
  RunElement();
  EXPECT_EQ(prompter_.Told().last(), u"Snippet Mixer Not Found !"_s);
  EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(QuizTest, TurnsTheConsoleDownOnlyWhileItIsHeardAndOnlyWhenWanted) {
  AddTracks(2);
  Make();
  Format({kSnippet, kSnippet});
  RunElement();
  EXPECT_THAT(dips_, IsEmpty());
  quiz_->SetDipsConsole(true);
  EXPECT_THAT(dips_, IsEmpty());
  quiz_->StartElement();
  loop_.RunFor(2s);
  EXPECT_THAT(dips_, ElementsAre(true));
  quiz_->SetDipsConsole(false);
  quiz_->SetDipsConsole(true);
  Settle();
  EXPECT_THAT(dips_, ElementsAre(true, false, true, false));
  quiz_->Replay();
  loop_.RunFor(2s);
  quiz_.reset();
  EXPECT_THAT(dips_, ElementsAre(true, false, true, false, true, false));
}

TEST_F(QuizTest, PlaysAnswersByHandAndMarksTheEndsOfTheSnippet) {
  AddTracks(1);
  Make();
  QuizSetup setup = quiz_->Plan().Setup();
  setup.from = SnipFrom::End;
  quiz_->Plan().SetSetup(setup);
  Format({kSnippet});
  RunElement();
  quiz_->ShowAnswers();
  EXPECT_EQ(quiz_->WhyNoPlay(0), QString());
  audio_.events.clear();
  const Nanoseconds began = loop_.Elapsed();
  quiz_->PlayAnswer(0, PlayPart::WholeTrack);
  loop_.RunFor(1s);
  // Ten seconds held forward take it over a hundred of the track's, but not past its end.
  quiz_->Players().Hold(1);
  loop_.RunFor(3s);
  quiz_->Players().Hold(0);
  EXPECT_NEAR(quiz_->Players().Bar()->position, 34, 3);
  Settle();
  EXPECT_LT(loop_.Elapsed() - began, 40s);
  QStringList orders;
  for (const auto& each : audio_.events) orders.append(each.what);
  EXPECT_EQ(orders.filter(u"mixer play"_s).size(), 2);
  quiz_->PlayAnswer(0, PlayPart::Snippet);
  loop_.RunFor(2s);
  quiz_->Stop();
  Settle();
  EXPECT_FALSE(quiz_->Players().Bar());
  quiz_->PlayIntro();
  Settle();
  EXPECT_EQ(prompter_.Told().last(), u"Introduction Media file Not found!"_s);
}

TEST_F(QuizTest, ShowsTheAudienceNoAnswerBeforeItIsRevealed) {
  AddTracks(6);
  Make();
  quiz_->Scores().Add();
  quiz_->Scores().Add();
  quiz_->Scores().Score(1, 3);
  quiz_->Scores().Score(5, 3);
  Format({kChain, kSnippet});
  QStringList seen;
  const auto look = [this, &seen] {
    const AudienceView view = quiz_->Audience();
    seen.append(QStringList{view.heading, view.text, view.snippet} + view.answers);
  };
  QObject::connect(&*quiz_, &PopQuiz::AudienceChanged, look);
  quiz_->StartElement();
  loop_.RunFor(8s);
  EXPECT_EQ(quiz_->Audience().snippet, u"Snippet 2 of 5"_s);
  EXPECT_NEAR(quiz_->Audience().share, 0.37, 0.1);
  Settle();
  quiz_->ShowAnswers();
  quiz_->Replay();
  Settle();
  quiz_->PlayAnswer(0, PlayPart::WholeTrack);
  loop_.RunFor(2s);
  quiz_->Stop();
  Settle();
  EXPECT_THAT(seen.join(u'\n').toStdString(), ::testing::Not(::testing::HasSubstr("Title")));
  quiz_->SetRevealed(true);
  EXPECT_EQ(quiz_->Audience().answers.size(), 5);
  EXPECT_EQ(quiz_->Audience().teams[1].points, 3);
  // The next one begins with nothing revealed.
  quiz_->StartElement();
  loop_.RunFor(100ms);
  EXPECT_THAT(quiz_->Audience().answers, IsEmpty());
  Settle();
  EXPECT_THAT(quiz_->Audience().answers, IsEmpty());
}

TEST_F(QuizTest, RunsTenThousandTimesToItsEndAndTakesNoTrackTwice) {
  AddTracks(6, u"~ALL CATEGORIES,Pop"_s, 0.1);
  audio_.SetDuration(tree_.Path(u"Quiz Mixers/QzDrum.wav"_s), 0.01);
  Make();
  QuizSetup setup = quiz_->Plan().Setup();
  setup.chainQty = 2;
  quiz_->Plan().SetSetup(setup);
  quiz_->Plan().Choose({0});
  RandomSource chance(11);
  loop_.writes = false;
  std::map<int, int> first;
  for (int round = 0; round < 10000; ++round) {
    quiz_->Plan().ClearElements();
    const int elements = 1 + chance.Below(2);
    for (int element = 0; element < elements; ++element) {
      // Questions are the cheapest.
      quiz_->AddElement(kElementKinds[static_cast<std::size_t>(std::min(chance.Below(24), 2))]);
    }
    quiz_->Format();
    Settle();
    for (int presses = 0; quiz_->StartWords() != u"Done"_s; ++presses) {
      ASSERT_LT(presses, 50) << round;
      quiz_->StartElement();
      if (chance.Below(20) == 0) {
        loop_.RunFor(chance.Below(300) * 1ms);
        quiz_->Stop();
      }
      Settle();
    }
    ASSERT_EQ(quiz_->Items().size(), static_cast<std::size_t>(elements)) << round;
    const std::vector<int> played = Played();
    ASSERT_EQ(std::set<int>(played.begin(), played.end()).size(), played.size()) << round;
    if (!played.empty()) ++first[played.front()];
  }
  EXPECT_THAT(prompter_.Told(), IsEmpty());
  EXPECT_EQ(first.size(), 6U);
  // Which is picked first is as good as any other.
  int total = 0;
  for (const auto& [track, times] : first) total += times;
  for (const auto& [track, times] : first) EXPECT_NEAR(times, total / 6.0, total / 20.0) << track;
}

TEST_F(QuizTest, IsTheSameForTheSameSeed) {
  AddTracks(20);
  const auto run = [this](std::uint64_t seed) {
    // The one before was not saved.
    if (quiz_) prompter_.answers = {Answer::No};
    Make(seed);
    Format({kQuestion, kSnippet, kChain});
    for (int element = 0; element < 3; ++element) RunElement();
    return quiz_->Items();
  };
  const std::vector<QuizItem> one = run(3);
  EXPECT_EQ(run(3), one);
  EXPECT_NE(run(4), one);
}

}  // namespace

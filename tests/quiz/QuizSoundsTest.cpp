#include "quiz/QuizFixture.h"
#include "quiz/QuizSettings.h"

using namespace kelvo;
using namespace kelvo::testing;

namespace {

Job<> Hear(Job<bool> job, std::optional<bool>* result) {
  *result = co_await std::move(job);
}

TEST_F(QuizTest, TakesItsSoundsFromTwoFoldersAndNewOnesFromAnywhere) {
  AddTracks(1);
  Make();
  EXPECT_EQ(quiz_->Sounds().Names(QuizSound::Mixer), (QStringList{u"None"_s, u"QzDrum.wav"_s}));
  const QString longOne = tree_.Write(u"else/Long, one.mp3"_s, "long");
  audio_.SetDuration(longOne, 5.04);
  const QString shortOne = tree_.Write(u"else/QzDrum.wav"_s, "another");
  audio_.SetDuration(shortOne, 5);
  const auto add = [this](QuizSound sound, const std::optional<QString>& path) {
    prompter_.paths = {path};
    quiz_->AddSound(sound);
    Settle();
  };
  add(QuizSound::Mixer, std::nullopt);
  prompter_.answers = {Answer::No};
  add(QuizSound::Mixer, longOne);
  EXPECT_EQ(prompter_.asked.back().title, u"Quiz mixer Duration!"_s);
  EXPECT_TRUE(prompter_.asked.back().text.startsWith(
      u"The Media File Long, one.mp3\r\n Has A Play Duration of 5.0"_s));
  EXPECT_FALSE(tree_.Exists(u"Quiz Mixers/Long, one.mp3"_s));
  prompter_.answers = {Answer::Yes};
  add(QuizSound::Mixer, longOne);
  EXPECT_EQ(tree_.Read(u"Quiz Mixers/Long, one.mp3"_s), "long");
  EXPECT_EQ(quiz_->Plan().Setup().mixer, u"Long, one.mp3"_s);
  // One of that name stays as it is, and is chosen.
  const std::size_t asked = prompter_.asked.size();
  add(QuizSound::Mixer, shortOne);
  EXPECT_EQ(tree_.Read(u"Quiz Mixers/QzDrum.wav"_s), "sound");
  EXPECT_EQ(quiz_->Plan().Setup().mixer, u"QzDrum.wav"_s);
  // An introduction may be of any length.
  add(QuizSound::Intro, longOne);
  EXPECT_EQ(prompter_.asked.size(), asked);
  EXPECT_EQ(quiz_->Plan().Setup().intro, u"Long, one.mp3"_s);
  EXPECT_EQ(quiz_->Sounds().Files().size(), 4);
}

TEST_F(QuizTest, KeepsItsSetUpFromOneTimeToTheNext) {
  Make();
  QuizSetup setup = quiz_->Plan().Setup();
  tree_.Write(u"Quiz Intros/Ladies, gentlemen.mp3"_s, "sound");
  setup = {SnipFrom::Random, 3, 9, u"QzDrum.wav"_s, u"Ladies, gentlemen.mp3"_s};
  quiz_->Plan().SetSetup(setup);
  quiz_.reset();
  EXPECT_EQ(settings_.GetSetting(u"Kelvo"_s, u"PopQuiz"_s, u"Settings"_s),
            u"4,3,9,QzDrum.wav,Ladies%2C gentlemen.mp3"_s);
  Make();
  EXPECT_EQ(quiz_->Plan().Setup(), setup);
  QFile::remove(tree_.Path(u"Quiz Intros/Ladies, gentlemen.mp3"_s));
  quiz_->Enter();
  Settle();
  EXPECT_EQ(quiz_->Plan().Setup().intro, u"None"_s);
}

TEST_F(QuizTest, PlaysItsIntroductionToTheEndOrUntilStop) {
  Make();
  quiz_->ChooseSound(QuizSound::Intro, u"Hello.mp3"_s);
  const Nanoseconds began = loop_.Elapsed();
  quiz_->PlayIntro();
  loop_.RunFor(1s);
  EXPECT_EQ(quiz_->Text(), u"Playing Introduction : Hello.mp3"_s);
  EXPECT_TRUE(quiz_->Locked());
  Settle();
  EXPECT_NEAR(std::chrono::duration<double>(loop_.Elapsed() - began).count(), 3, 0.1);
  EXPECT_EQ(quiz_->Text(), QString());
  quiz_->PlayIntro();
  loop_.RunFor(1s);
  quiz_->Stop();
  loop_.RunFor(50ms);
  EXPECT_FALSE(quiz_->Locked());
  quiz_->ChooseSound(QuizSound::Mixer, u"None"_s);
  quiz_->TryMixer();
  Settle();
  EXPECT_EQ(prompter_.Told().last(), u"Can't find Mixer To play !"_s);
}

TEST_F(QuizTest, ClosesOnlyWithAnAnswerWhileItIsHeard) {
  AddTracks(1);
  Make();
  Format({ElementKind::Snippet});
  const auto mayClose = [this] {
    std::optional<bool> result;
    const Job<> asking = Hear(quiz_->MayClose(), &result);
    loop_.RunFor(1ms);
    return result;
  };
  EXPECT_EQ(mayClose(), true);
  quiz_->StartElement();
  loop_.RunFor(2s);
  prompter_.answers = {Answer::No, Answer::Yes};
  EXPECT_EQ(mayClose(), false);
  EXPECT_TRUE(quiz_->Locked());
  EXPECT_EQ(mayClose(), true);
  Settle();
  EXPECT_EQ(quiz_->Text(), u"Play Snippet Cancelled"_s);
  // A team has a name, nine have a key.
  for (int team = 0; team < 12; ++team) quiz_->Scores().Add();
  EXPECT_EQ(quiz_->Scores().Teams().Count(), 9);
  EXPECT_FALSE(quiz_->Scores().Rename(0, u"  "_s));
  EXPECT_TRUE(quiz_->Scores().Rename(0, u" Us "_s));
  quiz_->Scores().Score(0, 1);
  quiz_->Scores().Remove(1);
  EXPECT_EQ(quiz_->Scores().Teams()[0], (QuizTeam{u"Us"_s, 1}));
  quiz_->Scores().ResetPoints();
  EXPECT_FALSE(quiz_->Scores().AnyPoints());
}

}  // namespace

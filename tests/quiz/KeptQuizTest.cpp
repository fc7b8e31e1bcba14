#include "quiz/QuizFixture.h"

using namespace kelvo;
using namespace kelvo::testing;
using ::testing::IsEmpty;

namespace {

/// A quiz of a snippet and a question, done, over three tracks.
class AFinishedQuiz : public QuizTest {
 protected:
  void SetUp() override {
    AddTracks(3);
    Make();
    Format({ElementKind::Snippet, ElementKind::Question});
    RunElement();
    RunElement();
    track_ = Played().front();
  }
  int track_ = 0;
};

TEST_F(AFinishedQuiz, IsSavedUnderANameThatIsFreeAndLoadsBack) {
  for (const auto& [name, told] :
       {std::pair{QString(), u"Please Enter A Name To Save this Quiz As !"_s},
        std::pair{QString(21, u' '), u"Quiz Names can't be longer than 20 characters, Please rename !"_s},
        std::pair{u"  .. "_s, u"Please Enter A Name To Save this Quiz As !"_s},
        std::pair{u" Friday: the 13th  "_s, u"Quiz Friday_ the 13th Saved Successfully !"_s}}) {
    SaveAs(name);
    EXPECT_EQ(prompter_.Told().last(), told);
  }
  EXPECT_EQ(tree_.Read(u"Pop Quizes/Friday_ the 13th/Qdata.Kq5"_s), "1,5,5,QzDrum.wav,None\r\n");
  SaveAs(u"Friday_ the 13th"_s);
  EXPECT_EQ(prompter_.Told().last(),
            u"Name: Friday_ the 13th Already Exists, Please Choose Another Name !"_s);
  const std::vector<QuizItem> before = quiz_->Items();

  Make();
  // An earlier quiz that was saved is not offered again.
  EXPECT_THAT(Rows(), IsEmpty());
  Load(QString());
  EXPECT_EQ(prompter_.Told().last(), u"Please Select A Quiz To Load !"_s);
  Load(u"Friday_ the 13th"_s);
  EXPECT_EQ(quiz_->Heading(), u"Loaded Quiz: Friday_ the 13th"_s);
  EXPECT_EQ(Rows(), (QStringList{u"1 Saved Snippet"_s, u"2 Saved Question"_s}));
  ASSERT_EQ(quiz_->Items().size(), 2U);
  EXPECT_EQ(quiz_->Items()[0].answers, before[0].answers);
  EXPECT_EQ(quiz_->Items()[0].snippets, before[0].snippets);
  quiz_->Select(0);
  EXPECT_EQ(quiz_->Text(), u"Who was the Artist And Track Just Played ?"_s);
  quiz_->Replay();
  loop_.RunFor(1s);
  EXPECT_EQ(quiz_->Audience().snippet, u"Snippet 1 of 1"_s);
  Settle();
  EXPECT_FALSE(quiz_->WhyNoStart().isEmpty());
  quiz_->Store().OpenToSave();
  EXPECT_EQ(
      prompter_.Told().last(),
      u"You Currently Have \r\nLoaded Quiz: Friday_ the 13th Open, Please Format A New Quiz To Save !"_s);
  quiz_->Plan().Choose({0});
  quiz_->AddElement(ElementKind::Question);
  prompter_.answers = {Answer::Yes};
  quiz_->Format();
  Settle();
  EXPECT_EQ(quiz_->Heading(), u"Current Quiz Element"_s);
  EXPECT_EQ(quiz_->StartWords(), u"Start Element 1 Of 1"_s);
  quiz_->Store().OpenToSave();
  EXPECT_EQ(prompter_.Told().last(), u"Can't Save Yet, Current Quiz Not Completed !"_s);
}

TEST_F(AFinishedQuiz, FindsItsTracksByNameInACatalogueThatChangedAndNamesThoseThatAreGone) {
  SaveAs(u"Mine"_s);
  const QString name = catalogue_.TrackNames[ToMref(track_)];
  const CatalogueRow row{.name = name, .extension = u".mp3"_s, .genres = u"~ALL CATEGORIES,Pop"_s};
  Make();
  catalogue_.Remove(ToMref(track_));
  AddTracks(2);
  const Mref moved = catalogue_.Append(row);
  Load(u"Mine"_s);
  EXPECT_EQ(Played().front(), ToInt(moved));
  // It follows while it is open, too.
  catalogue_.Remove(ToMref(1));
  EXPECT_EQ(Played().front(), ToInt(moved) - 1);
  catalogue_.Remove(ToMref(ToInt(moved) - 1));
  EXPECT_EQ(Played().front(), 0);
  Load(u"Mine"_s);
  EXPECT_THAT(prompter_.Told().last().toStdString(), ::testing::HasSubstr(name.toStdString()));
  quiz_->Select(0);
  quiz_->Replay();
  Settle();
  quiz_->ShowAnswers();
  EXPECT_FALSE(quiz_->WhyNoPlay(0).isEmpty());
  // A quiz of an older version has its numbers only.
  QFile::remove(tree_.Path(u"Pop Quizes/Mine/Tracks.Kq5"_s));
  Load(u"Mine"_s);
  EXPECT_EQ(Played().front(), track_);
  // One that is broken says so, and what is open stays.
  tree_.Write(u"Pop Quizes/Mine/Answ.Kq5"_s, ";\r\n");
  Load(u"Mine"_s);
  EXPECT_THAT(prompter_.Told().last().toStdString(), ::testing::HasSubstr("2 questions, but 1 answers"));
  EXPECT_EQ(Rows().size(), 2);
}

TEST_F(QuizTest, IsGoneOnWithAfterACrash) {
  AddTracks(4);
  Make();
  quiz_->Scores().Add();
  quiz_->Scores().Score(0, 2);
  Format({ElementKind::Snippet, ElementKind::Question, ElementKind::Snippet, ElementKind::Snippet});
  RunElement();
  RunElement();
  const std::vector<QuizItem> before = quiz_->Items();
  quiz_->StartElement();
  loop_.RunFor(2s);
  const QByteArray kept = tree_.Read(u"Pop Quizes/.running-quiz"_s);
  ASSERT_FALSE(kept.isEmpty());
  quiz_.reset();
  tree_.Write(u"Pop Quizes/.running-quiz"_s, kept);
  catalogue_.Remove(ToMref(4));
  AddTracks(1);
  prompter_.answers = {Answer::Yes};
  Make();
  EXPECT_EQ(quiz_->Items().size(), 2U);
  EXPECT_EQ(quiz_->Items()[1].question, before[1].question);
  EXPECT_EQ(quiz_->StartWords(), u"Start Element 3 Of 4"_s);
  EXPECT_EQ(quiz_->Scores().Teams()[0].points, 2);
  RunElement();
  RunElement();
  EXPECT_EQ(quiz_->StartWords(), u"Done"_s);
  const std::vector<int> played = Played();
  EXPECT_EQ(std::set<int>(played.begin(), played.end()).size(), 3U);
  // No takes it away.
  quiz_.reset();
  prompter_.answers = {Answer::No};
  Make();
  EXPECT_THAT(Rows(), IsEmpty());
  loop_.RunFor(1s);
  EXPECT_FALSE(tree_.Exists(u"Pop Quizes/.running-quiz"_s));
}

}  // namespace

#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "quiz/QuizFiles.h"
#include "quiz/QuizKeeper.h"
#include "support/TemporaryTree.h"

#include <QDir>

#include <gmock/gmock.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

namespace {

SavedQuiz AQuiz() {
  return {
      .items = {{u"Question (Element 1 Of 3)"_s, u"Who ?"_s, u"Abba"_s, u"Q"_s},
                {u"Play Snippet (Element 2 Of 3)"_s, u"Who was it ?"_s, u"Cher, Believe"_s, u"7,10,15,1,1"_s},
                {{}, u"Who were they ?"_s, u"(1) A, B:(2) C, D"_s, u"3,0,5,1,0:4,1,6,1,0"_s}},
      .names = {{3, u"A - B"_s}, {4, u"C, Co - D"_s}, {7, u"Cher - Believe"_s}}};
}

TEST(ASavedQuiz, HasTheFilesThatAllVersionsRead) {
  const QuizFileBytes bytes = WriteQuiz(AQuiz());
  EXPECT_EQ(bytes.questions, ";Who ?;Who was it ?;Who were they ?\r\n");
  EXPECT_EQ(bytes.answers, ";Abba;Cher, Believe;(1) A, B:(2) C, D\r\n");
  EXPECT_EQ(bytes.snippets, ";Q;7,10,15,1,1;3,0,5,1,0:4,1,6,1,0\r\n");
  EXPECT_EQ(WriteSetup({SnipFrom::Random, 3, 8, u"QzDrum.wav"_s, u"None"_s}), "4,3,8,QzDrum.wav,None\r\n");
  const SavedQuiz read = ReadQuiz(bytes);
  ASSERT_EQ(read.items.size(), 3U);
  EXPECT_EQ(read.names, AQuiz().names);
  EXPECT_EQ(read.items[2].snippets, AQuiz().items[2].snippets);
  EXPECT_EQ(ReadSetup("2,5,5,None,Café.mp3\r\n").last(), u"Café.mp3"_s);
  EXPECT_EQ(ReadSetup(QByteArray("2,5,5,None,Caf\xE9.mp3\r\n")).last(), u"Café.mp3"_s);
}

TEST(ASavedQuiz, HasTextsAsTheyAreAndWhatTheirSignsMakeOfThem) {
  SavedQuiz quiz = AQuiz();
  quiz.items = {{{}, u"Wait; what ?"_s, u"2:1, Мир"_s, u"Q"_s}, {{}, u"And ?"_s, u"x"_s, u"Q"_s}};
  QuizFileBytes bytes = WriteQuiz(quiz);
  // A ";" makes one question more than there are answers.
  EXPECT_THROW((void)ReadQuiz(bytes), Failure);
  bytes.answers.insert(0, ';');
  bytes.snippets.insert(0, ';');
  ASSERT_EQ(ReadQuiz(bytes).items.size(), 3U);
  EXPECT_EQ(ReadQuiz(bytes).items[1].answers, u"2:1, Мир"_s);
  // A ":" makes one answer more, of which nothing is played.
  const QuizItem item{{}, {}, u"A, 2:1"_s, u"7,10,15,1,1"_s};
  const std::vector<AnswerRow> rows = AnswerRows(item);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].text, u"A, 2 (File Id= 7 : Start= 10 : End= 15"_s);
  EXPECT_TRUE(rows[0].snippet && !rows[1].snippet);
  EXPECT_EQ(rows[1].text, u"1"_s);
}

TEST(ASavedQuiz, WithHostileRecordsIsReadAsFarAsItGoes) {
  const QuizItem item{{}, {}, {}, u":,:x,y:5:-4,1e99,99999999999,7,0:7,3,8,nan:2,1,2,1,4"_s};
  const std::vector<SnippetRecord> records = SnippetsOf(item);
  ASSERT_EQ(records.size(), 5U);
  for (const SnippetRecord& each : records) {
    EXPECT_TRUE(each.track >= 0 && each.span.start >= 0 && each.span.end <= 86400 && each.rate == 1);
  }
  EXPECT_EQ(records[3], (SnippetRecord{.track = 7, .span = {3, 8}}));
  EXPECT_EQ(records[2].kind, ElementKind::Chain);
  EXPECT_TRUE(ReadQuiz({}).items.empty());
  EXPECT_THROW((void)ReadQuiz({QByteArray(20000, ';'), {}, {}, {}}), Failure);
  QuizItem moved = AQuiz().items[2];
  Renumber(moved, [](int track) { return track * 10; });
  EXPECT_EQ(moved.snippets, u"30,0,5,1,0:40,1,6,1,0"_s);
}

TEST(ASavedQuiz, IsOnDiskWholeOrNotAtAll) {
  const QuizSetup setup;
  for (int step = 0;; ++step) {
    const TemporaryTree tree;
    const bool killed = KilledBefore(step, [&] { (void)SaveQuiz(tree.Path(), u"Mine"_s, setup, AQuiz()); });
    const QStringList found = ListQuizes(tree.Path());
    ASSERT_LE(found.size(), 1) << step;
    const bool whole = found.isEmpty() || LoadQuiz(tree.Path(), u"Mine"_s).items.size() == 3;
    EXPECT_TRUE(whole) << step;
    // What the kill left is in nobody's way.
    EXPECT_EQ(SaveQuiz(tree.Path(), u"Mine"_s, setup, AQuiz()), found.isEmpty());
    EXPECT_EQ(LoadSetup(tree.Path(), u"Mine"_s).size(), 5);
    ASSERT_LT(step, 200);
    if (!killed) break;
  }
}

TEST(ASavedQuiz, HasANameThatIsAFolderOfItsOwn) {
  EXPECT_EQ(CleanQuizName(u"  a\"*,/:<>?\\|#b "_s), u"a___________b"_s);
  for (const QString& none : {u""_s, u"   "_s, u"."_s, u" .. "_s}) EXPECT_EQ(CleanQuizName(none), QString());
  const TemporaryTree tree;
  tree.Write(u"Mine/Quest.Kq5"_s, ";One\r\n");
  EXPECT_FALSE(SaveQuiz(tree.Path(), u"Mine"_s, {}, AQuiz()));
  EXPECT_EQ(tree.Read(u"Mine/Quest.Kq5"_s), ";One\r\n");
  // A quiz without its answers is none.
  EXPECT_THROW((void)LoadQuiz(tree.Path(), u"Mine"_s), Failure);
  DeleteQuiz(tree.Path(), u"Mine"_s, [](const QString&) { return false; });
  EXPECT_TRUE(ListQuizes(tree.Path()).isEmpty());
}

TEST(TheRunningQuiz, IsReadAsItWasKeptAndNothingElseIs) {
  QuizState state;
  state.elements = {
      {ElementKind::Question}, {ElementKind::Snippet}, {ElementKind::Chain}, {ElementKind::Question}};
  state.genres = {u"Pop, Rock"_s};
  state.setup = QuizSetup().Fields();
  state.next = 4;
  state.quiz = AQuiz();
  state.rows = {u"1 - Asking Question"_s, u"2"_s, u"3"_s};
  state.used = {u"Cher - Believe"_s};
  state.teams = {{u"Мы"_s, 12}, {u"You"_s, -1}};
  const QByteArray bytes = state.ToBytes();
  const auto read = QuizState::FromBytes(bytes);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->elements, state.elements);
  EXPECT_EQ(read->quiz.items, state.quiz.items);
  EXPECT_EQ(read->quiz.names, state.quiz.names);
  EXPECT_EQ(read->teams, state.teams);
  EXPECT_EQ(read->genres + read->setup + read->rows + read->used,
            state.genres + state.setup + state.rows + state.used);
  for (qsizetype length = 0; length < bytes.size(); length += 7) {
    EXPECT_FALSE(QuizState::FromBytes(bytes.left(length)));
  }
  state.next = 2;
  EXPECT_FALSE(QuizState::FromBytes(state.ToBytes()));
  EXPECT_TRUE(QuizState().Empty());
}

}  // namespace

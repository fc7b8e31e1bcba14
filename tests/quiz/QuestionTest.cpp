#include "quiz/Question.h"
#include "quiz/QuizElement.h"
#include "quiz/QuizSetup.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

TEST(AQuestion, ComesOfTheSetThatTheFactsOfItsTrackGive) {
  struct Row {
    bool year, album, hiPos;
    int set;
  };
  for (const Row& row : {Row{false, false, false, 0}, Row{true, true, true, 1}, Row{true, true, false, 2},
                         Row{false, true, true, 3}, Row{true, false, true, 4}, Row{false, false, true, 5},
                         Row{false, true, false, 6}, Row{true, false, false, 7}}) {
    const Candidate candidate{.hasAlbum = row.album, .hasHiPos = row.hiPos, .hasYear = row.year};
    EXPECT_EQ(QuestionSet(candidate), row.set);
  }
}

TEST(AQuestion, IsAnyOfItsSetButTheLastOne) {
  const std::map<int, std::set<int>> picked{
      {0, {0}}, {1, {1, 2, 3, 4, 5, 6}}, {2, {5}}, {3, {5}}, {4, {1, 3, 4, 5}}, {5, {3}}, {6, {6}}, {7, {7}}};
  RandomSource random(7);
  constexpr int kDraws = 6000;
  for (const auto& [set, types] : picked) {
    std::map<int, int> drawn;
    for (int draw = 0; draw < kDraws; ++draw) ++drawn[PickQuestion(set, random)];
    ASSERT_EQ(drawn.size(), types.size()) << set;
    for (const int type : types) {
      // Each is as likely as any other.
      EXPECT_NEAR(drawn[type], kDraws / static_cast<double>(types.size()), kDraws / 20.0)
          << set << ": " << type;
    }
  }
}

TEST(AQuestion, HasAHitLabelByTheLettersOfTheChartPosition) {
  for (const char* top5 : {"", "0", "1", "10", "2", "20", "39", "12"}) {
    EXPECT_EQ(HitLabel(QString::fromLatin1(top5)), u"Top 5 Hit"_s) << top5;
  }
  for (const char* entry : {"5", "7", "50", "?", "No", "True"}) {
    EXPECT_EQ(HitLabel(QString::fromLatin1(entry)), u"Chart Entry"_s) << entry;
  }
  EXPECT_EQ(HitLabel(u"Unknown"_s), u"Top 10 Hit"_s);
}

TEST(AQuestion, IsWordedByItsType) {
  const QuestionFacts facts{u"Abba"_s, u"Arrival"_s, u"Dancing"_s, u"1976-Aug"_s, u"1"_s};
  const QStringList questions{
      u"Which Artist had a Chart Entry With Dancing ? (Question May Have Multiple Answers!)"_s,
      u"In The year 1976-Aug, 'Abba' Released a Single which Reached 1 What was it called ?"_s,
      u"Which Artist/Band Released An Album called 'Arrival' in the year 1976-Aug ?"_s,
      u"Abba Had A Top 5 Hit With 'Dancing' What was it's highest chart position ?"_s,
      u"Who Had a Top 5 Hit in 1976-Aug With 'Dancing' ?"_s,
      u"'Dancing' Was A Top 5 Hit Hit for Which Artist/Band ?"_s,
      u"Who released An Album Called 'Arrival' From Where the Single 'Dancing' Was Taken ?"_s,
      u"In Which Year Did Artist/Band 'Abba' Chart With 'Dancing' ?"_s,
      QString()};
  const QStringList answers{u"Abba"_s, u"Dancing"_s, u"Abba"_s,     u"1"_s,   u"Abba"_s,
                            u"Abba"_s, u"Abba"_s,    u"1976-Aug"_s, QString()};
  for (int type = 0; type < questions.size(); ++type) {
    const QuizQuestion written = WriteQuestion(type, facts);
    EXPECT_EQ(written.question, questions[type]);
    EXPECT_EQ(written.answer, answers[type]);
  }
  EXPECT_EQ(TitleOf(u"Abba - Dancing - Live"_s), u"Dancing - Live"_s);
  EXPECT_EQ(TitleOf(u"Dancing"_s), u"Dancing"_s);
  EXPECT_EQ(TitleOf(u"Dancing-"_s), QString());
}

TEST(ACandidate, IsATrackWithAnArtistAndKnowsWhatIsKnownOfIt) {
  Catalogue catalogue;
  const auto add = [&catalogue](const QString& artists, const QString& albums, const QString& date,
                                const QString& hi) {
    return CandidateOf(catalogue, catalogue.Append({.name = u"A - B"_s,
                                                    .extension = u".mp3"_s,
                                                    .artists = artists,
                                                    .albums = albums,
                                                    .date = date,
                                                    .hi = hi}));
  };
  EXPECT_FALSE(add(u"~ALL ARTISTS"_s, u"~ALL ALBUMS,One"_s, u"1999-Dec"_s, u"1"_s));
  const auto whole = add(u"~ALL ARTISTS,Cher,Sonny"_s, u"~ALL ALBUMS,One,Two"_s, u"0000-xxx"_s, u"0"_s);
  ASSERT_TRUE(whole);
  EXPECT_EQ(whole->artist, u"Cher"_s);
  EXPECT_EQ(whole->album, u"One"_s);
  // What nobody has set counts as known.
  EXPECT_TRUE(whole->hasAlbum && whole->hasHiPos && whole->hasYear);
  for (const QString& nothing : {u"?"_s, QString(), u"0000"_s}) {
    const auto bare =
        add(u"~ALL ARTISTS,Cher"_s, u"~ALL ALBUMS"_s, nothing, nothing == u"0000"_s ? u"?"_s : nothing);
    ASSERT_TRUE(bare);
    EXPECT_FALSE(bare->hasAlbum || bare->hasHiPos || bare->hasYear) << nothing.toStdString();
  }
}

TEST(ASnippet, LiesWhereTheSetUpWantsItAndNeverInTheTail) {
  struct Row {
    SnipFrom from;
    double duration;
    int seconds, start;
  };
  RandomSource random(1);
  for (const Row& row :
       {Row{SnipFrom::Start, 200, 5, 0}, Row{SnipFrom::Middle, 200, 5, 95},
        // Half seconds go to the even one: 30.5 - 5, 31.5 - 5.
        Row{SnipFrom::Middle, 61, 5, 26}, Row{SnipFrom::Middle, 63, 5, 26}, Row{SnipFrom::End, 200.4, 5, 192},
        Row{SnipFrom::End, 200.5, 5, 193}, Row{SnipFrom::Middle, 10, 4, 1}, Row{SnipFrom::Start, 8, 5, 0},
        Row{SnipFrom::End, 8, 5, 0}, Row{SnipFrom::End, 4, 5, 0}, Row{SnipFrom::Random, 0, 5, 0}}) {
    const QuizSetup setup{.from = row.from, .seconds = row.seconds};
    EXPECT_EQ(ChooseSnippet(row.duration, setup, random), (SnippetSpan{row.start, row.start + row.seconds}))
        << static_cast<int>(row.from) << " of " << row.duration;
  }
  std::set<int> starts;
  for (int draw = 0; draw < 2000; ++draw) {
    starts.insert(ChooseSnippet(60, {.from = SnipFrom::Random, .seconds = 7}, random).start);
  }
  EXPECT_EQ(*starts.begin(), 0);
  EXPECT_EQ(*starts.rbegin(), 50);
  EXPECT_EQ(starts.size(), 51U);
}

TEST(TheSetUp, TakesFieldsAndKeepsWhatTheyDoNotSay) {
  QuizSetup setup;
  setup.Take({u"None"_s});
  EXPECT_EQ(setup, QuizSetup());
  setup.Take({u"4"_s, u"7"_s, u"12"_s, u"QzDrum.wav"_s, u"Hello.mp3"_s});
  EXPECT_EQ(setup.Fields(), (QStringList{u"4"_s, u"7"_s, u"12"_s, u"QzDrum.wav"_s, u"Hello.mp3"_s}));
  setup.Take({u"9"_s, u"-3"_s, u"100000000000"_s});
  EXPECT_EQ(setup.Fields(), (QStringList{u"4"_s, u"7"_s, u"99"_s, u"QzDrum.wav"_s, u"Hello.mp3"_s}));
  const std::vector<QuizElement> elements{
      {ElementKind::Chain}, {ElementKind::Question}, {ElementKind::Chain}};
  EXPECT_EQ(TracksNeeded(elements, 5), 11);
  EXPECT_EQ(TracksNeeded(elements, 2), 5);
  EXPECT_EQ(TracksNeeded({{ElementKind::Snippet}}, 9), 1);
}

}  // namespace

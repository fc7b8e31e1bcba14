#include "database/TrackNames.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::ScriptedPrompter;
using testing::TemporaryTree;

TEST(TrackNames, CleaningReplacesEachForbiddenCharacterAndTrims) {
  EXPECT_EQ(CleanFileName(uR"(  a"b*c,d/e:f<g>h?i\j|k#l  )"_s), u"a_b_c_d_e_f_g_h_i_j_k_l"_s);
  EXPECT_EQ(CleanFileName(u"Plain - Näme (1)"_s), u"Plain - Näme (1)"_s);
  EXPECT_EQ(CleanFileName(u"   "_s), QString());
}

TEST(TrackNames, ANameIsRefusedForItsFirstForbiddenCharacterInTheOrderOfTheList) {
  ScriptedPrompter prompter;
  EXPECT_FALSE(CheckName(prompter, u"a|b*c"_s));
  EXPECT_FALSE(CheckName(prompter, u" \" "_s));
  EXPECT_EQ(prompter.Told(), (QStringList{u"Character ( * ) Not Allowed in Names !"_s,
                                          u"Character ( \" ) Not Allowed in Names !"_s}));
  prompter.asked.clear();
  EXPECT_TRUE(CheckName(prompter, u"Number # One"_s)) << "tolerated here, though cleaning replaces it";
  EXPECT_TRUE(CheckName(prompter, QString()));
  EXPECT_TRUE(prompter.asked.empty());
}

TEST(TrackNames, ADateIsFourDigitsADashAndThreeMore) {
  ScriptedPrompter prompter;
  for (const QString& date : {u"2005-Dec"_s, u"2005-Foo"_s, u"0000-xxx"_s}) {
    EXPECT_TRUE(CheckDate(prompter, date)) << date.toStdString();
  }
  EXPECT_TRUE(prompter.asked.empty());
  const QStringList wrong{u"205-Dece"_s, u"2005-De"_s,  u"2005-Dece"_s, u"2005/Dec"_s,
                          u"20o5-Dec"_s, u"٢٠٠٥-Dec"_s, u""_s};
  for (const QString& date : wrong) EXPECT_FALSE(CheckDate(prompter, date)) << date.toStdString();
  EXPECT_EQ(prompter.asked.size(), static_cast<std::size_t>(wrong.size()));
  EXPECT_EQ(prompter.Told().front(), u"Dates Must Be Entered in the form YYYY-mmm (Eg: 2005-Dec)"_s);
}

TEST(TrackNames, AMediaFileIsAnMp3OrAWavOfSomeSize) {
  const TemporaryTree tree;
  EXPECT_TRUE(CheckMediaFile(tree.Write(u"a.Mp3"_s, "")));
  EXPECT_TRUE(CheckMediaFile(tree.Write(u"a.b.WAV"_s, QByteArray(10240, 'x'))));
  EXPECT_FALSE(CheckMediaFile(tree.Write(u"short.wav"_s, QByteArray(10239, 'x'))));
  EXPECT_FALSE(CheckMediaFile(tree.Write(u"a.ogg"_s, QByteArray(20000, 'x'))));
  EXPECT_FALSE(CheckMediaFile(tree.Write(u".mp3"_s, "x"))) << "a name that is all dot has no extension";
  EXPECT_FALSE(CheckMediaFile(tree.MakeFolder(u"folder.mp3"_s)));
  EXPECT_FALSE(CheckMediaFile(tree.Path(u"missing.mp3"_s)));
}

}  // namespace
}  // namespace kelvo

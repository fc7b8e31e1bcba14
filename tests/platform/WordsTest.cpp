#include "platform/Words.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

TEST(Words, ValReadsTheNumberThatATextBeginsWith) {
  const std::pair<const char*, double> rows[] = {
      {"", 0},
      {"?", 0},
      {"abc 12", 0},
      {"12abc", 12},
      {"  -3.5 dB", -3.5},
      {"1 000", 1000},
      {"+7", 7},
      {"--7", 0},
      {"1.2.3", 1.2},
      {".5", 0.5},
      {"5.", 5},
      {".", 0},
      {"1e3", 1000},
      {"1d-2", 0.01},
      {"2e", 2},
      {"2e+", 2},
      {"1,5", 1},
      {"&H1F", 31},
      {"&hff", 255},
      {"&O17", 15},
      {"&", 0},
      {"&HXYZ", 0},
      {"-1", -1},
      {"\t 4 2\n1", 421},
      {"1e999", std::numeric_limits<double>::max()},
      {"1e-999", 0},
      {"inf", 0},
      {"nan", 0},
  };
  for (const auto& [text, number] : rows) EXPECT_EQ(Val(QString::fromLatin1(text)), number) << text;
}

TEST(Words, IntGoesDownAndStaysInItsRange) {
  EXPECT_EQ(Int(1.9), 1);
  EXPECT_EQ(Int(-1.5), -2);
  EXPECT_EQ(Int(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(Int(1e300), std::numeric_limits<qint64>::max());
  EXPECT_EQ(Int(-std::numeric_limits<double>::infinity()), std::numeric_limits<qint64>::min());
}

TEST(Words, WholeNumbersRoundHalfToEvenInsideTheirRange) {
  EXPECT_EQ(WholeNumber(u"2.5", 0, 10), 2);
  EXPECT_EQ(WholeNumber(u"3.5", 0, 10), 4);
  EXPECT_EQ(WholeNumber(u"-1e300", -5, 10), -5);
  EXPECT_EQ(WholeNumber(u"1e300", -5, 10), 10);
  EXPECT_EQ(WholeNumber(u"garbage", 3, 10), 3);
}

TEST(Words, TruthIsToldByWordsAndNumbers) {
  for (const auto* text : {"True", "TRUE", " true ", "-1", "1", "2"})
    EXPECT_TRUE(TruthValue(QString::fromLatin1(text), false));
  for (const auto* text : {"False", "false", "0", "0.0"})
    EXPECT_FALSE(TruthValue(QString::fromLatin1(text), true));
  for (const auto* text : {"", "yes", "nan", "1x"}) {
    EXPECT_TRUE(TruthValue(QString::fromLatin1(text), true)) << text;
    EXPECT_FALSE(TruthValue(QString::fromLatin1(text), false)) << text;
  }
}

TEST(Words, FormatsRoundAsAReaderOfTheFigureWould) {
  EXPECT_EQ(Format00(5), u"05"_s);
  EXPECT_EQ(Format00(-5), u"-05"_s);
  EXPECT_EQ(Format00(123), u"123"_s);
  EXPECT_EQ(Format0(0.5), u"1"_s);
  EXPECT_EQ(Format0(-0.4), u"0"_s);
  EXPECT_EQ(Format000(1.005), u"1.01"_s);
  EXPECT_EQ(Format000(2.675), u"2.68"_s);
  EXPECT_EQ(Format000(-0.001), u"0.00"_s);
  EXPECT_EQ(Format000(1234.5), u"1234.50"_s);
  EXPECT_EQ(Format0Point0(-0.25), u"-0.3"_s);
  EXPECT_EQ(Format0Point0(89.04), u"89.0"_s);
}

TEST(Words, DurationsCountMinutesOnAndNeverShowSixtySeconds) {
  EXPECT_EQ(MinutesSeconds(3665), u"61:05"_s);
  EXPECT_EQ(MinutesSeconds(59.999), u"00:59"_s);
  EXPECT_EQ(MinutesSeconds(-1), u"00:00"_s);
  EXPECT_EQ(MinutesSeconds(std::numeric_limits<double>::quiet_NaN()), u"00:00"_s);
  EXPECT_EQ(HoursMinutesSeconds(360000 + 61), u"100:01:01"_s);
  EXPECT_EQ(LengthText(0), u"00:00"_s);
  EXPECT_EQ(LengthText(-1), u"?"_s) << "not known is not nothing";
  EXPECT_EQ(HoursMinutesSeconds(-61), u"00:00:00"_s);
}

TEST(Words, ProperCaseRaisesTheFirstLetterOfEachWord) {
  EXPECT_EQ(ProperCase(u"the BEATLES - don't let me down (grp)"_s),
            u"The Beatles - Don't Let Me Down (Grp)"_s);
  EXPECT_EQ(ProperCase(u"ÉDITH piaf\télan a-ha"_s), u"Édith Piaf\tÉlan A-ha"_s);
}

TEST(Words, FoldingTakesAccentsAndCapitalsAway) {
  EXPECT_EQ(FoldedText(u"\u00C9t\u00E9 STRA\u00DFE"_s), u"ete strasse"_s);
  EXPECT_EQ(FoldedText(u"e\u0301"_s), u"e"_s);
}

TEST(Words, TheExtensionIsWhatStandsBehindTheLastDot) {
  EXPECT_EQ(BaseName(u"Mr. Big - To Be.With You.Mp3"_s), u"Mr. Big - To Be.With You"_s);
  EXPECT_EQ(UpperExtension(u"Mr. Big.Mp3"_s), u"MP3"_s);
  EXPECT_EQ(BaseName(u".hidden"_s), u".hidden"_s);
  EXPECT_EQ(UpperExtension(u".hidden"_s), QString());
  EXPECT_EQ(BaseName(u"/music.d/track"_s), u"/music.d/track"_s);
  EXPECT_EQ(UpperExtension(u"/music.d/track"_s), QString());
}

}  // namespace
}  // namespace kelvo

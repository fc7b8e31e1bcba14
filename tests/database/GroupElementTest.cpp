#include "database/GroupElement.h"

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

TEST(GroupElement, ALineComesBackAsItWasWritten) {
  const QString line =
      u"1,00:00:05,12,2,0,-1,1,-1,215#2,00:01:10,12,2,3,26,9,-1,215#3,25:03:00,12,3,0,-1,17,42.5,215"_s;
  const auto elements = ParseGroupLine(line);
  ASSERT_TRUE(elements);
  ASSERT_EQ(elements->size(), 3U);
  EXPECT_EQ((*elements)[1], (GroupElement{.index = 2,
                                          .seconds = 70,
                                          .track = ToMref(12),
                                          .deck = 2,
                                          .fade = TransitionKind::Pan,
                                          .speed = 26,
                                          .code = SessionCode::FadeStarted,
                                          .position = -1,
                                          .length = 215}));
  EXPECT_EQ((*elements)[2].position, 42.5);
  EXPECT_EQ((*elements)[2].seconds, 25 * 3600 + 180) << "a session of more than a day";
  EXPECT_EQ(PrintGroupLine(*elements), line);
  EXPECT_TRUE(RenumberedLine(line, ToMref(7)).startsWith(u"1,00:00:05,7,2,"_s));
  EXPECT_EQ(RenumberedLine(u"no line"_s, ToMref(7)), u"no line"_s);
}

TEST(GroupElement, TimesOfOtherSystemsAreRead) {
  EXPECT_EQ(SecondsOfTime(u"9:05"), 9 * 3600 + 300);
  EXPECT_EQ(SecondsOfTime(u" 12:00:07 am "), 7);
  EXPECT_EQ(SecondsOfTime(u"12:00:07 PM"), 12 * 3600 + 7);
  EXPECT_EQ(SecondsOfTime(u"1:00:00 PM"), 13 * 3600);
  for (const QString& none : {u""_s, u"9"_s, u"9:60"_s, u"-1:00:00"_s, u"1:2:3:4"_s, u"13:00 PM"_s,
                              u"0:10 AM"_s, u"10000:00:00"_s, u"99999999999:0:0"_s, u"1:+:0"_s}) {
    EXPECT_FALSE(SecondsOfTime(none)) << none.toStdString();
  }
}

TEST(GroupElement, WhatIsNoLineIsRefused) {
  const QString good = u"1,00:00:05,12,2,0,-1,1,-1,215"_s;
  ASSERT_TRUE(ParseGroupLine(good));
  const QStringList fields = good.split(u',');
  const std::vector<std::pair<int, QString>> wrong{
      {0, u"x"_s},  {0, u"Repeat"_s}, {0, u"-1"_s},   {1, u"soon"_s}, {2, u"-4"_s},  {2, u"99999999999999"_s},
      {3, u"1"_s},  {3, u"4"_s},      {4, u"4"_s},    {5, u"51"_s},   {5, u"2.5"_s}, {6, u"2"_s},
      {6, u"23"_s}, {6, u"0"_s},      {7, u"nan"_s},  {7, u"-2"_s},   {7, u"inf"_s}, {7, u"1e300"_s},
      {8, u""_s},   {8, u"-1"_s},     {8, u"1 2 3"_s}};
  for (const auto& [place, text] : wrong) {
    QStringList spoilt = fields;
    spoilt[place] = text;
    EXPECT_FALSE(GroupElement::Parse(spoilt.join(u','))) << spoilt.join(u',').toStdString();
  }
  for (const QString& none : {u""_s, u"#"_s, good + u'#', u'#' + good, good + u",1"_s, good.chopped(4),
                              u"1,00:00:05,12,2,0,-1,3,-1,215"_s /* starts before it loads */,
                              good + u"#2,00:00:06,13,2,0,-1,3,-1,215"_s /* of another track */,
                              QString(100'000, u'#'), QString(100'000, u',')}) {
    EXPECT_FALSE(ParseGroupLine(none)) << none.left(60).toStdString();
  }
}

TEST(GroupElement, ElementsAreSortedByTimeAndTheRepeatMarkIsLast) {
  std::vector<GroupElement> elements;
  for (const QString& text : {u"Repeat,00:00:09,1,2,0,-1,21,-1,60"_s, u"4,00:00:09,1,2,0,-1,13,-1,60"_s,
                              u"2,00:00:09,7,3,0,-1,3,-1,60"_s, u"1,00:00:03,7,3,0,-1,1,-1,60"_s}) {
    elements.push_back(GroupElement::Parse(text).value());
  }
  const auto sorted = [&elements](ElementOrder order) {
    Sort(elements, order);
    std::vector<int> numbers;
    for (const GroupElement& element : elements) numbers.push_back(element.index);
    return numbers;
  };
  EXPECT_EQ(sorted(ElementOrder::Run), (std::vector{1, 2, 4, 0}));
  EXPECT_EQ(sorted(ElementOrder::Eye), (std::vector{1, 4, 2, 0}));
  EXPECT_EQ(elements.back().Print(), u"Repeat,00:00:09,1,2,0,-1,21,-1,60"_s);
}

}  // namespace
}  // namespace kelvo

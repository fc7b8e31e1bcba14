#include "platform/Setting.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <random>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

constexpr NumberSetting kLag{{setting::kStartup, QLatin1StringView("Lag")}, 5, 0, 10};
constexpr TruthSetting kOpen{{setting::kStartup, QLatin1StringView("Open")}, true};
constexpr SwitchSetting kFix{{setting::kStartup, QLatin1StringView("Fix")}, true};
constexpr TextSetting kName{{setting::kStartup, QLatin1StringView("Name")}, QLatin1StringView("None")};
constexpr ColourSetting kGround{{setting::kStartup, QLatin1StringView("Ground")}, {1, 2, 3}};

class SettingTest : public ::testing::Test {
 protected:
  void Store(const QString& key, const QString& text) {
    store_.SaveSetting(u"Desk"_s, u"startup"_s, key, text);
  }
  [[nodiscard]] QString Stored(const QString& key) {
    return store_.GetSetting(u"Desk"_s, u"Startup"_s, key, u"missing"_s);
  }
  testing::TemporaryTree tree_;
  SimulatedEventLoop loop_;
  SettingsStore store_{loop_, tree_.Path(u"settings.ini"_s)};
  ProgramSettings settings_{store_, u"Desk"_s};
};

TEST_F(SettingTest, NonsenseCountsAsMissingAndNumbersStayInTheirRange) {
  const std::pair<QString, int> numbers[] = {{u"7"_s, 7},    {u" 2.5 "_s, 2}, {u"-3"_s, 0},  {u"1e9"_s, 10},
                                             {u"many"_s, 5}, {u""_s, 5},      {u"7 up"_s, 5}};
  EXPECT_EQ(settings_.Get(kLag), 5);
  for (const auto& [text, value] : numbers) {
    Store(u"Lag"_s, text);
    EXPECT_EQ(settings_.Get(kLag), value) << text.toStdString();
  }
  settings_.Set(kLag, 99);
  EXPECT_EQ(Stored(u"Lag"_s), u"10"_s);

  const std::pair<QString, bool> truths[] = {
      {u"False"_s, false}, {u"0"_s, false}, {u"-1"_s, true}, {u"?"_s, true}};
  for (const auto& [text, value] : truths) {
    Store(u"Open"_s, text);
    EXPECT_EQ(settings_.Get(kOpen), value) << text.toStdString();
  }
  EXPECT_TRUE(settings_.Get(kFix));
  const std::pair<QString, bool> switches[] = {
      {u"1"_s, true}, {u"True"_s, false}, {u"0"_s, false}, {u"-1"_s, false}};
  for (const auto& [text, value] : switches) {
    Store(u"Fix"_s, text);
    EXPECT_EQ(settings_.Get(kFix), value) << text.toStdString();
  }
  settings_.Set(kOpen, false);
  settings_.Set(kFix, true);
  EXPECT_EQ(Stored(u"Open"_s) + Stored(u"Fix"_s), u"False1"_s);
  EXPECT_EQ(settings_.Get(kName), u"None"_s);
  Store(u"Name"_s, u""_s);
  EXPECT_EQ(settings_.Get(kName), QString());
}

TEST_F(SettingTest, AColourIsThreeNumbersUpTo255AndNothingElse) {
  EXPECT_EQ(settings_.Get(kGround), (Colour{1, 2, 3}));
  for (const QString& text :
       {u"10,20"_s, u"10,20,256"_s, u"10,20,-1"_s, u"10,20,30,40"_s, u"a,b,c"_s, u""_s}) {
    Store(u"Ground"_s, text);
    EXPECT_EQ(settings_.Get(kGround), std::nullopt) << text.toStdString();
  }
  Store(u"Ground"_s, u" 0, 255 ,7"_s);
  settings_.Set(kGround, settings_.Get(kGround));
  EXPECT_EQ(Stored(u"Ground"_s), u"0,255,7"_s);
}

TEST_F(SettingTest, WhoListensHearsEachChangeOfItsOwnSettingWhoeverMakesIt) {
  std::vector<int> heard;
  {
    const QObject listener;
    settings_.Listen(kLag, &listener, [&heard](int value) { heard.push_back(value); });
    settings_.Set(kLag, 3);
    settings_.Set(kLag, 3);
    Store(u"LAG"_s, u"4"_s);
    Store(u"Other"_s, u"9"_s);
    store_.SaveSetting(u"Quiz"_s, u"Startup"_s, u"Lag"_s, u"8"_s);
    store_.DeleteSetting(u"Desk"_s, u"Startup"_s, u"Lag"_s);
  }
  settings_.Set(kLag, 6);
  EXPECT_THAT(heard, ElementsAre(3, 4, 5));
}

TEST(SettingFields, AnyTextsComeBackFromOneLine) {
  EXPECT_EQ(JoinFields({u"a,b"_s, u""_s, u"50%"_s, u"%2c"_s, u"%25"_s}), u"a%2Cb,,50%,%252c,%2525"_s);
  EXPECT_EQ(SplitFields(u"Horn,100%,,%2"_s), (QStringList{u"Horn"_s, u"100%"_s, u""_s, u"%2"_s}));
  std::mt19937 random(3);
  const QString letters = u"%,25cC"_s;
  for (int round = 0; round < 3000; ++round) {
    QStringList fields;
    for (unsigned field = 0; field < 1 + random() % 3; ++field) {
      QString text;
      for (unsigned size = random() % 8; size > 0; --size)
        text += letters[static_cast<qsizetype>(random() % static_cast<unsigned>(letters.size()))];
      fields.append(text);
    }
    const QString line = JoinFields(fields);
    ASSERT_EQ(SplitFields(line), fields) << line.toStdString();
    ASSERT_EQ(line.count(u','), fields.size() - 1);
  }
}

}  // namespace
}  // namespace kelvo

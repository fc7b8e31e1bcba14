#include "help/Help.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace kelvo;
using namespace kelvo::testing;
using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

namespace {

const QString kFolder = QStringLiteral(KELVO_MANUAL);

TEST(ManualOfTheProgram, EveryLinkAndPictureLeadsSomewhereAndEveryFileIsReached) {
  const Manual manual = Manual::OfProgram();
  ASSERT_GT(manual.Pages().size(), 10U);
  QSet<QString> used;
  for (const ManualPage& page : manual.Pages()) {
    EXPECT_FALSE(page.title.isEmpty()) << page.id.toStdString();
    used.insert(page.id + u".md"_s);
    for (const QString& link : Manual::LinksOf(page)) {
      if (link.startsWith(u"window:"_s)) continue;
      const QString file = link.section(u'#', 0, 0);
      const QString heading = link.section(u'#', 1);
      used.insert(file);
      if (file.endsWith(u".png"_s)) {
        EXPECT_TRUE(QFileInfo::exists(manual.Folder() + u'/' + file)) << link.toStdString();
        continue;
      }
      const int to = manual.PageOf(file.isEmpty() ? page.id : file.chopped(3));
      ASSERT_GE(to, 0) << page.id.toStdString() << " leads to " << link.toStdString();
      const QStringList headings = Manual::HeadingsOf(manual.Pages()[static_cast<std::size_t>(to)]);
      EXPECT_TRUE(heading.isEmpty() || headings.contains(heading)) << link.toStdString();
    }
  }
  qint64 bytes = 0;
  for (const QFileInfo& file : QDir(kFolder).entryInfoList(QDir::Files)) {
    EXPECT_TRUE(used.contains(file.fileName())) << file.fileName().toStdString();
    bytes += file.size();
  }
  EXPECT_LT(bytes, 1'500'000);
}

TEST(ManualOfTheProgram, TheHelpButtonsHaveTheirPages) {
  const Manual manual = Manual::OfProgram();
  for (const int topic : {9100, 23100}) {
    const ManualPlace place = manual.ForTopic(topic);
    EXPECT_FALSE(place.heading.isEmpty()) << topic;
  }
  EXPECT_EQ(manual.ForTopic(9100), (ManualPlace{u"data-manager"_s, u"volume"_s}));
  EXPECT_EQ(manual.ForTopic(1), ManualPlace{u"index"_s});
}

class HelpTest : public ::testing::Test {
 protected:
  HelpTest() {
    tree_.Write(u"index.md"_s, "# Contents\n\n- [One](one.md)\n- [Two](two.md)\n- [Gone](gone.md)\n");
    tree_.Write(u"one.md"_s,
                "# First\n<!-- windows: A B -->\n\nSome *caf\xC3\xA9* words, see [two](two.md#deep-down).\n");
    tree_.Write(u"two.md"_s,
                "# Second\n\nOther words.\n\n## Deep Down!\n\n<!-- windows: C -->\n<!-- topics: 7 -->\n\nA "
                "[secret](x.md).\n");
    help_.emplace(Help::Services{Manual(tree_.Path()), [this](const QString& id) { opened_.append(id); }});
  }
  [[nodiscard]] QStringList Rows() const {
    QStringList titles;
    for (const HelpRow& row : help_->Rows().All()) titles.append(row.title);
    return titles;
  }

  TemporaryTree tree_;
  QStringList opened_;
  std::optional<Help> help_;
};

TEST_F(HelpTest, WindowsAndTopicsLeadToTheHeadingAboveTheirRemark) {
  EXPECT_THAT(Rows(), ElementsAre(u"Contents"_s, u"First"_s, u"Second"_s));
  help_->OpenFor(u"B"_s);
  EXPECT_EQ(help_->Place(), ManualPlace{u"one"_s});
  help_->OpenFor(u"C"_s);
  EXPECT_EQ(help_->Place(), (ManualPlace{u"two"_s, u"deep-down"_s}));
  help_->OpenFor(u"unheard of"_s);
  EXPECT_EQ(help_->Place(), ManualPlace{u"index"_s});
  help_->OpenFor(u"topic:7"_s);
  EXPECT_EQ(help_->Place(), (ManualPlace{u"two"_s, u"deep-down"_s}));
}

TEST_F(HelpTest, LinksLeadOnAndTheWayBackIsKept) {
  help_->Open({u"one"_s});
  help_->Follow(u"two.md#deep-down"_s);
  EXPECT_EQ(help_->Place(), (ManualPlace{u"two"_s, u"deep-down"_s}));
  help_->Follow(u"https://example.org/"_s);
  help_->Follow(u"x.md"_s);
  EXPECT_EQ(help_->Place().page, u"two"_s) << "what leads nowhere changes nothing";
  help_->Follow(u"window:Import"_s);
  EXPECT_THAT(opened_, ElementsAre(u"Import"_s));
  help_->Back();
  EXPECT_EQ(help_->Place(), ManualPlace{u"one"_s});
  help_->Back();
  EXPECT_FALSE(help_->CanGoBack());
  help_->Forward();
  EXPECT_EQ(help_->Place(), ManualPlace{u"one"_s});
  help_->Follow(u"two.md"_s);
  EXPECT_FALSE(help_->CanGoForward()) << "another way was taken";
}

TEST_F(HelpTest, ASearchFindsAllWordsWhateverTheirAccentsAndTitlesComeFirst) {
  help_->Find(u"CAFE some"_s);
  EXPECT_THAT(Rows(), ElementsAre(u"First"_s));
  EXPECT_EQ(help_->Rows()[0].excerpt, u"Some caf\u00e9 words, see two."_s);
  help_->Find(u"two second"_s);
  EXPECT_THAT(Rows(), ElementsAre()) << "one word here and one there is no hit";
  help_->Find(u"second"_s);
  EXPECT_THAT(Rows(), ElementsAre(u"Second"_s));
  help_->Find(u"two"_s);
  EXPECT_THAT(Rows(), ElementsAre(u"Contents"_s, u"First"_s));
  help_->Find(u" "_s);
  EXPECT_EQ(Rows().size(), 3);
}

}  // namespace

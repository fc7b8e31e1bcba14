#include "database/JingleImport.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <QFile>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::ScriptedPrompter;
using testing::TestDatabase;

class JingleImportTest : public ::testing::Test {
 protected:
  JingleImportTest() {
    import_.emplace(JingleImport::Services{.loop = loop_,
                                           .prompter = prompter_,
                                           .catalogue = catalogue_,
                                           .paths = database_.paths,
                                           .title = u"Kelvo 2007"_s});
  }
  QString AddSource(const QString& relative, qsizetype size) {
    return database_.tree.Write(u"drive/"_s + relative, QByteArray(size, 'j'));
  }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !import_->Busy(); }));
  }
  void Search(const QString& folder = u"drive"_s) {
    import_->Search(database_.tree.Path(folder));
    Finish();
  }
  QStringList Names() {
    QStringList names;
    for (int row = 0; row < import_->Rows().Count(); ++row) names.append(import_->Rows()[row].name);
    return names;
  }

  TestDatabase database_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  Catalogue catalogue_;
  std::optional<JingleImport> import_;
};

TEST_F(JingleImportTest, CopiesWhatIsNewAndLargeEnoughAndTellsTheSum) {
  AddSource(u"a bell.wav"_s, 9 * 1024);
  AddSource(u"b horn.mp3"_s, 9 * 1024);
  AddSource(u"c laugh.wav"_s, 1048576);
  AddSource(u"d old.MP3"_s, 100);
  database_.Add(Paths::Jingles, u"D Old.mp3"_s, "kept");
  import_->Search(database_.tree.Path(u"drive"_s));
  EXPECT_EQ(import_->Words(), u"Searching "_s + database_.tree.Path(u"drive"_s) + u" (0 %)"_s);
  Finish();
  ASSERT_THAT(Names(), ElementsAre(u"a bell.wav"_s, u"b horn.mp3"_s, u"c laugh.wav"_s, u"d old.MP3"_s));
  EXPECT_EQ(import_->Rows()[2].SizeText(), u"1.0000"_s);
  import_->Import({0, 1, 2, 3});
  Finish();
  EXPECT_THAT(prompter_.Told(),
              ElementsAre(u"2 Files Were Imported Successfully !\r\n"
                          "2 Of Them Cannot Be Played (See Their Rows)\r\n"
                          "1 File/s Already Existed And were not Imported!\r\n"
                          "1 File/s Were Too Small(less than 10kbytes )And were Not Imported!"_s));
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"b horn.mp3"_s));
  EXPECT_FALSE(database_.Holds(Paths::Jingles, u"a bell.wav"_s));
  EXPECT_EQ(database_.tree.Read(u"Kelvo2007_Jingles/D Old.mp3"_s), "kept");
  EXPECT_THAT(catalogue_.SoundBiteNames, ElementsAre(u"b horn"_s, u"c laugh"_s));
  EXPECT_EQ(catalogue_.SoundBitePaths[0], database_.paths(Paths::Jingles) + u"/b horn.mp3"_s);

  QFile::remove(import_->Rows()[2].path);
  import_->Import({2});
  Finish();
  EXPECT_EQ(prompter_.Told().last(),
            u"0 Files Were Imported Successfully !\r\n"
            "1 File/s Were Too Small(less than 10kbytes )And were Not Imported!"_s);
}

TEST_F(JingleImportTest, ALackOfRoomOrAStopEndsTheRun) {
  AddSource(u"a.mp3"_s, 10);
  AddSource(u"b.mp3"_s, 10);
  Search();
  import_->HasRoom = [](const QString&, std::int64_t) { return false; };
  import_->Import({0, 1});
  Finish();
  ASSERT_EQ(prompter_.asked.size(), 2U);
  EXPECT_TRUE(prompter_.Told()[0].startsWith(u"Insufficient Disc space !\r\nFree Disc Space : "_s));
  EXPECT_EQ(prompter_.Told()[1], u"0 Files Were Imported Successfully !"_s);
  import_->HasRoom = [this](const QString&, std::int64_t) {
    import_->Stop();
    return true;
  };
  import_->Import({0, 1});
  Finish();
  EXPECT_TRUE(catalogue_.SoundBiteNames.isEmpty());
}

TEST_F(JingleImportTest, DeletesOnlyWhatIsConfirmedAndNothingOfTheSystem) {
  AddSource(u"a.mp3"_s, 10);
  AddSource(u"b.mp3"_s, 10);
  AddSource(u"c.mp3"_s, 10);
  ASSERT_TRUE(QFile::link(u"/usr/bin/env"_s, database_.tree.Path(u"drive/d.mp3"_s)));
  Search();
  prompter_.answers = {Answer::Cancel};
  import_->Delete({0});
  Finish();
  EXPECT_EQ(import_->Rows().Count(), 4);
  EXPECT_EQ(prompter_.asked[0].buttons, Buttons::OkCancel);
  prompter_.answers = {Answer::Ok, Answer::Ok, Answer::Yes, Answer::No, Answer::Cancel};
  import_->Delete({3, 0, 1, 2});
  Finish();
  EXPECT_THAT(Names(), ElementsAre(u"b.mp3"_s, u"c.mp3"_s, u"d.mp3"_s));
  EXPECT_FALSE(database_.tree.Exists(u"drive/a.mp3"_s));
  EXPECT_TRUE(database_.tree.Exists(u"drive/c.mp3"_s));
  EXPECT_TRUE(database_.tree.Exists(u"drive/d.mp3"_s));
  EXPECT_EQ(prompter_.asked[2].text, u"d.mp3 Is A System Media File !"_s);
  EXPECT_EQ(prompter_.asked[3].text, u"Are You Sure You Want To Delete this File ?"_s);
  EXPECT_EQ(prompter_.asked[3].title, u"a.mp3"_s);
}

TEST_F(JingleImportTest, ADeletedJingleLeavesTheBank) {
  const QString path = database_.Add(Paths::Jingles, u"bell.mp3"_s);
  catalogue_.AddJingle(path);
  Search(u"Kelvo2007_Jingles"_s);
  prompter_.answers = {Answer::Ok, Answer::Yes};
  import_->Delete({0});
  Finish();
  EXPECT_TRUE(catalogue_.SoundBiteNames.isEmpty());
}

TEST_F(JingleImportTest, AFoundJingleFollowsItsNewNameAndGoesWhenItIsDeletedElsewhere) {
  const QString bell = database_.Add(Paths::Jingles, u"bell.mp3"_s);
  const QString horn = database_.Add(Paths::Jingles, u"horn.mp3"_s);
  catalogue_.AddJingle(bell);
  catalogue_.AddJingle(horn);
  Search(u"Kelvo2007_Jingles"_s);
  catalogue_.RenameJingle(bell, database_.paths(Paths::Jingles) + u"/gong.mp3"_s);
  EXPECT_THAT(catalogue_.SoundBiteNames, ElementsAre(u"gong"_s, u"horn"_s));
  EXPECT_THAT(Names(), ElementsAre(u"gong.mp3"_s, u"horn.mp3"_s));
  EXPECT_TRUE(import_->Rows()[0].path.endsWith(u"/gong.mp3"_s));
  catalogue_.RemoveJingle(horn);
  EXPECT_THAT(Names(), ElementsAre(u"gong.mp3"_s));
}

}  // namespace
}  // namespace kelvo

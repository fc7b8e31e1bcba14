#include "database/ImportOnScreen.h"
#include "database/windows/JingleImportWindow.h"

namespace kelvo {
namespace {

using testing::OnScreen;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

class JinglesOnScreen : public OnScreen<JingleImportWindow, JingleImport> {
 protected:
  void OpenJingles() {
    Open({.loop = loop_,
          .prompter = prompter_,
          .catalogue = catalogue_,
          .paths = database_.paths,
          .title = u"Kelvo"_s});
  }
};

TEST_F(JinglesOnScreen, SoundsAreSearchedImportedAndDeletedByTheirButtons) {
  AddSource(u"bell.mp3"_s);
  AddSource(u"horn.mp3"_s);
  AddSource(u"small.wav"_s, "sound");
  OpenJingles();
  for (const QString& name : {u"CmdImport"_s, u"CmdDelete"_s, u"CmdSelectAll"_s})
    EXPECT_FALSE(Enabled(name)) << "an empty list: " << name.toStdString();
  EXPECT_EQ(List().model()->headerData(0, Qt::Horizontal).toString(), u"File"_s);
  SearchDrive(*work_, u"CmdSearch"_s);
  EXPECT_THAT(Names(), ElementsAre(u"bell.mp3"_s, u"horn.mp3"_s, u"small.wav"_s));
  Click(u"CmdSelectAll"_s);
  Click(u"CmdImport"_s);
  EXPECT_FALSE(Enabled(u"CmdImport"_s)) << "one at a time";
  EXPECT_FALSE(Enabled(u"CmdDelete"_s));
  Finish(*work_);
  EXPECT_EQ(prompter_.Told().last(),
            u"2 Files Were Imported Successfully !\r\n"
            "1 File/s Were Too Small(less than 10kbytes )And were Not Imported!"_s);
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"bell.mp3"_s));
  EXPECT_FALSE(database_.Holds(Paths::Jingles, u"small.wav"_s));

  EXPECT_EQ(List().model()->index(2, 0).data(Qt::AccessibleDescriptionRole).toString(),
            u"The file is no sound file: neither WAV nor MPEG audio was found in it."_s);
  List().selectRow(0);
  prompter_.answers = {Answer::Cancel};
  QTest::keyClick(&List(), Qt::Key_Delete);
  Finish(*work_);
  EXPECT_TRUE(Holds(u"bell.mp3"_s));
  EXPECT_EQ(prompter_.asked.back().safe, Answer::Cancel);
  EXPECT_TRUE(prompter_.asked.back().text.endsWith(u"\r\n\r\n1 file is selected."_s));
  List().selectAll();
  prompter_.answers = {Answer::Ok, Answer::Yes, Answer::No, Answer::No};
  Click(u"CmdDelete"_s);
  Finish(*work_);
  EXPECT_FALSE(Holds(u"bell.mp3"_s));
  EXPECT_EQ(prompter_.asked.back().safe, Answer::No);
  EXPECT_EQ(work_->Words(), u"1 file deleted"_s);
  EXPECT_TRUE(Holds(u"horn.mp3"_s));
  EXPECT_THAT(Names(), ElementsAre(u"horn.mp3"_s, u"small.wav"_s));
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"bell.mp3"_s)) << "the jingle is another file";
}

TEST_F(JinglesOnScreen, ASearchIsStoppedAndAnImportGoesOnInAClosedWindow) {
  AddSource(u"bell.mp3"_s);
  OpenJingles();
  prompter_.paths = {database_.tree.Path(u"drive"_s)};
  Click(u"CmdBrowse"_s);
  loop_.RunFor(10ms);
  Click(u"CmdSearch"_s);
  Click(u"CmdSearch"_s);
  Finish(*work_);
  Click(u"CmdSearch"_s);
  Finish(*work_);
  ASSERT_THAT(Names(), ElementsAre(u"bell.mp3"_s));
  Click(u"CmdSelectAll"_s);
  Click(u"CmdImport"_s);
  shown_->close();
  Finish(*work_);
  EXPECT_TRUE(database_.Holds(Paths::Jingles, u"bell.mp3"_s));
}

}  // namespace
}  // namespace kelvo

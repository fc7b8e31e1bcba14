#include "audio/ClockAudio.h"
#include "database/TestDatabase.h"
#include "database/UtilityFolder.h"
#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>

#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Remembers the player that the folder makes, to see what is heard.
class WatchedAudio : public ClockAudio {
 public:
  using ClockAudio::ClockAudio;
  std::unique_ptr<MediaPlayer> MakePlayer(const QString& output) override {
    EXPECT_EQ(output, QString());
    auto made = ClockAudio::MakePlayer(output);
    player = made.get();
    return made;
  }
  MediaPlayer* player = nullptr;
};

class UtilityFolderTest : public ::testing::Test {
 protected:
  UtilityFolderTest() { Open(); }
  void Open() {
    folder_.reset();
    folder_.emplace(UtilityFolder::Services{.loop = loop_,
                                            .settings = {settings_, u"Kelvo"_s},
                                            .audio = audio_,
                                            .catalogue = catalogue_,
                                            .paths = database_.paths});
  }
  QString Add(const QString& name) {
    const QString path = database_.Add(Paths::Utility, name);
    folder_->List();
    EXPECT_TRUE(loop_.RunUntil([this] { return !folder_->Listing(); }));
    return path;
  }
  [[nodiscard]] const WaitingFile& File(int row) const { return folder_->Rows()[row]; }

  testing::TestDatabase database_;
  SimulatedEventLoop loop_;
  testing::ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  WatchedAudio audio_{loop_};
  Catalogue catalogue_;
  std::optional<UtilityFolder> folder_;
};

TEST_F(UtilityFolderTest, ListsTheFilesOfTheSubfoldersAsTheyWereNamed) {
  Add(u"loose.mp3"_s);
  Add(u"Zulu/plain.wav"_s);
  const QString path = Add(u"Amber/Way#2005-Dec# #.mp3"_s);
  ASSERT_EQ(folder_->Rows().Count(), 2);
  EXPECT_EQ(File(0).fileName, u"Way.mp3"_s);
  EXPECT_EQ(File(0).artist, u"Amber"_s);
  EXPECT_EQ(File(0).path, path);
  EXPECT_EQ(File(1).fileName, u"plain.wav"_s);
}

TEST_F(UtilityFolderTest, ASamplePlaysUntilItIsStoppedOrOver) {
  Add(u"Amber/Way#2005-Dec# #.mp3"_s);
  audio_.SetDuration(Add(u"Amber/broken.mp3"_s), -1);
  folder_->Play(1);
  loop_.RunFor(1s);
  EXPECT_EQ(folder_->PlayingWords(), u"Currently Playing Sample Way.mp3"_s);
  EXPECT_EQ(audio_.player->State(), PlayState::Playing);
  folder_->Play(0);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.asked.size(), 1U);
  EXPECT_EQ(folder_->PlayingWords(), u"Currently Playing Sample Way.mp3"_s) << "what plays goes on";
  folder_->Stop();
  EXPECT_FALSE(folder_->Playing());
  EXPECT_EQ(audio_.player->FileName(), QString()) << "the file is free to be moved";
  folder_->Play(1);
  folder_->Stop();
  loop_.RunFor(1s);
  EXPECT_FALSE(folder_->Playing()) << "a stop counts while the file is being opened";
  folder_->Play(1);
  loop_.RunFor(61s);
  EXPECT_EQ(folder_->PlayingWords(), QString());
}

TEST_F(UtilityFolderTest, TheVolumeIsKept) {
  EXPECT_EQ(folder_->Volume(), 0);
  EXPECT_EQ(audio_.player->Volume(), 0);
  folder_->SetVolume(700);
  EXPECT_EQ(audio_.player->Volume(), -1400);
  Open();
  EXPECT_EQ(folder_->Volume(), 700) << "also when the window closes at once";
  EXPECT_EQ(audio_.player->Volume(), -1400);
  settings_.SaveSetting(u"Kelvo"_s, u"Startup"_s, u"UtilMediaVol"_s, u"-90000"_s);
  Open();
  EXPECT_EQ(folder_->Volume(), 0);
}

}  // namespace
}  // namespace kelvo

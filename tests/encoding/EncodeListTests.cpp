#include "audio/TestSounds.h"
#include "database/PlaylistEntry.h"
#include "database/TestDatabase.h"
#include "encoding/EncodeList.h"
#include "encoding/RetargetLinks.h"
#include "platform/FileSteps.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <cstring>
#include <optional>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class EncodeListTest : public ::testing::Test {
 protected:
  void SetUp() override { Make(); }
  void Make(const QString& tool = u"lame"_s) {
    list_.reset();
    list_.emplace(EncodeList::Services{
        .loop = loop_,
        .prompter = prompter_,
        .catalogue = catalogue_,
        .paths = database_.paths,
        .settings = ProgramSettings(settings_, u"Kelvo"_s),
        .atOnce = 2,
        .lameTool = tool,
        .relink = [this](const QString& from, const QString& to) { relinked_.append(from + u'>' + to); }});
  }
  QString Wave(Paths::Slot slot, const QString& name, double seconds = 1.5) {
    return database_.Add(slot, name, WaveFile(Sine(440, seconds)));
  }
  void Add(const QStringList& places) {
    list_->Add(places);
    loop_.RunFor(1s);
  }
  void Run() {
    list_->Start();
    EXPECT_TRUE(loop_.RunUntil([this] { return !list_->Busy(); }, 1min));
  }
  [[nodiscard]] QStringList Log() const {
    return QStringList(list_->Log().All().begin(), list_->Log().All().end());
  }

  TestDatabase database_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog errors_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  QStringList relinked_;
  std::optional<EncodeList> list_;
};

TEST_F(EncodeListTest, EachFileStandsAloneAndTheLogSaysWhatBecameOfIt) {
  const QString gone = Wave(Paths::Utility, u"Band/gone.wav"_s);
  Add({Wave(Paths::Utility, u"Band/One#2001-Jan#Album#.WAV"_s), database_.Add(Paths::Utility, u"two.mp3"_s),
       database_.Add(Paths::Utility, u"three.wav"_s, QByteArray(20'000, 'x')), gone,
       database_.Add(Paths::Utility, u"tiny.wav"_s, "RIFF")});
  QFile::remove(gone);
  ASSERT_EQ(list_->Rows().Count(), 5);
  EXPECT_EQ(list_->WhyNoStart(), QString());
  Run();
  QStringList log = Log();
  log.sort();
  EXPECT_THAT(log, ::testing::ElementsAre(u"One#2001-Jan#Album#.WAV - One#2001-Jan#Album#.Mp3 Successfull"_s,
                                          u"gone.wav -  File Can't be Found !"_s,
                                          u"three.wav - Incorrect File Format! Not a Wave file."_s,
                                          u"tiny.wav - Incorrect File Format! It is too small for music"_s,
                                          u"two.mp3 - Cant Encode - Not a Wave File !"_s));
  EXPECT_EQ(list_->Words(), u"Encoding Not Entirely Successful"_s);
  const QString made = database_.paths(Paths::Utility) + u"/Band/One#2001-Jan#Album#.Mp3"_s;
  EXPECT_EQ(catalogue_.StagedFiles, QStringList{made}) << "it waits for the transfer";
  EXPECT_TRUE(database_.Holds(Paths::Utility, u"Band/One#2001-Jan#Album#.WAV"_s)) << "the source stays";
  list_->Remove({1, 2, 3, 4});
  EXPECT_FALSE(list_->WhyNoStart().isEmpty()) << "all is done";
  Add({database_.paths(Paths::Utility)});
  EXPECT_EQ(list_->Rows().Count(), 5) << "a folder is added with all that is music, and nothing twice";
}

TEST_F(EncodeListTest, PresetsOfTheSettingsAreUsedAndShown) {
  EXPECT_EQ(list_->PresetWords().first(5),
            (QStringList{u" Current Preset : R3 Mix (Active)"_s, u" Bitrate : 128"_s, u" Sample Rate 44100"_s,
                         u" Vbr Quality 4"_s, u" Vbr Enabled Yes"_s}));
  settings_.SaveSetting(u"Kelvo"_s, u"Mp3Encoding"_s, u"Presets"_s, u"12,64,22050,4,0"_s);
  EXPECT_EQ(list_->PresetWords().last(), u"Files get a constant bit rate of 64 kbit/s, 22050 Hz, stereo."_s);
  Add({Wave(Paths::Jingles, u"bell.wav"_s, 4)});
  Run();
  EXPECT_NEAR(static_cast<double>(QFileInfo(database_.paths(Paths::Jingles) + u"/bell.Mp3"_s).size()),
              4 * 8000, 1500);
  EXPECT_THAT(catalogue_.SoundBiteNames, ::testing::SizeIs(1));
  settings_.SaveSetting(u"Kelvo"_s, u"Mp3Encoding"_s, u"Presets"_s, u"99,64,22050,4,0"_s);
  EXPECT_EQ(list_->PresetWords().first(), u" Current Preset : 99 (Not Active)"_s);
  Add({Wave(Paths::Jingles, u"other.wav"_s)});
  EXPECT_EQ(list_->WhyNoStart(), u"The Mp3 Quality Setting 99 Is Not A valid Option !"_s);
}

TEST_F(EncodeListTest, ATrackBecomesItsMp3WithItsInfo) {
  const QString path = Wave(Paths::Music, u"The Band - Song.wav"_s);
  database_.Add(Paths::Info, u"The Band - Song.kif"_s, InfoBytes());
  catalogue_.Replace(CatalogueTables(database_.paths(Paths::Music)));
  catalogue_.Append({.name = u"The Band - Song"_s, .extension = u".wav"_s, .gain = u"-3.5,0.2"_s});
  ASSERT_EQ(catalogue_.TrackPaths(ToMref(1)), path);
  list_->SetDeletesSources(true);
  Add({path});
  Run();
  EXPECT_EQ(list_->Words(), u"Encoding Done Successfully"_s);
  EXPECT_FALSE(database_.Holds(Paths::Music, u"The Band - Song.wav"_s));
  ASSERT_EQ(catalogue_.LastTrack(), 1);
  const QString made = database_.paths(Paths::Music) + u"/The Band - Song.Mp3"_s;
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(1)), made);
  EXPECT_TRUE(QFileInfo::exists(made));
  EXPECT_EQ(catalogue_.TrackGain[ToMref(1)], u"?"_s) << "it has to be measured anew";
  EXPECT_EQ(database_.Info(u"The Band - Song"_s), InfoBytes().replace("-3.5,0.2", "?"));
  EXPECT_EQ(relinked_, QStringList{path + u'>' + made});
}

TEST_F(EncodeListTest, ATrackWhoseSourceStaysGetsATrackBesideIt) {
  const QString path = Wave(Paths::Music, u"The Band - Song.wav"_s, 3);
  database_.Add(Paths::Info, u"The Band - Song.kif"_s, InfoBytes());
  catalogue_.Replace(CatalogueTables(database_.paths(Paths::Music)));
  catalogue_.Append({.name = u"The Band - Song"_s, .extension = u".wav"_s});
  Add({path});
  Run();
  ASSERT_EQ(catalogue_.LastTrack(), 2);
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(1)), path);
  EXPECT_EQ(catalogue_.TrackPaths(ToMref(2)), database_.paths(Paths::Music) + u"/The Band - Song.Mp3"_s);
  EXPECT_EQ(catalogue_.TrackGenres[ToMref(2)], u"~ALL CATEGORIES,Rock,Pop"_s);
  EXPECT_NEAR(catalogue_.TrackDurations(ToMref(2)), 3, 0.001);
  EXPECT_TRUE(relinked_.isEmpty());
  // Again, and now for good: the row of the file that is replaced goes.
  list_->Remove({0});
  list_->SetDeletesSources(true);
  Add({path});
  Run();
  ASSERT_EQ(catalogue_.LastTrack(), 1);
  EXPECT_TRUE(catalogue_.TrackPaths(ToMref(1)).endsWith(u"Song.Mp3"_s));
}

TEST_F(EncodeListTest, EntriesOfPlaylistsLeadToTheResult) {
  const QString list = Paths::FolderName(Paths::Playlists) + u"/Rock/Mix"_s;
  database_.tree.MakeFolder(list);
  const auto path = [&](const QString& name) { return database_.tree.Path(list + u'/' + name); };
  PlaylistLink{u"/music/Song.WAV"_s, u"Std"_s}.Write(path(u" 1~Song.lnk"_s));
  PlaylistLink{u"/music/Other.wav"_s, u"7"_s}.Write(path(u" 2~Other.lnk"_s));
  database_.tree.Write(list + u"/ 3~Bad.lnk"_s, "no link");
  const QByteArray other = database_.tree.Read(list + u"/ 2~Other.lnk"_s);
  RetargetLinks(database_.paths(Paths::Playlists), u"/music/Song.wav"_s, u"/music/Song.Mp3"_s);
  const PlaylistLink link = PlaylistLink::Read(path(u" 1~Song.lnk"_s));
  EXPECT_EQ(link.targetPath, u"/music/Song.Mp3"_s);
  EXPECT_EQ(link.arguments, u"Std"_s);
  EXPECT_EQ(database_.tree.Read(list + u"/ 2~Other.lnk"_s), other);
  EXPECT_EQ(database_.tree.Read(list + u"/ 3~Bad.lnk"_s), "no link");
}

TEST_F(EncodeListTest, SourcesThatCanNotBeVouchedForStay) {
  const QString path = Wave(Paths::Utility, u"Band/One.wav"_s);
  list_->SetDeletesSources(true);
  Add({path});
  {
    // Somebody still records into it.
    const FileSteps steps([&path](const char* call) {
      if (std::strncmp(call, "rename", 6) != 0) return;
      QFile file(path);
      if (file.open(QIODevice::Append)) file.write("more");
    });
    Run();
  }
  EXPECT_TRUE(QFileInfo::exists(path));
  EXPECT_THAT(Log().join(u'\n').toStdString(), ::testing::HasSubstr("Not Deleted : It has changed"));
  EXPECT_EQ(list_->Words(), u"Encoding Not Entirely Successful"_s);
}

TEST_F(EncodeListTest, CancelEndsTheRunWithNoHalfFile) {
  Add({Wave(Paths::Utility, u"One.wav"_s), Wave(Paths::Utility, u"Two.wav"_s),
       Wave(Paths::Utility, u"Three.wav"_s)});
  list_->Start();
  // In simulated time the first two are done by now; their ends are not heard yet.
  list_->Cancel();
  EXPECT_EQ(list_->Words(), u"Encoding Cancelled"_s);
  EXPECT_TRUE(loop_.RunUntil([this] { return !list_->Busy(); }, 1min));
  EXPECT_EQ(Log().last(), u"Canceled"_s);
  EXPECT_FALSE(database_.Holds(Paths::Utility, u"Three.Mp3"_s));
  EXPECT_EQ(list_->Rows()[2].state, EncodeRow::State::Cancelled);
  EXPECT_EQ(list_->WhyNoStart(), QString());
}

TEST_F(EncodeListTest, DecodesWithTheToolAndTellsOfOneThatFails) {
  const QString mp3 = database_.Add(Paths::Utility, u"-One.mp3"_s, Mp3File(Sine(440, 2)));
  const QString broken = database_.Add(Paths::Utility, u"Two.mp3"_s, "no music");
  Add({mp3, broken});
  list_->Decode({0, 1});
  EXPECT_EQ(list_->Words(), u"Decoding -One.mp3 Please Wait..."_s);
  EXPECT_TRUE(loop_.RunUntil([this] { return !list_->Busy(); }, 1min));
  EXPECT_TRUE(database_.Holds(Paths::Playlists, u"-One.wav"_s));
  EXPECT_FALSE(database_.Holds(Paths::Playlists, u"Two.wav"_s));
  EXPECT_THAT(Log().last().toStdString(), ::testing::StartsWith("Two.mp3 Failed !"));
  // The tool says that all went well.
  Make(database_.tree.Write(u"lying"_s, "#!/bin/sh\nprintf x > \"$4\"\n"));
  QFile::setPermissions(database_.tree.Path(u"lying"_s), QFile::ReadOwner | QFile::ExeOwner);
  Add({database_.Add(Paths::Utility, u"Three.mp3"_s, Mp3File(Sine(440, 2)))});
  list_->Decode({0});
  EXPECT_TRUE(loop_.RunUntil([this] { return !list_->Busy(); }, 1min));
  EXPECT_FALSE(database_.Holds(Paths::Playlists, u"Three.wav"_s));
  EXPECT_EQ(QDir(database_.paths(Paths::Playlists)).entryList(QDir::Files | QDir::Hidden),
            QStringList{u"-One.wav"_s});
  Make(u"/nowhere/lame"_s);
  Add({mp3});
  prompter_.answers = {Answer::No, Answer::Yes};
  list_->Decode({0});
  EXPECT_TRUE(loop_.RunUntil([this] { return !list_->Busy(); }, 1min));
  EXPECT_EQ(Log(), QStringList()) << "what is there is kept";
  list_->Decode({0});
  EXPECT_TRUE(loop_.RunUntil([this] { return !list_->Busy(); }, 1min));
  EXPECT_THAT(Log().last().toStdString(), ::testing::HasSubstr("can't be started"));
  EXPECT_TRUE(database_.Holds(Paths::Playlists, u"-One.wav"_s));
}

}  // namespace
}  // namespace kelvo::testing

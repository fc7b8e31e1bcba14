#include "audio/TestSounds.h"
#include "burning/BurnList.h"
#include "discs/CdioDrive.h"
#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "platform/QtEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <optional>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;

constexpr std::size_t kSector = 588;

std::vector<std::int16_t> SamplesOf(const QByteArray& bytes) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(bytes.size()) / 2);
  std::memcpy(samples.data(), bytes.constData(), samples.size() * 2);
  return samples;
}

std::vector<std::int16_t> SamplesOf(const Samples& sound) {
  std::vector<std::int16_t> samples;
  for (const float each : sound) samples.push_back(static_cast<std::int16_t>(std::lround(each * 32768)));
  return samples;
}

TEST(BurnWords, ReadsWhatTheToolsTell) {
  const std::vector<BurnDrive> drives = DrivesIn(
      "Available drives :\n-----\n0  -dev '/dev/sr0' rwrw-- :  'MAKER   ' 'DVD RW X1'\n"
      "1  -dev '/dev/sr1' r--r-- :  'OTHER' 'B'\n-----\n");
  ASSERT_EQ(drives.size(), 2U);
  EXPECT_EQ(drives[0].device, u"/dev/sr0"_s);
  EXPECT_EQ(drives[0].words, u"MAKER DVD RW X1 (/dev/sr0)"_s);
  const BurnMedium blank = MediumIn(
      "Media current: CD-R\nMedia status : is blank\nMedia space  : 359845s\nAfter commit : 359845s\n");
  EXPECT_TRUE(blank.there && blank.blank);
  EXPECT_EQ(blank.freeSectors, 359'845);
  const BurnMedium used = MediumIn("Media current: CD-RW\nMedia status : is written , is closed\n");
  EXPECT_TRUE(used.writable && !used.blank);
  EXPECT_FALSE(MediumIn("Media current: CD-R\nMedia status : is written , is closed\n").writable);
  EXPECT_TRUE(MediumIn("Media current: CD-R\nMedia status : is written , is appendable\n").writable);
  EXPECT_FALSE(MediumIn("Media current: is not recognizable\n").there);
  EXPECT_FALSE(MediumIn("").there);
  EXPECT_EQ(ImageSectorsIn("Image size   : 2656s\n"), 2656);
  EXPECT_EQ(ImageSectorsIn("no such line"), std::nullopt);
  EXPECT_DOUBLE_EQ(*ShareIn("xorriso : UPDATE : Writing:      26912s   18.0%   fifo  62%  buf  50%"), 0.18);
  EXPECT_DOUBLE_EQ(*ShareIn("Track 02:   10 of   40 MB written (fifo  98%) [buf  99%]   7.9x."), 0.25);
  EXPECT_DOUBLE_EQ(*ShareIn("Writing: 900.0%"), 1);
  EXPECT_EQ(ShareIn("Track 01: 5 of 0 MB written"), std::nullopt);
  EXPECT_EQ(ShareIn("xorriso : UPDATE :       2 files added in 0.1 seconds"), std::nullopt);
  EXPECT_TRUE(SaysEqual("Both file objects match as far as expectable.\n"));
  EXPECT_FALSE(SaysEqual("Differences detected.\n"));
  EXPECT_FALSE(SaysEqual(""));
  EXPECT_EQ(TrackStartsIn("track:   1 lba:         0 (        0) 00:02:00 adr: 1 control: 0 mode: -1\n"
                          "track:   2 lba:      1500 (     6000) 00:22:00 adr: 1 control: 0 mode: -1\n"
                          "track:lout lba:      3000 (    12000) 00:42:00 adr: 1 control: 0 mode: -1\n"),
            (std::vector<std::int64_t>{0, 1500}));
  EXPECT_EQ(TroubleIn("a\nxorriso : FAILURE : No disc\nxorriso : UPDATE : 3%\n"),
            u"xorriso : FAILURE : No disc"_s);
}

TEST(BurnWords, LinesAreCutWhateverPiecesTheyComeIn) {
  QList<QByteArray> lines;
  LineCutter cutter([&lines](const QByteArray& line) { lines.append(line); });
  for (const char* piece : {"on", "e\ntw", "o\r\n\nthr", "ee"}) cutter.Take(piece);
  EXPECT_EQ(lines, (QList<QByteArray>{"one", "two"}));
  lines.clear();
  cutter.Take(QByteArray(10'000, 'x'));
  EXPECT_EQ(lines.size(), 2) << "a flood without an end is not gathered";
}

class AudioDiscTest : public ::testing::Test {
 protected:
  DiscTrack Track(const QString& name, const Samples& sound, const WaveKind& kind = {}) {
    return {tree_.Write(name + u".wav"_s, WaveFile(sound, kind)), u"Band"_s, name};
  }
  AudioDiscOrder Order(std::vector<DiscTrack> tracks) {
    return {.tracks = std::move(tracks),
            .title = u"Evening"_s,
            .binFile = tree_.Path(u"disc.bin"_s),
            .cueFile = tree_.Path(u"disc.cue"_s)};
  }
  std::string FailureOf(const AudioDiscOrder& order) {
    try {
      static_cast<void>(WriteAudioDisc(order, control_));
    } catch (const Failure& failure) {
      EXPECT_FALSE(tree_.Exists(u"disc.bin"_s) || tree_.Exists(u"disc.cue"_s));
      return failure.what();
    }
    return {};
  }

  TemporaryTree tree_;
  AudioDiscControl control_;
};

TEST_F(AudioDiscTest, TracksFollowEachOtherToTheSampleAndReadBackBitIdentical) {
  // The middle one is no whole number of sectors, so the third begins within one.
  const Samples first = Noise(400 * kSector, 1);
  const Samples second = Noise(350 * kSector + 201, 2);
  const Samples third = Noise(301 * kSector, 3);
  const AudioDisc disc = WriteAudioDisc(
      Order({Track(u"One"_s, first), Track(u"Tw\"o Łódź"_s, second), Track(u"Three"_s, third)}), control_);
  EXPECT_EQ(disc.starts, (std::vector<std::int64_t>{0, 400, 750}));
  EXPECT_EQ(disc.sectors, 400 + 350 + 302);
  std::vector<std::int16_t> expected = SamplesOf(first);
  for (const Samples& more : {second, third}) {
    const std::vector<std::int16_t> samples = SamplesOf(more);
    expected.insert(expected.end(), samples.begin(), samples.end());
  }
  expected.resize(static_cast<std::size_t>(disc.sectors) * kSector * 2);
  EXPECT_EQ(SamplesOf(tree_.Read(u"disc.bin"_s)), expected);
  EXPECT_EQ(
      QString::fromUtf8(tree_.Read(u"disc.cue"_s)),
      u"TITLE \"Evening\"\r\nFILE \"disc.bin\" BINARY\r\n"
      "  TRACK 01 AUDIO\r\n    TITLE \"One\"\r\n    PERFORMER \"Band\"\r\n    INDEX 01 00:00:00\r\n"
      "  TRACK 02 AUDIO\r\n    TITLE \"Tw'o Łódź\"\r\n    PERFORMER \"Band\"\r\n    INDEX 01 00:05:25\r\n"
      "  TRACK 03 AUDIO\r\n    TITLE \"Three\"\r\n    PERFORMER \"Band\"\r\n    INDEX 01 00:10:00\r\n"_s);
  EXPECT_NO_THROW(ProveAudioDisc(tree_.Path(u"disc.bin"_s), disc));
  QByteArray bytes = tree_.Read(u"disc.bin"_s);
  bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
  tree_.Write(u"disc.bin"_s, bytes);
  EXPECT_THROW(ProveAudioDisc(tree_.Path(u"disc.bin"_s), disc), Failure);
}

TEST_F(AudioDiscTest, AnImageIsReadAsADiscWithItsTracksTextAndSamples) {
  const Samples first = Noise(400 * kSector, 1);
  const Samples second = Noise(350 * kSector, 2);
  static_cast<void>(
      WriteAudioDisc(Order({Track(u"One"_s, first), Track(u"Zwölf Łódź"_s, second)}), control_));
  CdioDrive drive(tree_.Path(u"disc.cue"_s), std::make_shared<DriveBeat>());
  const DiscToc toc = drive.ReadToc();
  ASSERT_EQ(toc.tracks.size(), 2U);
  EXPECT_EQ(toc.title, u"Evening"_s);
  EXPECT_EQ(toc.tracks[1].title, u"Zwölf Łódź"_s);
  EXPECT_EQ(toc.tracks[1].performer, u"Band"_s);
  for (const auto& [track, sound] : {std::pair(toc.tracks[0], first), std::pair(toc.tracks[1], second)}) {
    std::vector<std::int16_t> read(static_cast<std::size_t>(track.sectors) * kSector * 2);
    drive.Read(track.first, read);
    EXPECT_EQ(read, SamplesOf(sound)) << track.number;
  }
}

TEST_F(AudioDiscTest, AReadBackAllowsTheShiftOfADriveAndNothingElse) {
  const AudioDisc disc = WriteAudioDisc(Order({Track(u"One"_s, Noise(420 * kSector))}), control_);
  std::vector<std::int16_t> sound = SamplesOf(tree_.Read(u"disc.bin"_s));
  for (const int shift : {0, 30, -667, 1764}) {
    const ReadSectors read = [&sound, shift](int sector, std::span<std::int16_t> target) {
      const auto all = static_cast<std::ptrdiff_t>(sound.size());
      for (std::size_t i = 0; i < target.size(); ++i) {
        const auto at = static_cast<std::ptrdiff_t>(i) + (sector * static_cast<int>(kSector) - shift) * 2;
        target[i] = at >= 0 && at < all ? sound[static_cast<std::size_t>(at)] : std::int16_t{0};
      }
    };
    EXPECT_NO_THROW(CompareAudioDisc(tree_.Path(u"disc.bin"_s), disc, read, control_)) << shift;
    sound[9 * kSector * 2] = static_cast<std::int16_t>(sound[9 * kSector * 2] ^ 1);
    EXPECT_THROW(CompareAudioDisc(tree_.Path(u"disc.bin"_s), disc, read, control_), Failure) << shift;
    sound[9 * kSector * 2] = static_cast<std::int16_t>(sound[9 * kSector * 2] ^ 1);
  }
  const ReadSectors another = [](int, std::span<std::int16_t> target) {
    std::fill(target.begin(), target.end(), 7);
  };
  EXPECT_THROW(CompareAudioDisc(tree_.Path(u"disc.bin"_s), disc, another, control_), Failure);
}

TEST_F(AudioDiscTest, TheSheetForABurnerHasTheLettersOfDiscs) {
  AudioDiscOrder order = Order({Track(u"Café Łódź"_s, Noise(300 * kSector))});
  order.forDrive = true;
  static_cast<void>(WriteAudioDisc(order, control_));
  EXPECT_TRUE(tree_.Read(u"disc.cue"_s)
                  .contains("TITLE \"Caf\xE9 ?\xF3"
                            "dz\""))
      << tree_.Read(u"disc.cue"_s).toStdString();
}

TEST_F(AudioDiscTest, AFullDiskAndAKillLeaveTheImageThatWasThere) {
  const AudioDiscOrder order = Order({Track(u"One"_s, Noise(310 * kSector))});
  tree_.Write(u"disc.bin"_s, "before");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  rlimit full = limit;
  full.rlim_cur = 200'000;
  ::setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_THROW(static_cast<void>(WriteAudioDisc(order, control_)), Failure);
  ::setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_EQ(tree_.Read(u"disc.bin"_s), "before");
  EXPECT_EQ(QDir(tree_.Path()).entryList({u".*"_s}, QDir::Files | QDir::Hidden), QStringList());
  bool killed = true;
  for (int step = 0; killed; step += step < 4 ? 1 : 20) {
    tree_.Write(u"disc.bin"_s, "before");
    killed = KilledBefore(step, [&] { static_cast<void>(WriteAudioDisc(order, control_)); });
    const qsizetype size = tree_.Read(u"disc.bin"_s).size();
    EXPECT_TRUE(size == 6 || size == 310 * 2352) << "step " << step << ": " << size;
    if (tree_.Exists(u"disc.cue"_s)) {
      EXPECT_EQ(size, 310 * 2352) << "a sheet tells of sectors that are there";
    }
    QFile::remove(tree_.Path(u"disc.cue"_s));
  }
}

TEST_F(AudioDiscTest, WhatFitsOnNoDiscIsRefusedBeforeAnythingIsWritten) {
  EXPECT_EQ(FailureOf(Order({})), "No track was given.");
  EXPECT_THAT(FailureOf(Order({Track(u"Short"_s, Noise(299 * kSector))})),
              ::testing::StartsWith("Short is shorter than the 4 seconds"));
  const DiscTrack track = Track(u"One"_s, Noise(400 * kSector));
  EXPECT_THAT(FailureOf(Order(std::vector<DiscTrack>(100, track))), ::testing::StartsWith("A disc holds 99"));
  AudioDiscOrder small = Order({track, track});
  small.mostSectors = 799;
  EXPECT_EQ(FailureOf(small), "The tracks last 00:10, the disc holds 00:10.");
  small.mostSectors = 800;
  EXPECT_EQ(FailureOf(small), "");
  QDir(tree_.Path()).remove(u"disc.bin"_s);
  QDir(tree_.Path()).remove(u"disc.cue"_s);
  EXPECT_NE(FailureOf(Order({track, {tree_.Path(u"gone.wav"_s), {}, u"gone"_s}})), "");
  control_.stop = true;
  EXPECT_TRUE(WriteAudioDisc(Order({track}), control_).stopped);
  EXPECT_FALSE(tree_.Exists(u"disc.bin"_s));
}

/// The list of the burner in real time, with the real tools or with a shell script in their place.
class BurnListTest : public ::testing::Test {
 protected:
  void SetUp() override { Make({}); }
  void Make(const cSimpleCDBurner::Tools& tools) {
    list_.reset();
    list_.emplace(BurnList::Services{.loop = loop_,
                                     .prompter = prompter_,
                                     .title = u"Kelvo"_s,
                                     .stagingFolder = tree_.Path(u"staging"_s),
                                     .documents = tree_.MakeFolder(u"documents"_s),
                                     .playlists = {},
                                     .reader = [this](const QString&) { return reader_; },
                                     .tools = tools});
  }
  /// A tool that does this: `$*` are its arguments. Its drive is blank and holds 1000 sectors.
  QString Script(const QString& burn) {
    QByteArray script = R"(#!/bin/sh
case "$*" in
*-devices*) echo "0  -dev '/dev/fake' rwrw-- :  'FAKE' 'BURNER'" ;;
*-tell_media_space*) echo "Media current: CD-R"; echo "Media status : is blank"; echo "Media space  : 1000s" ;;
*-print_size*) echo "Image size   : $(cat 'FOLDER/size')s" ;;
*-compare_r*) cat 'FOLDER/compared' ;;
*) BURN ;;
esac
)";
    script.replace("FOLDER", tree_.Path().toUtf8()).replace("BURN ;;", burn.toUtf8() + " ;;");
    const QString path = tree_.Write(u"tool"_s, script);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    tree_.Write(u"size"_s, "900");
    tree_.Write(u"compared"_s, "Both file objects match as far as expectable.\n");
    return path;
  }
  void MakeFake(const QString& burn) {
    const QString tool = Script(burn);
    Make({tool, tool});
    list_->Open();
    Wait();
    ASSERT_FALSE(list_->ToImage());
  }
  void Wait() {
    ASSERT_TRUE(TurnUntil([this] { return !list_->AtWork(); }));
  }
  void AddAndStage(const QStringList& files) {
    const int before = list_->Rows().Count();
    list_->Add(files);
    ASSERT_TRUE(TurnUntil([&] { return list_->Rows().Count() == before + files.size(); }));
    std::vector<int> rows;
    for (int row = before; row < list_->Rows().Count(); ++row) rows.push_back(row);
    list_->Stage(rows);
    Wait();
  }
  [[nodiscard]] QString LastTold() const {
    return prompter_.Told().isEmpty() ? QString() : prompter_.Told().last();
  }

  /// What the drive reads of an audio CD: what was written.
  ReadSectors reader_ = [this](int sector, std::span<std::int16_t> target) {
    const std::vector<std::int16_t> all = SamplesOf(tree_.Read(u"staging-audio.bin"_s));
    std::copy_n(all.begin() + sector * static_cast<int>(kSector) * 2, target.size(), target.begin());
  };
  TemporaryTree tree_;
  QtEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog errors_{loop_, prompter_, tree_.Path(u"kelvo.log"_s)};
  std::optional<BurnList> list_;
};

TEST_F(BurnListTest, FilesAreStagedWrittenIntoAnImageAndReadBack) {
  list_->Open();
  Wait();
  EXPECT_EQ(list_->DriveWords(), u"No Recordable Drive Found On System"_s);
  EXPECT_EQ(LastTold(), u"No Recordable Drive Found On Your System."_s);
  list_->Burn();
  EXPECT_EQ(LastTold(), u"No Files Selected To Burn ! "_s);
  list_->Stage({});
  EXPECT_EQ(LastTold(), u"No Files Selected To Burn ! "_s);
  const QString one = tree_.Write(u"a/Bänd - Söng.mp3"_s, QByteArray(3'000'000, 'a'));
  const QString same = tree_.Write(u"b/Bänd - Söng.mp3"_s, QByteArray(5000, 'b'));
  AddAndStage({one, same});
  EXPECT_EQ(list_->Words(), u"Done Staging "_s);
  EXPECT_EQ(list_->Rows()[0].NameText(), u"Bänd - Söng.mp3 Staged"_s);
  EXPECT_EQ(QDir(tree_.Path(u"staging"_s)).entryList(QDir::Files),
            (QStringList{u"Bänd - Söng.mp3"_s, u"Bänd - Söng_1.mp3"_s}));
  list_->SetImagePath(tree_.Path(u"documents/my disc.iso"_s));
  list_->Burn();
  Wait();
  EXPECT_EQ(list_->Words(), u"Burn Done : written, read back and equal"_s);
  EXPECT_GT(QFileInfo(list_->ImagePath()).size(), 3'005'000);
  EXPECT_EQ(QDir(tree_.Path(u"documents"_s)).entryList(QDir::Files | QDir::Hidden),
            QStringList{u"my disc.iso"_s});
  prompter_.answers = {Answer::No};
  list_->Burn();
  Wait();
  EXPECT_EQ(list_->Words(), u"The image was not written"_s);

  Make({});
  list_->Open();
  Wait();
  EXPECT_EQ(list_->Rows().Count(), 2) << "what is staged is there at the next start";
  list_->Delete({1});
  Wait();
  EXPECT_EQ(list_->Words(), u"Delete Done !"_s);
  EXPECT_TRUE(QFileInfo::exists(same)) << "only its copy is deleted";
  list_->ClearStaging();
  Wait();
  EXPECT_EQ(list_->Words(), u"Staging Area Cleared !"_s);
  EXPECT_EQ(list_->Rows().Count(), 0);
  list_->ClearStaging();
  Wait();
  EXPECT_EQ(list_->Words(), u"Nothing to Clear!"_s);
}

TEST_F(BurnListTest, WithoutTheServiceTheWordsSaySo) {
  Make({u"/nowhere/xorriso"_s, u"/nowhere/cdrskin"_s});
  list_->Open();
  Wait();
  EXPECT_EQ(list_->DriveWords(), u"CD Burner Interface not initialised"_s);
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("Failed to instantiate CDBurn implementation"));
}

TEST_F(BurnListTest, ABurnerThatFailsIsToldInItsOwnWords) {
  MakeFake(
      u"echo 'xorriso : UPDATE : Writing: 5s  50.0%' >&2; echo 'xorriso : FAILURE : Servo error' >&2; exit 5"_s);
  AddAndStage({tree_.Write(u"a.mp3"_s, "music")});
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(),
              ::testing::StartsWith("An Error Occurred Whilst Trying to Burn the Files."));
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("Servo error"));
  EXPECT_EQ(list_->Words(), u"The disc was not written"_s);
  tree_.Write(u"size"_s, "1001");
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(),
              ::testing::HasSubstr("The files need 1.96 MB, the disc holds 1.95 MB."));
  MakeFake(u"true"_s);
  tree_.Write(u"compared"_s, "Differences detected.\n");
  AddAndStage({tree_.Write(u"b.mp3"_s, "music")});
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("What was read back is not what was written"));
}

TEST_F(BurnListTest, ADiscThatHoldsSomethingIsAskedForAndOneThatIsWrittenForGoodIsRefused) {
  MakeFake(u"echo burnt >> '%1'"_s.arg(tree_.Path(u"done"_s)));
  AddAndStage({tree_.Write(u"a.mp3"_s, "music")});
  const auto medium = [this](const QByteArray& words) {
    QByteArray script = tree_.Read(u"tool"_s);
    const qsizetype from = script.indexOf("media_space*)") + 13;
    script.replace(from, script.indexOf(" ;;", from) - from, " printf '" + words + "'");
    tree_.Write(u"tool"_s, script);
  };
  medium("Media current: CD-RW\\nMedia status : is written , is closed\\n");
  prompter_.answers = {Answer::No};
  list_->Burn();
  Wait();
  EXPECT_FALSE(tree_.Exists(u"done"_s));
  EXPECT_THAT(LastTold().toStdString(), ::testing::StartsWith("The Disc Is Not Blank"));
  prompter_.answers = {Answer::Yes};
  list_->Burn();
  Wait();
  EXPECT_EQ(tree_.Read(u"done"_s), "burnt\n");
  medium("Media current: CD-R\\nMedia status : is written , is closed\\n");
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("can't be written again"));
  medium("Media current: is not recognizable\\n");
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("No disc that can be written is in the drive."));
  EXPECT_EQ(tree_.Read(u"done"_s), "burnt\n");
}

TEST_F(BurnListTest, AFloodOfWordsIsReadToItsEndAndABurnerThatHangsIsStopped) {
  MakeFake(u"yes 'xorriso : UPDATE : Writing: 5s  50.0%' | head -n 200000 >&2; head -c 3000000 /dev/zero"_s);
  AddAndStage({tree_.Write(u"a.mp3"_s, "music")});
  list_->Burn();
  Wait();
  EXPECT_EQ(list_->Words(), u"Burn Done : written, read back and equal"_s);
  MakeFake(
      u"trap 'touch \"%1\"; exit 1' INT; echo 'Writing: 5s 50.0%' >&2; while :; do sleep 0.02; done"_s.arg(
          tree_.Path(u"stopped"_s)));
  list_->Burn();
  ASSERT_TRUE(TurnUntil([this] { return list_->Share().value_or(0) > 0.3; }));
  const auto told = prompter_.asked.size();
  list_->Stop();
  Wait();
  EXPECT_EQ(list_->Words(), u"Stopped"_s);
  EXPECT_TRUE(tree_.Exists(u"stopped"_s)) << "it was asked to end";
  EXPECT_EQ(prompter_.asked.size(), told) << "a stop is no failure";
}

TEST_F(BurnListTest, AnAudioDiscGoesToTheBurnerWithItsSheetAndIsCheckedByItsContents) {
  MakeFake(
      u"case \"$*\" in *-toc*) cat \"%1\" ;; *cuefile=*) for a; do :; done; cp \"${a#cuefile=}\" \"%2\"; "
      "echo 'Track 01: 9 of 9 MB written' ;; esac"_s.arg(tree_.Path(u"toc"_s), tree_.Path(u"seen.cue"_s)));
  tree_.Write(u"toc"_s, "track:   1 lba:         0 (\ntrack:   2 lba:       400 (\ntrack:lout lba: 800\n");
  list_->SetKind(BurnKind::Audio);
  const QString sound = tree_.Write(u"The Band - Song.wav"_s, WaveFile(Noise(400 * kSector)));
  list_->Add({sound, sound});
  ASSERT_TRUE(TurnUntil([this] { return list_->Rows().Count() == 2; }));
  list_->Burn();
  Wait();
  EXPECT_EQ(list_->Words(), u"Burn Done : written, read back and equal"_s) << LastTold().toStdString();
  EXPECT_TRUE(tree_.Read(u"seen.cue"_s).contains("PERFORMER \"The Band\""));
  EXPECT_FALSE(tree_.Exists(u"staging-audio.bin"_s)) << "what was made for it goes";
  reader_ = [](int, std::span<std::int16_t> target) { std::fill(target.begin(), target.end(), 1); };
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("What was read back is not what was written"));
  tree_.Write(u"toc"_s, "track:   1 lba:         0 (\n");
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("table of contents"));
  list_->Add({sound});
  ASSERT_TRUE(TurnUntil([this] { return list_->Rows().Count() == 3; }));
  list_->Burn();
  Wait();
  EXPECT_THAT(LastTold().toStdString(), ::testing::HasSubstr("The tracks last 00:16, the disc holds 00:13."));
}

}  // namespace
}  // namespace kelvo::testing

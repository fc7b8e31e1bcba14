// Whole rips in simulated time, from drives that work and drives that fail or hang at each call.

#include "database/TestDatabase.h"
#include "discs/FakeDrives.h"
#include "discs/Ripper.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QDirIterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

using namespace kelvo;
using namespace kelvo::testing;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

class RipperTest : public ::testing::Test {
 protected:
  void Open(std::shared_ptr<DiscDrives> drives) {
    (void)database_.tree.Write(u"cdrip.ini"_s, "Writer=" + WriterName::kWave.toUtf8() + "\r\n");
    shelf_ = std::make_shared<DriveShelf>(DriveShelf::Services{loop_, prompter_, std::move(drives)});
    ripper_.emplace(Ripper::Services{.loop = loop_,
                                     .prompter = prompter_,
                                     .catalogue = catalogue_,
                                     .paths = database_.paths,
                                     .settings = ProgramSettings(settings_, u"Kelvo"_s),
                                     .title = u"Kelvo"_s,
                                     .iniPath = database_.tree.Path(u"cdrip.ini"_s),
                                     .shelf = shelf_,
                                     .writers = OwnWriters()});
    ripper_->Open();
    Settle();
  }
  void Open() { Open(std::make_shared<FakeDrives>(disc_)); }
  void Settle() {
    loop_.RunFor(1s);
    loop_.RunUntil([this] { return !ripper_->Reading() && !ripper_->Busy(); }, 1h);
    loop_.RunFor(1s);
  }
  /// Names all rows as they should be.
  void Name() {
    for (int row = 0; row < ripper_->Rows().Count(); ++row) {
      const int number = ripper_->Rows().Row(row).track.number;
      ripper_->Rows().SetText(row, RipRows::Name, u"Band - Song %1"_s.arg(number));
      ripper_->Rows().SetText(row, RipRows::Artist, u"Band"_s);
      ripper_->Rows().SetText(row, RipRows::Year, u"1999-Dec"_s);
    }
    ripper_->SetAlbum(u"Album"_s);
  }
  void Rip() {
    ripper_->Start();
    Settle();
  }
  /// The files below the utility folder, hidden ones too, without the logs.
  QStringList Staged() {
    QStringList files;
    const QDir root(database_.paths(Paths::Utility));
    for (QDirIterator walk(root.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         walk.hasNext();) {
      const QString file = root.relativeFilePath(walk.next());
      if (!file.endsWith(u".log"_s)) files.append(file);
    }
    files.sort();
    return files;
  }
  QByteArray Sound(const QString& file) {
    return database_.tree.Read(Paths::FolderName(Paths::Utility) + u'/' + file).mid(44);
  }
  static QByteArray Bytes(const std::vector<std::int16_t>& samples) {
    return {reinterpret_cast<const char*>(samples.data()), static_cast<qsizetype>(samples.size() * 2)};
  }
  QString Log() {
    const QDir root(database_.paths(Paths::Utility));
    const QStringList logs = root.entryList({u"Rip *.log"_s});
    return logs.isEmpty()
               ? QString()
               : QString::fromUtf8(database_.tree.Read(Paths::FolderName(Paths::Utility) + u'/' + logs[0]));
  }
  QString Song(int number) { return u"Band/Band - Song %1#1999-Dec#Album#.Wav"_s.arg(number); }
  QString LastTold() { return prompter_.Told().isEmpty() ? QString() : prompter_.Told().last(); }

  TestDatabase database_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  std::shared_ptr<FakeDisc> disc_ = ThreeTracks();
  std::shared_ptr<DriveShelf> shelf_;
  std::optional<Ripper> ripper_;
};

TEST_F(RipperTest, RipsAnImageBitForBitWithItsNamesAndItsHiddenTrack) {
  const TemporaryTree folder;
  const MadeDisc made(kFiveSectors);
  const QString image = WriteImage(folder, made);
  Open(SystemDrives());
  EXPECT_EQ(ripper_->Words(), u"No CD Selected"_s);
  EXPECT_TRUE(shelf_->AddImage(folder.Path(u"disc.bin"_s)));
  Settle();
  EXPECT_EQ(ripper_->Place(), image);
  EXPECT_EQ(ripper_->Album(), u"The Album"_s);
  ASSERT_EQ(ripper_->Rows().Count(), 6);
  EXPECT_TRUE(ripper_->WordsOf(3).contains(u"pre-emphasis"_s));
  ripper_->Rows().TickAll();
  prompter_.answers = {Answer::Yes, Answer::Yes};
  Rip();
  EXPECT_THAT(prompter_.Told(),
              ElementsAre(u"1 Or More Entries In Year Columns are Empty ! (Default Date = 0000-xxx)\r\n"
                          "Would You Like Kelvo To Insert Defaults into Empty Rows ?"_s,
                          u"1 or More Track Names Are UnConventional !(Not Artist Name - Track Title)\r\n"
                          "Continue With Track Rip ?"_s,
                          u"Kelvo Has Completed Ripping your Selections "_s));
  const QStringList expected{u"A Guest/A Guest - Second_ Part 1_2#0000-xxx#The Album#.Wav"_s,
                             u"The Band/The Band - Dr\u00fcben#0000-xxx#The Album#.Wav"_s,
                             u"The Band/The Band - First#0000-xxx#The Album#.Wav"_s,
                             u"The Band/The Band - Last#0000-xxx#The Album#.Wav"_s,
                             u"The Band/Track 00#0000-xxx#The Album#.Wav"_s,
                             u"The Band/Track 04#0000-xxx#The Album#.Wav"_s};
  EXPECT_EQ(Staged(), expected);
  EXPECT_EQ(Sound(expected[0]), Bytes(made.Cut(525, 761 - 525)));
  EXPECT_EQ(Sound(expected[2]), Bytes(made.Cut(265, 525 - 265)));
  EXPECT_EQ(Sound(expected[4]), Bytes(made.Cut(0, 265)));
  EXPECT_EQ(Sound(expected[3]), Bytes(made.Cut(1202, kFiveSectors - 1202)));
  EXPECT_EQ(catalogue_.UtilityCount(), 6);
  EXPECT_EQ(Log().count(u"both passes agree"_s), 6) << Log().toStdString();
  EXPECT_EQ(ripper_->Rows().Row(1).mark, RipMark::Done);
  EXPECT_TRUE(ripper_->Rows().Ticked().empty());
}

TEST_F(RipperTest, AsksItsQuestionsInTheirOrderAndEndsAtTheFirstRefusal) {
  Open();
  ripper_->Rows().Invert();
  prompter_.answers = {Answer::Ok};
  Rip();
  EXPECT_EQ(LastTold(), u"Please Select Some Tracks To Rip !"_s);
  ripper_->Rows().TickAll();
  prompter_.answers = {Answer::No};
  Rip();
  EXPECT_TRUE(LastTold().startsWith(u"1 or more Entries in Artist Columns are Empty !"_s));
  prompter_.answers = {Answer::Yes, Answer::No};
  Rip();
  EXPECT_TRUE(LastTold().startsWith(u"1 or More Track Names Are UnConventional"_s));
  EXPECT_TRUE(Staged().isEmpty());
  (void)database_.Add(Paths::Music, u"Track 01.wav"_s);
  (void)database_.Add(Paths::Utility, u"Other/Track 02#0000-xxx#X#.wav"_s);
  prompter_.answers = {Answer::Yes, Answer::Ok, Answer::Cancel};
  Rip();
  EXPECT_EQ(prompter_.asked.back().title, u"Track Ripper"_s);
  EXPECT_EQ(prompter_.Told()[prompter_.Told().size() - 2],
            u"You Have not Specified An Album For Your Selections !"_s);
  EXPECT_THAT(ripper_->Rows().Ticked(), ElementsAre(0, 2));
  EXPECT_EQ(Staged().size(), 1);
  prompter_.answers = {Answer::Yes, Answer::Ok};
  Rip();
  EXPECT_EQ(LastTold(), u"Kelvo Has Completed Ripping your Selections "_s);
  EXPECT_EQ(Staged(),
            (QStringList{u"Other/Track 02#0000-xxx#X#.wav"_s, u"Unknown/Track 01#0000-xxx#Unknown#.Wav"_s,
                         u"Unknown/Track 03#0000-xxx#Unknown#.Wav"_s}));
}

TEST_F(RipperTest, PassesOverAFileThatIsThereAndNeverTouchesIt) {
  Open();
  Name();
  // It comes between the check and the rip.
  disc_->before = [this](const QString& call) {
    if (call == u"open"_s)
      (void)database_.Add(Paths::Utility, Song(2).toLower().replace(u"band/"_s, u"Band/"_s), "mine");
  };
  Rip();
  EXPECT_TRUE(prompter_.Told().contains(
      u"Cannot Rip Band - Song 2...As It Already Exists, This File Cannot be Processed !\r\n"
      "Please Either Rename the Source or the Destination file !"_s));
  EXPECT_EQ(Staged().size(), 3);
  EXPECT_EQ(
      database_.tree.Read(Paths::FolderName(Paths::Utility) + u"/Band/band - song 2#1999-dec#album#.wav"_s),
      "mine");
  EXPECT_EQ(Sound(Song(3)), Bytes(disc_->disc.Cut(675, 225)));
  EXPECT_EQ(ripper_->Rows().Row(1).mark, RipMark::InUtility);
}

TEST_F(RipperTest, EndsWithWordsWhenTheDriveFailsAtAnyCallAndKeepsWhatIsDone) {
  Open();
  Name();
  const struct {
    QString call;
    int good;  ///< calls before it fails
    int whole;
  } faults[] = {
      {u"open"_s, 0, 0}, {u"toc"_s, 0, 0}, {u"speed"_s, 0, 0}, {u"read"_s, 0, 0}, {u"read"_s, 5, 1}};
  for (const auto& fault : faults) {
    ripper_->Rows().TickAll();
    int left = fault.good;
    disc_->before = [&fault, &left](const QString& call) {
      if (call == fault.call && left-- <= 0)
        throw DriveFailure(DriveFailure::Kind::NoDisc, u"The disc was taken out of the drive."_s, {});
    };
    prompter_.answers = {Answer::Ok};
    Rip();
    EXPECT_EQ(LastTold(), u"An error occurred during ripping; The disc was taken out of the drive."_s);
    EXPECT_EQ(Staged().size(), fault.whole) << "no half file is left";
    EXPECT_FALSE(shelf_->Ripping(FakeDrives::kPlace));
  }
  disc_->before = nullptr;
  disc_->toc.tracks[2].sectors -= 1;
  ripper_->Rows().TickAll();
  prompter_.answers = {Answer::Ok};
  Rip();
  EXPECT_TRUE(LastTold().endsWith(u"Another disc is in the drive than the one that is listed."_s));
}

TEST_F(RipperTest, GivesADriveUpThatHangsAtAnyCallAndCanBeCancelledMeanwhile) {
  Open();
  Name();
  loop_.HangDisk(FakeDrives::kPlace);
  ripper_->Reload();
  Settle();
  EXPECT_EQ(ripper_->Words(), u"The drive /dev/fake0 does not answer."_s);
  loop_.AnswerAgain(FakeDrives::kPlace);
  ripper_->Reload();
  Settle();
  EXPECT_EQ(ripper_->Rows().Count(), 3);
  Name();
  ripper_->Start();
  loop_.RunUntil([this] { return ripper_->Progress().Share() > 0.4; }, 1s);
  EXPECT_TRUE(shelf_->Ripping(FakeDrives::kPlace));
  EXPECT_TRUE(ripper_->Progress().Info().startsWith(
      u"Ripping To Utility Folder : Track 1 of 3 (00:04) As: Band - Song 1#1999-Dec#Album#.Wav\r\n Artist= "
      u"Band\r\n"
      "Year= 1999-Dec\r\n Track Name: Band - Song 1\r\n Into Album Album"_s))
      << ripper_->Progress().Info().toStdString();
  EXPECT_EQ(ripper_->Progress().Title(), u"CD Rip Progress Band - Song 1"_s);
  loop_.HangDisk(FakeDrives::kPlace);
  loop_.RunFor(5s);
  EXPECT_TRUE(ripper_->Busy());
  ripper_->Progress().Stop();
  EXPECT_FALSE(ripper_->Busy()) << "nobody waits for the drive";
  EXPECT_EQ(ripper_->Progress().Lines().All().back().words, u"Cancelled"_s);
  loop_.AnswerAgain(FakeDrives::kPlace);
  loop_.RunFor(1s);
  EXPECT_TRUE(Staged().isEmpty()) << Staged().join(u' ').toStdString();
  loop_.HangDisk(FakeDrives::kPlace);
  Rip();
  EXPECT_EQ(LastTold(), u"An error occurred during ripping; The drive /dev/fake0 does not answer."_s);
  loop_.AnswerAgain(FakeDrives::kPlace);
  Rip();
  EXPECT_EQ(Staged(), (QStringList{Song(1), Song(2), Song(3)}));
}

TEST_F(RipperTest, TellsWhatCouldNotBeReadForSure) {
  Open();
  Name();
  disc_->unsureSectors = 2;
  disc_->spoil = [](int first, int times, std::span<std::int16_t> samples) {
    if (first == 300) samples[17] = static_cast<std::int16_t>(times);
  };
  Rip();
  EXPECT_TRUE(
      LastTold().startsWith(u"Kelvo Has Completed Ripping your Selections \r\n1 Sector Of The Disc"_s));
  EXPECT_TRUE(ripper_->Rows().Row(1).words.contains(u"1 OF THEM UNSURE"_s));
  EXPECT_TRUE(Log().contains(u"1 sector read carefully, 1 OF THEM UNSURE"_s));
}

TEST_F(RipperTest, OpensAndClosesTheTrayAndLeavesThePlayerItsDisc) {
  Open();
  ripper_->EjectOrClose();
  Settle();
  EXPECT_TRUE(ripper_->TrayOpen());
  EXPECT_EQ(ripper_->Words(), u"No CD In Drive"_s);
  ripper_->EjectOrClose();
  Settle();
  EXPECT_EQ(ripper_->Rows().Count(), 3);
  EXPECT_EQ(disc_->trays, (QStringList{u"open"_s, u"closed"_s}));
  shelf_->SetPlaying(FakeDrives::kPlace, true);
  EXPECT_FALSE(ripper_->WhyNoStart().isEmpty());
  EXPECT_FALSE(ripper_->WhyNoTray().isEmpty());
}

}  // namespace

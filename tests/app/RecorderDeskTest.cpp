// The recorder in the joined desk: its command, its window, its files.

#include "app/SoundingDesk.h"
#include "app/windows/Program.h"
#include "app/windows/SplashWindow.h"
#include "audio/Spawned.h"
#include "console/windows/RecorderWindow.h"
#include "ui/ListTable.h"
#include "ui/NoticeBar.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include <sndfile.h>
#include <sys/resource.h>

#include <csignal>

using namespace kelvo;
using namespace kelvo::testing;

namespace {

constexpr FrameIndex kSecond = kEngineRate;

/// Noise on one side alone, so that a recording tells whose it is.
Samples OneSided(int side, int seconds) {
  Samples sound = Noise(static_cast<std::size_t>(kSecond) * static_cast<std::size_t>(seconds),
                        static_cast<std::uint32_t>(side) + 1);
  for (std::size_t i = 0; i < sound.size(); i += 2) sound[i + (side == 0 ? 1 : 0)] = 0;
  return sound;
}

Samples ReadBack(const QString& path) {
  SF_INFO info{};
  SNDFILE* const file = sf_open(path.toUtf8().constData(), SFM_READ, &info);
  if (!file) return {};
  Samples all(static_cast<std::size_t>(info.frames) * 2);
  EXPECT_EQ(sf_readf_float(file, all.data(), info.frames), info.frames) << path.toStdString();
  sf_close(file);
  return all;
}

/// The first frame in which a side is heard, from `from` on.
FrameIndex FirstOf(const Samples& sound, int side) {
  std::size_t i = static_cast<std::size_t>(side);
  while (i < sound.size() && sound[i] == 0) i += 2;
  return static_cast<FrameIndex>(i / 2);
}

QString CueTime(FrameIndex frame) {
  const FrameIndex at = frame * 75 / kSecond;
  return u"%1:%2:%3"_s.arg(at / 75 / 60, 2, 10, QLatin1Char('0'))
      .arg(at / 75 % 60, 2, 10, QLatin1Char('0'))
      .arg(at % 75, 2, 10, QLatin1Char('0'));
}

class RecorderOfDesk : public SoundingDesk {
 protected:
  void SetUp() override {
    AddTrack(u"Ann - One"_s, OneSided(0, 40));
    AddTrack(u"Bob - Two"_s, OneSided(1, 40));
    database_.Add(Paths::Jingles, u"Horn.wav"_s, WaveFile(Noise(44100)));
    folder_ = database_.tree.Path(u"documents/Kelvo2007 - Recordings"_s);
    OpenDesk();
  }
  QPushButton& Bar() { return Find<QPushButton>(u"CmdRecord"_s); }
  /// The console's own command; its question, where it stops, is answered with Yes.
  void PressRecord() {
    prompter_.answers = {Answer::Yes};
    QTest::mouseClick(&Bar(), Qt::LeftButton);
    loop_.RunFor(200ms);
  }
  RecorderWindow& Open() {
    for (QMenu* menu : window_->findChildren<QMenu*>()) {
      for (QAction* each : menu->actions()) {
        if (each->objectName() == u"Recorder"_s) each->trigger();
      }
    }
    loop_.RunFor(50ms);
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (auto* found = qobject_cast<RecorderWindow*>(each)) return *found;
    }
    ADD_FAILURE() << "no window";
    std::abort();
  }
  QStringList Files() { return QDir(folder_).entryList(QDir::Files, QDir::Name); }
  QString Sheet() {
    const QStringList sheets = QDir(folder_).entryList({u"*.cue"_s});
    QFile file(QDir(folder_).filePath(sheets.value(0)));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
  }
  /// Each match of the sheet's lines of this kind.
  QStringList InSheet(const QString& kind) {
    QStringList found;
    QRegularExpressionMatchIterator all =
        QRegularExpression(kind + u" \"?([^\"\\r]*)\"?\\r"_s).globalMatch(Sheet());
    while (all.hasNext()) found << all.next().captured(1);
    return found;
  }

  QString folder_;
};

TEST_F(RecorderOfDesk, RecordsTheProgrammeAndTheSheetNamesEachTitleWhereItsFirstFrameWentOnAir) {
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  PressRecord();
  EXPECT_EQ(desk_->AirRecorder().Now(), ProgrammeRecorder::State::Recording);
  loop_.RunFor(1234ms);
  desk_->Decks().ManualStart(Deck::One);
  loop_.RunFor(3500ms);
  EXPECT_TRUE(Bar().text().startsWith(u"\u25cf REC 00:00:04   "_s)) << Bar().text().toStdString();
  EXPECT_TRUE(Bar().text().endsWith(u" left"_s)) << Bar().text().toStdString();
  desk_->Fades().PressPan(Deck::Two);
  loop_.RunFor(12s);
  ASSERT_EQ(desk_->Fades().CrossPan(), kDeckTwoAlone);
  // The first has played on unheard. To bring it back is to air its title again.
  desk_->Fades().PressPan(Deck::One);
  loop_.RunFor(12s);
  PressRecord();
  EXPECT_EQ(prompter_.Told(), QStringList{u"Stop The Recording ?"_s});
  EXPECT_EQ(Bar().text(), u"\u25cf Record"_s);

  EXPECT_EQ(Files(),
            (QStringList{u"On air 2007-06-01 20-00-00.cue"_s, u"On air 2007-06-01 20-00-00.flac"_s}));
  const Samples sound = ReadBack(QDir(folder_).filePath(Files().value(1)));
  ASSERT_GT(sound.size() / 2, 28U * kSecond);
  EXPECT_EQ(InSheet(u"PERFORMER"_s), (QStringList{u"Ann"_s, u"Bob"_s, u"Ann"_s}));
  EXPECT_EQ(InSheet(u"TITLE"_s), (QStringList{u"One"_s, u"Two"_s, u"One"_s}));
  const QStringList from = InSheet(u"INDEX 01"_s);
  EXPECT_EQ(from.value(0), CueTime(FirstOf(sound, 0)));
  EXPECT_EQ(from.value(1), CueTime(FirstOf(sound, 1)));
}

TEST_F(RecorderOfDesk, WhatPlaysAlreadyBeginsWithTheRecordingAndTheSheetFollowsTheAir) {
  Load(Deck::One, 1);
  Load(Deck::Two, 2);
  desk_->Decks().ManualStart(Deck::One);
  loop_.RunFor(5s);
  PressRecord();
  loop_.RunFor(2s);
  desk_->Bites().Play(0);
  loop_.RunFor(2s);
  EXPECT_EQ(InSheet(u"TITLE"_s), QStringList{u"One"_s}) << "a jingle over music is no title";
  EXPECT_EQ(InSheet(u"INDEX 01"_s), QStringList{u"00:00:00"_s});
  // A start that is taken back leaves the air to the title before.
  desk_->Decks().ManualStart(Deck::Two);
  loop_.RunFor(1s);
  desk_->Decks().StopByHand(Deck::Two);
  loop_.RunFor(1s);
  EXPECT_EQ(InSheet(u"TITLE"_s), (QStringList{u"One"_s, u"Two"_s, u"One"_s}));
  // A pause is none; a jingle of its own is a title.
  desk_->Decks().StopByHand(Deck::One);
  loop_.RunFor(1s);
  desk_->Decks().ManualStart(Deck::One);
  loop_.RunFor(1s);
  desk_->Decks().StopByHand(Deck::One);
  desk_->Bites().Play(0);
  loop_.RunFor(1s);
  EXPECT_EQ(InSheet(u"TITLE"_s), (QStringList{u"One"_s, u"Two"_s, u"One"_s, u"Horn"_s}));
}

TEST_F(RecorderOfDesk, TheWindowRecordsInTheChosenFormatAndFolderAndListsWhatIsThere) {
  RecorderWindow& window = Open();
  auto* rows = window.findChild<ListTable*>()->model();
  const auto click = [&](const QString& name) {
    QTest::mouseClick(FindNamed<QPushButton>(window, name), Qt::LeftButton);
    loop_.RunFor(200ms);
  };
  EXPECT_EQ(rows->rowCount(), 0);
  folder_ = database_.tree.Path(u"tapes"_s);
  prompter_.paths = {folder_};
  click(u"CmdChooseFolder"_s);
  EXPECT_TRUE(FindNamed<QLabel>(window, u"LblRecorderFolder"_s)->text() == folder_);
  auto* format = FindNamed<QComboBox>(window, u"CboFormat"_s);
  QTest::keyClick(format, Qt::Key_Down);
  click(u"CmdStartRecording"_s);
  EXPECT_FALSE(FindNamed<QPushButton>(window, u"CmdChooseFolder"_s)->isEnabled());
  loop_.RunFor(3500ms);
  ASSERT_EQ(rows->rowCount(), 1) << "it is listed while it grows";
  EXPECT_EQ(rows->index(0, 1).data().toString(), u"00:00:03"_s);
  click(u"CmdStopRecording"_s);
  // A second one in a folder where names of this moment are taken.
  database_.tree.Write(u"tapes/On air %1.cue"_s.arg(loop_.Now().toString(u"yyyy-MM-dd HH-mm-ss"_s)), "mine");
  database_.tree.Write(u"tapes/holiday.wav"_s, "not ours");
  click(u"CmdStartRecording"_s);
  loop_.RunFor(1s);
  click(u"CmdStopRecording"_s);
  ASSERT_EQ(rows->rowCount(), 2);
  EXPECT_TRUE(rows->index(0, 0).data().toString().endsWith(u" (2).wav"_s));
  EXPECT_EQ(rows->index(1, 0).data().toString(), u"On air 2007-06-01 20-00-00.wav"_s);
  const Samples silence = ReadBack(QDir(folder_).filePath(u"On air 2007-06-01 20-00-00.wav"_s));
  EXPECT_EQ(silence.size() / 88200, 3U);
  EXPECT_EQ(FirstOf(silence, 0), static_cast<FrameIndex>(silence.size() / 2)) << "until something plays";

  UrlCatcher manager;
  QDesktopServices::setUrlHandler(u"file"_s, &manager, "Take");
  click(u"CmdOpenFolder"_s);
  QDesktopServices::unsetUrlHandler(u"file"_s);
  EXPECT_EQ(manager.url, QUrl::fromLocalFile(folder_));
}

TEST_F(RecorderOfDesk, AStartThatFailsIsToldAndNothingWaitsForIt) {
  Load(Deck::One, 1);
  desk_->Decks().ManualStart(Deck::One);
  settings_.SaveSetting(u"Kelvo"_s, u"Startup"_s, u"RecordFolder"_s,
                        database_.tree.Write(u"file"_s, "no folder"));
  PressRecord();
  EXPECT_EQ(desk_->AirRecorder().Now(), ProgrammeRecorder::State::Idle);
  ASSERT_EQ(prompter_.Told().size(), 1);
  EXPECT_TRUE(prompter_.Told().front().startsWith(u"The recording could not be started."_s));
  auto* notices = window_->findChild<NoticeBar*>();
  EXPECT_TRUE(notices->Text().contains(u"/file can't be made"_s)) << notices->Text().toStdString();

  // A disk that hangs: before the file is made, and while it is written.
  folder_ = database_.tree.MakeFolder(u"share"_s);
  settings_.SaveSetting(u"Kelvo"_s, u"Startup"_s, u"RecordFolder"_s, folder_);
  loop_.HangDisk(folder_);
  PressRecord();
  EXPECT_EQ(Bar().text(), u"\u25cf Starting..."_s);
  loop_.RunFor(10s);
  EXPECT_EQ(Bar().text(), u"\u25cf Record"_s);
  EXPECT_TRUE(prompter_.Told().last().contains(u"does not answer"_s));
  loop_.AnswerAgain(folder_);
  PressRecord();
  loop_.RunFor(1s);
  loop_.HangDisk(folder_);
  loop_.RunFor(4s);
  EXPECT_EQ(notices->Text(), u"The disk of the recording doesn't answer"_s);
  loop_.AnswerAgain(folder_);
  loop_.RunFor(1s);
  EXPECT_FALSE(notices->Text().contains(u"doesn't answer"_s));
  loop_.HangDisk(folder_);
  PressRecord();
  EXPECT_EQ(Bar().text(), u"\u25cf Closing the file..."_s);
  loop_.RunFor(11s);
  EXPECT_EQ(Bar().text(), u"\u25cf Record"_s) << "it is given up";
  EXPECT_GT(desk_->Decks().Record(Deck::One).Position, 27);
}

TEST_F(RecorderOfDesk, AFullDiskEndsTheRecordingAndNotTheProgramme) {
  struct FullDisk {
    rlimit before{};
    FullDisk() {
      std::signal(SIGXFSZ, SIG_IGN);
      ::getrlimit(RLIMIT_FSIZE, &before);
      const rlimit small{.rlim_cur = 400'000, .rlim_max = before.rlim_max};
      ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() {
      ::setrlimit(RLIMIT_FSIZE, &before);
      std::signal(SIGXFSZ, SIG_DFL);
    }
  };
  Load(Deck::One, 1);
  desk_->Decks().ManualStart(Deck::One);
  {
    const FullDisk disk;
    PressRecord();
    loop_.RunFor(10s);
  }
  EXPECT_EQ(Bar().text(), u"\u25cf Record"_s);
  ASSERT_EQ(prompter_.Told().size(), 1);
  EXPECT_TRUE(prompter_.Told().front().contains(u"what was recorded is kept"_s));
  EXPECT_NEAR(desk_->Decks().Record(Deck::One).Position, 10, 0.5);
  EXPECT_GT(ReadBack(QDir(folder_).filePath(Files().value(1))).size(), 44100U);
  EXPECT_EQ(InSheet(u"TITLE"_s), QStringList{u"One"_s});
  // Read in the window, it is over.
  auto* notices = window_->findChild<NoticeBar*>();
  EXPECT_TRUE(notices->Text().contains(u"has ended by itself"_s));
  Open().close();
  loop_.RunFor(50ms);
  EXPECT_EQ(notices->Text(), QString());
}

TEST_F(RecorderOfDesk, TheEndOfTheProgramAsksAndClosesTheFile) {
  PressRecord();
  loop_.RunFor(2s);
  prompter_.answers = {Answer::No};
  window_->close();
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told(), QStringList{u"The Recording Still Runs !\r\nStop It And Quit ?"_s});
  EXPECT_EQ(desk_->AirRecorder().Now(), ProgrammeRecorder::State::Recording);
  // A locked screen takes no hand, and goes on showing it.
  prompter_.texts = {u"code"_s};
  desk_->Lock().Lockscr();
  loop_.RunFor(10ms);
  QTest::mouseClick(&Bar(), Qt::LeftButton);
  EXPECT_FALSE(Bar().isEnabled());
  EXPECT_TRUE(Bar().text().contains(u"REC 00:00:03"_s)) << Bar().text().toStdString();
  prompter_.texts = {u"code"_s};
  desk_->Lock().Lockscr();
  loop_.RunFor(10ms);
  prompter_.answers = {Answer::Yes, Answer::Yes};
  window_->close();
  loop_.RunFor(1s);
  EXPECT_FALSE(window_->isVisible());
  EXPECT_NEAR(static_cast<double>(ReadBack(QDir(folder_).filePath(Files().value(0))).size()) / 88200, 3.2,
              0.4);
}

template <typename Window>
Window* Shown() {
  for (QWidget* each : QApplication::topLevelWidgets()) {
    if (auto* found = qobject_cast<Window*>(each); found != nullptr && found->isVisible()) return found;
  }
  return nullptr;
}

/// The program itself, run in a process and in folders of its own by the test below: records, and is ended
/// from outside.
TEST(RecordingChild, DISABLED_RecordsUntilItIsEnded) {
  const QByteArray home = qgetenv("RECORDING_HOME");
  ASSERT_FALSE(home.isEmpty());
  qputenv("XDG_CONFIG_HOME", home + "/config");
  qputenv("XDG_DATA_HOME", home + "/data");
  Program program;
  program.Start();
  QTimer person;
  QObject::connect(&person, &QTimer::timeout, [&person] {
    if (auto* desk = Shown<ConsoleWindow>()) {
      FindNamed<QAction>(*desk, u"mnuRecord"_s)->trigger();
      person.stop();
    } else if (auto* box = Shown<QDialog>()) {
      box->accept();
    } else if (auto* splash = Shown<SplashWindow>()) {
      QTest::mouseClick(splash, Qt::LeftButton);
    }
  });
  person.start(10);
  EXPECT_EQ(QApplication::exec(), 0);
}

TEST(RecordingProgram, ASignalClosesTheFileAndAKillLeavesOneThatIsListedWithItsLength) {
  for (const int signal : {SIGTERM, SIGKILL}) {
    const TemporaryTree tree;
    const QString folder = tree.MakeFolder(u"tapes"_s);
    const Paths paths = Paths::Below(tree.MakeFolder(u"music"_s));
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    tree.MakeFolder(u"config/kelvo"_s);
    {
      SimulatedEventLoop loop;
      SettingsStore settings(loop, tree.Path(u"config/kelvo/settings.ini"_s));
      const QString title = ProgramFacts().title;
      settings.SaveSetting(title, u"Startup"_s, u"Paths"_s, paths.ToSetting());
      settings.SaveSetting(title, u"Startup"_s, u"RecordFolder"_s, folder);
      settings.SaveSetting(title, u"Startup"_s, u"RecordFormat"_s, signal == SIGTERM ? u"FLAC"_s : u"WAV"_s);
    }
    Spawned child(
        {QCoreApplication::applicationFilePath().toUtf8(), "--gtest_also_run_disabled_tests",
         "--gtest_filter=RecordingChild.*"},
        {"RECORDING_HOME=" + tree.Path().toUtf8(), "TMPDIR=" + tree.Path().toUtf8(), "KELVO_SILENT=1",
         // It runs its one test whatever part of them this process runs.
         "GTEST_TOTAL_SHARDS=1", "GTEST_SHARD_INDEX=0"});
    const auto recordings = [&] { return RecordingsIn(folder); };
    const auto length = [&] {
      const auto all = recordings();
      return all.empty() ? 0.0 : all.front().seconds.value_or(0);
    };
    while (length() < 1) {
      ASSERT_FALSE(child.HasEnded());
      QTest::qSleep(20);
    }
    const double known = length();
    child.Signal(signal);
    EXPECT_EQ(child.ExitCode(), signal == SIGTERM ? 0 : -1);
    ASSERT_EQ(recordings().size(), 1U);
    EXPECT_GE(length(), known);
    EXPECT_EQ(ReadBack(recordings().front().path).size(), static_cast<std::size_t>(length() * 88200 + 0.5));
  }
}

}  // namespace

#include "app/BesideTheDesk.h"
#include "app/ProgramFacts.h"
#include "audio/TestSounds.h"
#include "database/DatabaseSettings.h"
#include "render/windows/RenderWindow.h"
#include "support/Lookup.h"

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace testing;

QByteArray Tone(double seconds) {
  return WaveFile(Sine(440, seconds));
}

/// The built program without a display, with a library and settings of its own.
class RenderCommandTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const QString& name : {u"Band - One"_s, u"Band - Two"_s, u"Band - Three"_s}) {
      database_.Add(Paths::Info, name + u".kif"_s, InfoBytes("8"));
      lines_ += database_.Add(Paths::Music, name + u".wav"_s, Tone(8)).toUtf8() + '\n';
    }
    list_ = database_.tree.Write(u"evening.m3u8"_s, lines_);
    SimulatedEventLoop loop;
    SettingsStore settings(loop, database_.tree.Path(u"config/kelvo/settings.ini"_s));
    ProgramSettings(settings, ProgramFacts().title).Set(setting::Paths, database_.paths);
    settings.Flush();
    settings_ = Settings();
  }
  [[nodiscard]] QByteArray Settings() const { return database_.tree.Read(u"config/kelvo/settings.ini"_s); }
  int Run(const QStringList& arguments) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& each : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
      environment.remove(each);
    environment.insert(u"XDG_CONFIG_HOME"_s, database_.tree.Path(u"config"_s));
    environment.insert(u"XDG_DATA_HOME"_s, database_.tree.Path(u"data"_s));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(KELVO_PROGRAM), arguments);
    EXPECT_TRUE(program.waitForFinished(-1));
    told_ = QString::fromUtf8(program.readAllStandardError());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    return program.exitCode();
  }
  [[nodiscard]] QString File(const QString& name) const { return database_.tree.Path(name); }

  TestDatabase database_;
  QByteArray lines_;
  QString list_;
  QByteArray settings_;
  QString told_;
};

TEST_F(RenderCommandTest, WritesAListWithoutADisplayAndSaysWhatItLeftOut) {
  EXPECT_EQ(Run({u"--render"_s, list_, u"--to"_s, File(u"evening.flac"_s)}), 0) << told_.toStdString();
  EXPECT_GT(QFileInfo(File(u"evening.flac"_s)).size(), 100'000);
  EXPECT_TRUE(database_.tree.Exists(u"evening.cue"_s));
  EXPECT_TRUE(told_.contains(u"3 Titles"_s)) << told_.toStdString();
  EXPECT_EQ(Settings(), settings_);
  EXPECT_FALSE(database_.tree.Exists(u"data/kelvo/kelvo.log"_s));

  EXPECT_EQ(Run({u"--to"_s, File(u"evening.flac"_s), u"--render"_s, list_}), 1);
  EXPECT_TRUE(told_.contains(u"is there already"_s)) << told_.toStdString();
  EXPECT_EQ(Run({u"--render"_s, list_, u"--to"_s, File(u"evening.ogg"_s)}), 2);
  EXPECT_EQ(Run({u"--render"_s, list_}), 2);
  EXPECT_EQ(Run({u"--render"_s, u"No Such List"_s, u"--to"_s, File(u"none.wav"_s)}), 1);
  EXPECT_TRUE(told_.contains(u"There is no playlist No Such List."_s)) << told_.toStdString();

  list_ = database_.tree.Write(u"evening.m3u8"_s, lines_ + "/nowhere/Band - Four.mp3\n");
  EXPECT_EQ(Run({u"--render"_s, list_, u"--to"_s, File(u"part.wav"_s)}), 3);
  EXPECT_TRUE(told_.contains(u"1 Of 4 Tracks Were Not Found"_s)) << told_.toStdString();
  EXPECT_FALSE(database_.tree.Exists(u"none.wav"_s));
}

/// Its button in the joined window.
class RenderBesideTheDesk : public BesideTheDesk {};

TEST_F(RenderBesideTheDesk, TheButtonWritesTheQueueAndTellsWhatCameOfIt) {
  OpenDesk();
  Press(u"Render"_s);
  auto* window = Opened<RenderWindow>();
  ASSERT_NE(window, nullptr);
  auto& render = *FindNamed<QPushButton>(*window, u"CmdRender"_s);
  EXPECT_FALSE(render.isEnabled());
  EXPECT_TRUE(render.toolTip().contains(u"There Must Be A Minimum of 3 Tracks"_s));
  for (const auto& [track, seconds] : {std::pair{1, 60.0}, {2, 0.0}, {3, 90.0}})
    Save(catalogue_.TrackPaths(ToMref(track)), Tone(seconds));
  EnqueueAll();
  EXPECT_TRUE(render.isEnabled()) << render.toolTip().toStdString();
  auto& file = *FindNamed<QLineEdit>(*window, u"TxtFile"_s);
  file.selectAll();
  QTest::keyClicks(&file, database_.tree.Path(u"new/mix"_s));
  EXPECT_FALSE(render.isEnabled()) << "no kind of file";
  QTest::keyClicks(&file, u".flac"_s);
  QTest::mouseClick(&render, Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_TRUE(database_.tree.Exists(u"new/mix.flac"_s));
  auto& list = *FindNamed<ListTable>(*window, u"LstSkipped"_s);
  ASSERT_EQ(list.model()->rowCount(), 1);
  EXPECT_EQ(list.model()->index(0, 0).data().toString(), u"Beta"_s);
  EXPECT_TRUE(render.isEnabled());
  // A file that is there is asked about; the scripted answer keeps it.
  const QByteArray bytes = database_.tree.Read(u"new/mix.flac"_s);
  prompter_.answers = {Answer::No};
  QTest::mouseClick(&render, Qt::LeftButton);
  loop_.RunFor(1s);
  EXPECT_EQ(database_.tree.Read(u"new/mix.flac"_s), bytes);
}

}  // namespace
}  // namespace kelvo

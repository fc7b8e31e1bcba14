#include "demo_library/Composer.h"
#include "demo_library/Library.h"
#include "demo_library/QuizSounds.h"
#include "demo_library/Renderer.h"
#include "platform/ErrorLog.h"
#include "platform/ShellLink.h"
#include "platform/TextFile.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <QDirIterator>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace kelvo::demo {
namespace {

using kelvo::testing::TemporaryTree;

/// Seconds; the sound is nearly all of the work.
constexpr double kLongest = 8.0;

class DemoLibrary : public ::testing::Test {
 protected:
  LibraryOptions Options(const QString& name, int pieces) const {
    LibraryOptions options;
    options.folder = tree_.Path(name);
    options.settingsFile = tree_.Path(QStringLiteral("settings.ini"));
    options.pieces = pieces;
    options.longest = kLongest;
    return options;
  }

  Outcome Make(const LibraryOptions& options) {
    return MakeLibrary(options, [this](double done, const QString&) { progress_.push_back(done); });
  }

  /// Every file of a library with its bytes, but for the links, which hold the library's own place.
  std::map<QString, QByteArray> FilesOf(const QString& name) const {
    std::map<QString, QByteArray> files;
    const QDir folder(tree_.Path(name));
    QDirIterator each(folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (each.hasNext()) {
      const QString path = folder.relativeFilePath(each.next());
      if (!path.endsWith(QStringLiteral(".lnk"))) files[path] = tree_.Read(name + QLatin1Char('/') + path);
    }
    return files;
  }

  QStringList NamesIn(const QString& relative) const {
    return QDir(tree_.Path(relative)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
  }

  TemporaryTree tree_;
  std::vector<double> progress_;
};

TEST_F(DemoLibrary, IsTheSameForTheSameSeedAndFreeOfLeftovers) {
  // A run that was killed half way has left its work beside the place.
  tree_.Write(QStringLiteral("one.partial/Kelvo2007_Extra/old.kif"), "torn");
  EXPECT_EQ(Make(Options(QStringLiteral("one"), 1)), Outcome::Made);
  EXPECT_FALSE(tree_.Exists(QStringLiteral("one.partial")));
  EXPECT_FALSE(tree_.Exists(QStringLiteral("one/Kelvo2007_Extra/old.kif")));
  EXPECT_TRUE(std::is_sorted(progress_.begin(), progress_.end()));
  EXPECT_DOUBLE_EQ(progress_.back(), 1.0);

  LibraryOptions second = Options(QStringLiteral("two"), 1);
  second.settingsFile.clear();
  EXPECT_EQ(Make(second), Outcome::Made);
  EXPECT_EQ(FilesOf(QStringLiteral("one")), FilesOf(QStringLiteral("two")));
}

TEST_F(DemoLibrary, HasATreeThatTheConsoleCanLoad) {
  ASSERT_EQ(Make(Options(QStringLiteral("demo"), 2)), Outcome::Made);
  const QString root = QStringLiteral("demo/Kelvo2007_");

  EXPECT_EQ(NamesIn(QStringLiteral("demo")).filter(QStringLiteral("Kelvo2007_")).size(), 8);
  EXPECT_GE(NamesIn(root + QStringLiteral("Jingles")).size(), 6);
  EXPECT_TRUE(tree_.Exists(QStringLiteral("demo/ello.Mp3")));

  const QStringList music = NamesIn(root + QStringLiteral("Music files"));
  ASSERT_EQ(music.size(), 2);
  const std::pair<int, QString> references[] = {
      {0, QStringLiteral("Categories")}, {1, QStringLiteral("Artists")}, {2, QStringLiteral("Albums")}};
  for (const QString& file : music) {
    const QString base = file.left(file.lastIndexOf(QLatin1Char('.')));
    const TextFile info =
        TextFile::Read(tree_.Path(root + QStringLiteral("Extra/") + base + QStringLiteral(".kif")));
    ASSERT_GE(info.Count(), 14) << base.toStdString();
    for (const auto& [line, folder] : references) {
      const QStringList names = info.Line(line).split(QLatin1Char(','));
      ASSERT_GE(names.size(), 2);
      EXPECT_TRUE(names[0].startsWith(QStringLiteral("~ALL ")));
      for (const QString& name : names) {
        EXPECT_TRUE(tree_.Exists(root + folder + QLatin1Char('/') + name)) << name.toStdString();
      }
    }
    EXPECT_EQ(info.Line(11), QStringLiteral("?"));
    const double seconds = info.Line(12).toDouble();
    EXPECT_GT(seconds, kLongest / 2.0);
    if (file.endsWith(QStringLiteral(".wav"))) {
      const auto bytes = tree_.Read(root + QStringLiteral("Music files/") + file).size();
      EXPECT_NEAR(static_cast<double>(bytes - 44) / 4.0 / 44100.0, seconds, 0.001);
    }
  }

  const QString playlist = root + QStringLiteral("Playlists/Demo Music/Dance Floor/");
  const ShellLink link =
      ShellLink::Read(tree_.Path(playlist + QStringLiteral(" 1~Neon Harbour - Lights on the Quay.lnk")));
  EXPECT_TRUE(QFile::exists(link.targetPath)) << link.targetPath.toStdString();
  EXPECT_EQ(link.arguments, QStringLiteral("Std"));
}

TEST_F(DemoLibrary, LeavesAloneWhatItIsNotAskedToReplace) {
  LibraryOptions options = Options(QStringLiteral("demo"), 0);
  ASSERT_EQ(Make(options), Outcome::Made);
  const QByteArray settings = tree_.Read(QStringLiteral("settings.ini"));
  EXPECT_TRUE(settings.contains("/demo/Kelvo2007_Playlists,"));
  EXPECT_TRUE(settings.contains("/demo/Kelvo2007_Utility"));

  // The folder is there: a plain run refuses, the careful one has nothing to do and does not lose the
  // operator's own.
  tree_.Write(QStringLiteral("demo/Kelvo2007_Music files/Mine - Own.mp3"), "music");
  EXPECT_THROW(Make(options), Failure);
  options.ifMissing = true;
  EXPECT_EQ(Make(options), Outcome::NothingToDo);
  EXPECT_EQ(tree_.Read(QStringLiteral("demo/Kelvo2007_Music files/Mine - Own.mp3")), "music");

  // The settings were lost, the tree is whole: it is named again, not made again.
  QFile::remove(options.settingsFile);
  EXPECT_EQ(Make(options), Outcome::NothingToDo);
  EXPECT_EQ(tree_.Read(QStringLiteral("settings.ini")), settings);

  // The settings name one library: another place is not made when it is missing, and refused without
  // --replace.
  LibraryOptions other = Options(QStringLiteral("other"), 0);
  other.ifMissing = true;
  EXPECT_EQ(Make(other), Outcome::NothingToDo);
  other.ifMissing = false;
  EXPECT_THROW(Make(other), Failure);
  EXPECT_FALSE(tree_.Exists(QStringLiteral("other")));
  EXPECT_EQ(tree_.Read(QStringLiteral("settings.ini")), settings);
  other.replace = true;
  EXPECT_EQ(Make(other), Outcome::Made);
  EXPECT_TRUE(tree_.Read(QStringLiteral("settings.ini")).contains("/other/Kelvo2007_Music files"));
}

TEST_F(DemoLibrary, FailsWholeAndSaysWhere) {
  tree_.Write(QStringLiteral("file"), "in the way");
  const LibraryOptions options = Options(QStringLiteral("file/demo"), 0);
  try {
    Make(options);
    FAIL() << "made a library below a file";
  } catch (const Failure& failure) {
    EXPECT_TRUE(QString::fromUtf8(failure.what()).contains(tree_.Path(QStringLiteral("file"))));
  }
  EXPECT_FALSE(tree_.Exists(QStringLiteral("settings.ini")));
}

TEST(DemoMusic, StartsAndEndsAsItsTrackInfoSays) {
  for (const bool strong : {true, false}) {
    Plan plan;
    plan.style = StyleName::Swing;
    plan.bpm = 168;
    plan.seconds = 12.0;
    plan.strongStart = strong;
    plan.strongEnd = strong;
    const StereoSound sound = Render(Compose(plan), 7);

    const auto powerFrom = [&sound](std::size_t first) {
      double sum = 0.0;
      for (std::size_t i = first; i < first + 22050; ++i)
        sum += static_cast<double>(sound.left[i]) * sound.left[i];
      return 10.0 * std::log10(sum / 22050.0 + 1e-12);
    };
    const double middle = powerFrom(sound.Frames() / 2);
    EXPECT_EQ(powerFrom(0) > middle - 10.0, strong);
    EXPECT_EQ(powerFrom(sound.Frames() - 57330) > middle - 9.0, strong);

    const auto peak = *std::max_element(sound.left.begin(), sound.left.end(),
                                        [](float a, float b) { return std::abs(a) < std::abs(b); });
    EXPECT_LE(std::abs(peak), 0.892F);
    // Nothing falls silent on the way.
    for (std::size_t first = sound.Frames() / 3; first + 44100 < sound.Frames() * 2 / 3; first += 22050) {
      EXPECT_GT(powerFrom(first), -36.0);
    }
  }
}

TEST_F(DemoLibrary, PutsTheSoundsOfTheQuizWhereThereAreNone) {
  tree_.Write(QStringLiteral("program/Quiz Intros/Mine.mp3"), "mine");
  EXPECT_TRUE(MakeQuizSounds(tree_.Path(QStringLiteral("program")), 1));
  EXPECT_EQ(NamesIn(QStringLiteral("program/Quiz Intros")), QStringList{QStringLiteral("Mine.mp3")});
  const QStringList mixers = NamesIn(QStringLiteral("program/Quiz Mixers"));
  EXPECT_EQ(mixers, (QStringList{QStringLiteral("QzCymbol.wav"), QStringLiteral("QzDrum.wav"),
                                 QStringLiteral("QzOink.WAV")}));
  for (const QString& name : mixers) {
    const QByteArray bytes = tree_.Read(QStringLiteral("program/Quiz Mixers/") + name);
    const double seconds = static_cast<double>(bytes.size() - 44) / 4.0 / 44100.0;
    EXPECT_TRUE(bytes.startsWith("RIFF") && seconds > 0.5 && seconds < 5.0) << name.toStdString();
  }
  EXPECT_FALSE(MakeQuizSounds(tree_.Path(QStringLiteral("program")), 1));
}

}  // namespace
}  // namespace kelvo::demo

// A real disk that does not answer: a mount whose process is stopped.

#include "audio/AudioEngine.h"
#include "audio/Spawned.h"
#include "audio/TestSounds.h"
#include "audio/engine/NoDeviceBackend.h"
#include "platform/Disks.h"
#include "platform/LinkTargets.h"
#include "platform/QtEventLoop.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <csignal>
#include <optional>

namespace kelvo::testing {

namespace {

using namespace std::chrono_literals;

/// A folder that is seen a second time through a process, which can be stopped.
class StoppableMount {
 public:
  explicit StoppableMount(const TemporaryTree& tree)
      : behind_(tree.MakeFolder(QStringLiteral("behind"))),
        mount_(tree.MakeFolder(QStringLiteral("mount"))) {}
  ~StoppableMount() {
    Answer();
    ::umount2(mount_.toUtf8().constData(), MNT_DETACH);
  }
  /// False where this system has no such mounts.
  [[nodiscard]] bool Start(const TemporaryTree& tree) {
    tree.Write(QStringLiteral("behind/there"), "yes");
    process_.emplace(QByteArrayList{"bindfs", "-f", "--no-allow-other", behind_.toUtf8(), mount_.toUtf8()});
    const QFileInfo there(Path(QStringLiteral("there")));
    return TurnUntil([&] { return there.exists() || process_->HasEnded(); }) && there.exists();
  }
  [[nodiscard]] QString Path(const QString& name) const { return mount_ + QLatin1Char('/') + name; }
  [[nodiscard]] const QString& Place() const { return mount_; }
  void Hang() { process_->Signal(SIGSTOP); }
  void Answer() {
    if (process_) process_->Signal(SIGCONT);
  }

 private:
  QString behind_;
  QString mount_;
  std::optional<Spawned> process_;
};

class StoppedMount : public ::testing::Test {
 protected:
  void SetUp() override {
    int count = 0;
    if (QCoreApplication::instance() == nullptr) application_.emplace(count, nullptr);
    if (!mount_.Start(tree_)) GTEST_SKIP() << "no mounts of one's own here";
  }
  [[nodiscard]] std::optional<OpenResult::Kind> Open(MediaPlayer& player, const QString& path) {
    std::optional<OpenResult::Kind> outcome;
    const auto open = [&player, &outcome](QString file) -> Job<> {
      const OpenResult result = co_await player.Open(std::move(file));
      outcome = result.kind;
    };
    const Job<> job = open(path);
    static_cast<void>(TurnUntil([&] { return outcome.has_value(); }));
    return outcome;
  }

  std::optional<QCoreApplication> application_;
  TemporaryTree tree_;
  StoppableMount mount_{tree_};
};

}  // namespace

TEST_F(StoppedMount, ALookThroughALinkEndsAndNamesTheDiskThatDoesNotAnswer) {
  QtEventLoop loop;
  Disks disks(loop);
  const QString link = tree_.Path(QStringLiteral("link"));
  // What the system has looked up itself it may answer from memory.
  tree_.Write(QStringLiteral("behind/unseen"), "yes");
  ASSERT_TRUE(QFile::link(mount_.Path(QStringLiteral("unseen")), link));
  const QString good = tree_.Write(QStringLiteral("good"), "good");
  mount_.Hang();

  std::optional<Disks::Answers> answers;
  std::optional<bool> second;
  bool ended = false;
  const auto look = [&]() -> Job<> {
    const std::function<bool(const QString&)> exists = [](const QString& path) {
      return QFileInfo::exists(path);
    };
    const QStringList paths{good, link, good};
    answers = co_await disks.LookAtEach(paths, exists);
    while (disks.Silent().isEmpty()) co_await loop.Sleep(10ms);
    const auto again = [link] { return QFileInfo::exists(link); };
    second = co_await disks.Look(link, again, Disks::Patience::Air);
    ended = true;
  };
  const Job<> job = look();
  ASSERT_TRUE(TurnUntil([&] { return ended; }));
  EXPECT_EQ(*answers, (Disks::Answers{true, std::nullopt, true}));
  EXPECT_EQ(disks.Silent(), QStringList{mount_.Place()});
  EXPECT_FALSE(second) << "a disk that is known to be silent is not asked";

  mount_.Answer();
  EXPECT_TRUE(TurnUntil([&] { return disks.Silent().isEmpty(); }));
  EXPECT_EQ(disks.Returns(), 1);
}

TEST_F(StoppedMount, LinksToItAreListedAfterOneWait) {
  for (int each = 0; each < 100; ++each) {
    const QString name = QStringLiteral("track%1.mp3").arg(each);
    tree_.Write(QStringLiteral("behind/") + name, "sound");
    ASSERT_TRUE(QFile::link(mount_.Path(name), tree_.Path(name)));
  }
  mount_.Hang();
  LinkTargets links;
  int unknown = 0;
  for (int each = 0; each < 100; ++each) {
    const QString name = QStringLiteral("track%1.mp3").arg(each);
    if (links.KindOf(tree_.Path(name)) == LinkTargets::Kind::Unknown) ++unknown;
  }
  EXPECT_EQ(unknown, 100) << "waited for one by one they would outlast the test's limit";
  EXPECT_EQ(links.KindOf(tree_.Path(QStringLiteral("behind"))), LinkTargets::Kind::Folder);
}

TEST_F(StoppedMount, APlayerWhoseDiskHangsOnAirPlaysTheNextFileAndEndsInTime) {
  QtEventLoop loop;
  std::optional<AudioEngine> engine(std::in_place, loop,
                                    std::make_unique<NoDeviceBackend>(QStringList{QStringLiteral("Silent")}));
  auto player = engine->MakePlayer();
  // More than the system reads ahead, so that the far end of the file was never read.
  tree_.Write(QStringLiteral("behind/long.wav"), WaveFile(Noise(44100 * 120)));
  const QString good = tree_.Write(QStringLiteral("good.wav"), WaveFile(Noise(44100 * 20)));
  ASSERT_EQ(Open(*player, mount_.Path(QStringLiteral("long.wav"))), OpenResult::Kind::Opened);
  player->Play();
  ASSERT_TRUE(TurnUntil([&] { return player->CurrentPosition() > 0.2; }));
  EXPECT_TRUE(TurnUntil([&] { return player->DataLateFor() == 0s; }));
  mount_.Hang();
  player->SetCurrentPosition(100);
  ASSERT_TRUE(TurnUntil([&] { return player->DataLateFor() > 300ms; })) << "that its disk owes data is seen";

  ASSERT_EQ(Open(*player, good), OpenResult::Kind::Opened);
  EXPECT_EQ(player->DataLateFor(), 0s);
  player->Play();
  EXPECT_TRUE(TurnUntil([&] { return player->CurrentPosition() > 0.2; }))
      << "no thread of the last file is in its way";

  // The engine goes though a thread of it never comes back.
  player.reset();
  engine.reset();
}

}  // namespace kelvo::testing

#include "platform/ErrorLog.h"
#include "platform/FileCopy.h"
#include "platform/MountedVolumes.h"
#include "platform/QtEventLoop.h"
#include "support/TemporaryTree.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <new>
#include <optional>
#include <thread>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using testing::TemporaryTree;

QStringList EntriesOf(const TemporaryTree& tree) {
  return QDir(tree.Path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

class FileCopy : public ::testing::Test {
 protected:
  CopyResult Copy(const QString& from, const QString& to, bool replace = false) {
    return CopyFile({tree_.Path(from), tree_.Path(to), replace}, control_);
  }
  int FailureOf(const QString& from, const QString& to, bool replace = false) {
    try {
      (void)Copy(from, to, replace);
      return 0;
    } catch (const Failure& failure) {
      return failure.Number();
    }
  }
  TemporaryTree tree_;
  CopyControl control_;
};

TEST_F(FileCopy, TakesTheContentAndTheTimeAndTellsHowFarItIs) {
  const QByteArray sound(1000001, 's');
  QFile file(tree_.Write(u"a.mp3"_s, sound));
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  const QDateTime then(QDate(2001, 2, 3), QTime(4, 5, 6));
  ASSERT_TRUE(file.setFileTime(then, QFileDevice::FileModificationTime));
  file.close();
  EXPECT_EQ(Copy(u"a.mp3"_s, u"b.mp3"_s), CopyResult::Copied);
  EXPECT_EQ(tree_.Read(u"b.mp3"_s), sound);
  EXPECT_EQ(QFileInfo(tree_.Path(u"b.mp3"_s)).lastModified(), then);
  EXPECT_EQ(control_.done, 1000001);
  EXPECT_EQ(control_.total, 1000001);
  EXPECT_EQ(EntriesOf(tree_), (QStringList{u"a.mp3"_s, u"b.mp3"_s}));
}

TEST_F(FileCopy, NeverTakesANameThatIsTakenUnlessItIsTold) {
  tree_.Write(u"new"_s, "new");
  tree_.Write(u"old"_s, "old");
  ASSERT_TRUE(QFile::link(u"nowhere"_s, tree_.Path(u"dangling"_s)));
  tree_.MakeFolder(u"folder"_s);
  EXPECT_EQ(Copy(u"new"_s, u"old"_s), CopyResult::Existed);
  EXPECT_EQ(Copy(u"new"_s, u"dangling"_s), CopyResult::Existed);
  EXPECT_EQ(Copy(u"new"_s, u"new"_s), CopyResult::Existed);
  EXPECT_EQ(tree_.Read(u"old"_s), "old");
  EXPECT_EQ(Copy(u"new"_s, u"old"_s, true), CopyResult::Copied);
  EXPECT_EQ(tree_.Read(u"old"_s), "new");
  EXPECT_EQ(FailureOf(u"new"_s, u"folder"_s, true), EISDIR);
  EXPECT_EQ(FailureOf(u"new"_s, u"new"_s, true), EEXIST) << "onto itself";
  EXPECT_EQ(tree_.Read(u"new"_s), "new");
}

TEST_F(FileCopy, RefusesWhatIsNoFileOrHasNoPlaceToGo) {
  tree_.Write(u"a"_s, "a");
  tree_.MakeFolder(u"folder"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(tree_.Path(u"pipe"_s)).constData(), 0600), 0);
  EXPECT_EQ(FailureOf(u"gone"_s, u"b"_s), ENOENT);
  EXPECT_EQ(FailureOf(u"folder"_s, u"b"_s), EISDIR);
  EXPECT_EQ(FailureOf(u"pipe"_s, u"b"_s), EINVAL);
  EXPECT_EQ(FailureOf(u"a"_s, u"missing/b"_s), ENOENT);
  EXPECT_EQ(FailureOf(u"a"_s, QString(256, u'x')), ENAMETOOLONG);
  EXPECT_EQ(EntriesOf(tree_), (QStringList{u"a"_s, u"folder"_s, u"pipe"_s}));
}

TEST_F(FileCopy, AFullDiskOrAStopLeavesNothing) {
  tree_.Write(u"a"_s, QByteArray(3000000, 'a'));
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit small{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &small);
    ::signal(SIGXFSZ, SIG_IGN);
    ::_exit(FailureOf(u"a"_s, u"b"_s));
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), EFBIG);
  control_.stop = true;
  EXPECT_EQ(Copy(u"a"_s, u"b"_s), CopyResult::Stopped);
  EXPECT_EQ(EntriesOf(tree_), QStringList{u"a"_s});
}

TEST_F(FileCopy, ASourceThatGrowsMeanwhileIsNotTakenForWhole) {
  // A machine that is busy may have copied all of it before it grows: then it is tried again, with more.
  bool inTime = false;
  for (int tries = 0; tries < 8 && !inTime; ++tries) {
    const QString source = tree_.Write(u"a"_s, QByteArray(qsizetype{4000000} << tries, 'a'));
    control_.done = 0;
    std::thread growing([&] {
      while (control_.done == 0) std::this_thread::yield();
      QFile file(source);
      const bool grown = file.open(QIODevice::Append) && file.write("more") == 4 && file.flush();
      inTime = grown && control_.done < control_.total;
    });
    const int number = FailureOf(u"a"_s, u"b"_s, true);
    growing.join();
    if (!inTime) continue;
    EXPECT_EQ(number, EIO);
    EXPECT_TRUE(tries > 0 || !tree_.Exists(u"b"_s));
  }
  EXPECT_TRUE(inTime) << "it never grew in time: nothing was tested";
}

/// What a child that copies tells of its progress: one page for both.
class SharedControl {
 public:
  SharedControl()
      : page_(
            ::mmap(nullptr, sizeof(CopyControl), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (page_ != MAP_FAILED) control_ = new (page_) CopyControl();
  }
  SharedControl(const SharedControl&) = delete;
  SharedControl& operator=(const SharedControl&) = delete;
  ~SharedControl() {
    if (control_) ::munmap(page_, sizeof(CopyControl));
  }
  [[nodiscard]] CopyControl* Get() const { return control_; }

 private:
  void* page_;
  CopyControl* control_ = nullptr;
};

/// Whether the child has ended by itself; it is waited for then.
bool HasEnded(pid_t child) {
  return ::waitpid(child, nullptr, WNOHANG) == child;
}

TEST_F(FileCopy, AKillAtAnyInstantLeavesAWholeCopyOrNone) {
  const QByteArray sound(2000000, 's');
  tree_.Write(u"a"_s, sound);
  constexpr int kRounds = 24;
  int torn = 0;
  int whole = 0;
  for (int round = 0; round <= kRounds; ++round) {
    const SharedControl shared;
    ASSERT_NE(shared.Get(), nullptr);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      const CopyOrder order{tree_.Path(u"a"_s), tree_.Path(u"b"_s), false};
      ::_exit(CopyFile(order, *shared.Get()) == CopyResult::Copied ? 0 : 1);
    }
    // By its own progress, so that a slow machine meets the same instants: at its start, at each part of the
    // way, when all is written and not yet in its place, and when it is there.
    const std::int64_t wanted = round * 2 * sound.size() / kRounds;
    bool ended = false;
    const auto reached = [&] {
      if (round == kRounds) return tree_.Exists(u"b"_s);
      return shared.Get()->done >= std::min<std::int64_t>(wanted, sound.size());
    };
    while (!reached() && !(ended = HasEnded(child))) std::this_thread::yield();
    for (int more = round - kRounds / 2; more > 0 && round < kRounds; --more) std::this_thread::yield();
    if (!ended) {
      ::kill(child, SIGKILL);
      ::waitpid(child, nullptr, 0);
    }
    ASSERT_EQ(tree_.Read(u"a"_s), sound);
    if (!tree_.Exists(u"b"_s)) {
      ++torn;
      continue;
    }
    ++whole;
    ASSERT_EQ(tree_.Read(u"b"_s), sound) << "a torn copy in round " << round;
    QFile::remove(tree_.Path(u"b"_s));
  }
  EXPECT_GT(torn, 0) << "no copy was ever cut off: nothing was tested";
  EXPECT_GT(whole, 0) << "no copy ever came to its end: nothing was tested";
  EXPECT_EQ(Copy(u"a"_s, u"b"_s), CopyResult::Copied);
  EXPECT_EQ(EntriesOf(tree_), (QStringList{u"a"_s, u"b"_s})) << "what was left is taken away";
}

TEST_F(FileCopy, DroppingTheJobStopsTheCopy) {
  const QString source = tree_.Path(u"a"_s);
  QFile file(source);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(file.resize(4000000000)) << "a hole, which takes seconds to copy";
  file.close();
  const auto control = std::make_shared<CopyControl>();
  {
    QtEventLoop loop;
    std::optional<Job<CopyResult>> job(CopyFileLater(loop, {source, tree_.Path(u"b"_s)}, control));
    while (control->done == 0) QCoreApplication::processEvents();
    job.reset();
  }
  EXPECT_LT(control->done, 4000000000);
  EXPECT_EQ(EntriesOf(tree_), QStringList{u"a"_s});
}

TEST_F(FileCopy, RoomIsMeasuredWithSomethingToSpare) {
  EXPECT_TRUE(HasRoomFor(tree_.Path(u"to/come"_s), 1000));
  EXPECT_FALSE(HasRoomFor(tree_.Path(), std::int64_t{1} << 60));
}

TEST(MountedVolumes, AreTheDrivesThatAPersonKnows) {
  const QByteArray table =
      "proc /proc proc rw 0 0\n"
      "/dev/sda2 / ext4 rw 0 0\n"
      "/dev/sda1 /boot/efi vfat rw 0 0\n"
      "/dev/loop3 /snap/core/1 squashfs ro 0 0\n"
      "tmpfs /run tmpfs rw 0 0\n"
      "/dev/sdb1 /media/ann/My\\040Stick vfat rw 0 0\n"
      "/dev/sr0 /media/ann/CD iso9660 ro 0 0\n"
      "//nas/music /mnt/nas cifs rw 0 0\n"
      "garbage\n";
  const auto isStick = [](const QString& device) { return device == u"/dev/sdb1"_s; };
  QStringList told;
  for (const MountedVolume& volume : VolumesOf(table, isStick)) {
    told.append(QString::number(static_cast<int>(volume.kind)) + u' ' + volume.path);
  }
  EXPECT_THAT(told, ElementsAre(u"1 /"_s, u"0 /media/ann/CD"_s, u"0 /media/ann/My Stick"_s, u"2 /mnt/nas"_s));
  EXPECT_TRUE(OtherMountsOf(table, u"/"_s).contains(u"/mnt/nas"_s)) << "a drive ends where another begins";
  EXPECT_THAT(OtherMountsOf(table, u"/media"_s),
              ElementsAre(u"/proc"_s, u"/boot/efi"_s, u"/snap/core/1"_s, u"/run"_s))
      << "a folder ends at what is no drive";
}

}  // namespace
}  // namespace kelvo

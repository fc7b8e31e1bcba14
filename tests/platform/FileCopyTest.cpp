#include "platform/ErrorLog.h"
#include "platform/FileCopy.h"
#include "platform/FileSteps.h"
#include "platform/MountedVolumes.h"
#include "support/HeldWorkLoop.h"
#include "support/TemporaryTree.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using testing::FileSteps;
using testing::HeldWorkLoop;
using testing::KilledBefore;
using testing::StepsOf;
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
  const QString source = tree_.Write(u"a"_s, QByteArray(1000, 'a'));
  bool grown = false;
  const FileSteps steps([&](const char*) {
    QFile file(source);
    if (!grown) grown = file.open(QIODevice::Append) && file.write("more") == 4;
  });
  EXPECT_EQ(FailureOf(u"a"_s, u"b"_s), EIO);
  EXPECT_TRUE(grown);
  EXPECT_EQ(EntriesOf(tree_), QStringList{u"a"_s});
}

TEST_F(FileCopy, AStopOnTheWayLeavesNothingWhereverItComes) {
  tree_.Write(u"a"_s, QByteArray(600000, 's'));
  int stopAt = 0;
  for (CopyResult result = CopyResult::Stopped; result == CopyResult::Stopped; ++stopAt) {
    ASSERT_EQ(EntriesOf(tree_), QStringList{u"a"_s}) << stopAt;
    control_.stop = false;
    int step = 0;
    const FileSteps steps([&](const char*) { control_.stop = control_.stop || step++ == stopAt; });
    result = Copy(u"a"_s, u"b"_s);
  }
  EXPECT_GT(stopAt, 10);
  EXPECT_TRUE(tree_.Exists(u"b"_s)) << "once it is flushed it is too late";
}

TEST_F(FileCopy, AKillAtAnyInstantLeavesAWholeCopyOrNone) {
  const QByteArray sound(600000, 's');
  tree_.Write(u"a"_s, sound);
  int whole = 0;
  int step = 0;
  for (; KilledBefore(step, [this] { (void)Copy(u"a"_s, u"b"_s); }); ++step) {
    ASSERT_EQ(tree_.Read(u"a"_s), sound);
    if (!tree_.Exists(u"b"_s)) continue;
    ++whole;
    ASSERT_EQ(tree_.Read(u"b"_s), sound) << "a torn copy, step " << step;
    QFile::remove(tree_.Path(u"b"_s));
  }
  EXPECT_GT(step, whole + 10) << "killed many times on the way";
  EXPECT_EQ(tree_.Read(u"b"_s), sound);
  EXPECT_EQ(EntriesOf(tree_), (QStringList{u"a"_s, u"b"_s})) << "what was left is taken away";
  QFile::remove(tree_.Path(u"b"_s));
  EXPECT_THAT(StepsOf([this] { (void)Copy(u"a"_s, u"b"_s); }),
              ElementsAre("write", "fsync", "rename", "fsync"))
      << "the disk has the bytes before they get the name";
}

TEST_F(FileCopy, DroppingTheJobStopsTheCopy) {
  const CopyOrder order{tree_.Write(u"a"_s, "sound"), tree_.Path(u"b"_s), false};
  const auto control = std::make_shared<CopyControl>();
  HeldWorkLoop loop;
  loop.Hold();
  std::optional<Job<CopyResult>> job(CopyFileLater(loop, order, control));
  ASSERT_TRUE(loop.Holds());
  job.reset();
  loop.LetGo();
  EXPECT_EQ(EntriesOf(tree_), QStringList{u"a"_s});
  job = CopyFileLater(loop, order, std::make_shared<CopyControl>());
  loop.RunFor(std::chrono::seconds(1));
  job.reset();
  EXPECT_EQ(tree_.Read(u"b"_s), "sound");
}

TEST_F(FileCopy, RoomIsMeasuredWithSomethingToSpare) {
  EXPECT_TRUE(HasRoomFor(tree_.Path(u"to/come"_s), 1000));
  EXPECT_FALSE(HasRoomFor(tree_.Path(), std::int64_t{1} << 60));
}

TEST(MountedVolumes, ADiskIsTheInnermostMountAndTheLatestInItsPlace) {
  const QByteArray table =
      "22 1 8:2 / / rw,relatime - ext4 /dev/sda2 rw\n"
      "40 22 8:17 / /media/My\\040Stick rw - vfat /dev/sdb1 rw\n"
      "41 22 0:50 /music /mnt/nas rw - cifs //nas/music rw\n"
      "55 41 0:51 / /mnt/nas rw - cifs //other rw\n"
      "garbage\n";
  EXPECT_EQ(DiskIn(table, u"/media/My Stick/../My Stick/a.mp3"_s).name, u"/media/My Stick"_s);
  EXPECT_EQ(DiskIn(table, u"/media/My Sticker/a.mp3"_s).name, u"/"_s);
  EXPECT_EQ(DiskIn(table, u"/mnt/nas"_s).name, u"/mnt/nas"_s);
  EXPECT_TRUE(DiskIn(table, u"/mnt/nas/a.mp3"_s).key.startsWith(u"55 "_s)) << "another server by now";
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

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <thread>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using testing::KilledBefore;
using testing::StepsOf;
using testing::TemporaryTree;

/// What ReplaceFile fails with, 0 when it doesn't.
int FailureOf(const QString& path, const QByteArray& bytes) {
  try {
    ReplaceFile(path, bytes);
    return 0;
  } catch (const Failure& failure) {
    EXPECT_NE(std::string(failure.what()).find(QFile::encodeName(path).toStdString()), std::string::npos)
        << failure.what();
    return failure.Number();
  }
}

QStringList EntriesOf(const TemporaryTree& tree) {
  return QDir(tree.Path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

mode_t ModeOf(const QString& path) {
  struct stat facts {};
  EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &facts), 0);
  return facts.st_mode & 07777U;
}

/// Runs `work` in a process of its own and gives its exit code.
template <typename Work>
int InChild(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(ReplaceFile, AKillAtAnyInstantLeavesAWholeVersion) {
  const TemporaryTree tree;
  const QByteArray before(10000, 'a');
  const QByteArray after(30000, 'b');
  const QString path = tree.Write(u"queue.txt"_s, before);
  int replaced = 0;
  int step = 0;
  for (; KilledBefore(step, [&] { ReplaceFile(path, after); }); ++step) {
    const QByteArray found = tree.Read(u"queue.txt"_s);
    ASSERT_TRUE(found == before || found == after) << "a torn file of " << found.size() << " bytes, " << step;
    if (found == after) ++replaced;
    tree.Write(u"queue.txt"_s, before);
  }
  EXPECT_GT(step, replaced + 10) << "killed many times on the way";
  EXPECT_EQ(tree.Read(u"queue.txt"_s), after);
  EXPECT_EQ(EntriesOf(tree), QStringList{u"queue.txt"_s}) << "the next replacement takes away what was left";
}

TEST(ReplaceFile, TheDiskHasTheBytesBeforeTheyGetTheNameAndThenTheName) {
  const TemporaryTree tree;
  EXPECT_THAT(StepsOf([&] { ReplaceFile(tree.Path(u"queue.txt"_s), "queue"); }),
              ElementsAre("write", "fsync", "rename", "fsync"));
}

TEST(ReplaceFile, AFullDiskLeavesTheOldFileAndNothingBesideIt) {
  const TemporaryTree tree;
  const QString path = tree.Write(u"list.txt"_s, "old");
  const int code = InChild([&path] {
    const rlimit small{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &small);
    ::signal(SIGXFSZ, SIG_IGN);
    return FailureOf(path, QByteArray(100000, 'x'));
  });
  EXPECT_EQ(code, EFBIG);
  EXPECT_EQ(tree.Read(u"list.txt"_s), "old");
  EXPECT_EQ(EntriesOf(tree), QStringList{u"list.txt"_s});
}

TEST(ReplaceFile, WhatCannotBeWrittenIsRefusedByName) {
  const TemporaryTree tree;
  tree.MakeFolder(u"folder"_s);
  EXPECT_EQ(FailureOf(tree.Path(u"folder"_s), "x"), EISDIR);
  EXPECT_EQ(FailureOf(tree.Path(u"missing/file"_s), "x"), ENOENT);
  EXPECT_EQ(FailureOf(u"/dev/full"_s, "x"), EINVAL);
  QFile::link(u"loop"_s, tree.Path(u"loop"_s));
  EXPECT_EQ(FailureOf(tree.Path(u"loop"_s), "x"), ELOOP);
  EXPECT_EQ(FailureOf(QString(), "x"), EINVAL);
}

TEST(ReplaceFile, AProtectedFileOrFolderKeepsItsFile) {
  if (::geteuid() == 0) {
    // Root may write everywhere: let an unprivileged child try.
    const TemporaryTree tree;
    ASSERT_EQ(::chmod(QFile::encodeName(tree.Path()).constData(), 0755), 0);
    const QString path = tree.Write(u"list.txt"_s, "old");
    const int code = InChild([&path] { return ::setuid(65534) == 0 ? FailureOf(path, "new") : -1; });
    EXPECT_EQ(code, EACCES);
    EXPECT_EQ(tree.Read(u"list.txt"_s), "old");
    EXPECT_EQ(EntriesOf(tree), QStringList{u"list.txt"_s});
    return;
  }
  const TemporaryTree tree;
  const QString path = tree.Write(u"list.txt"_s, "old");
  ::chmod(QFile::encodeName(path).constData(), 0444);
  EXPECT_EQ(FailureOf(path, "new"), EACCES);
  ::chmod(QFile::encodeName(path).constData(), 0644);
  ::chmod(QFile::encodeName(tree.Path()).constData(), 0555);
  EXPECT_EQ(FailureOf(path, "new"), EACCES);
  ::chmod(QFile::encodeName(tree.Path()).constData(), 0755);
  EXPECT_EQ(tree.Read(u"list.txt"_s), "old");
}

TEST(ReplaceFile, LinksPermissionsAndLongNamesAreKept) {
  const TemporaryTree tree;
  const QString path = tree.Write(u"real/list.txt"_s, "old");
  ::chmod(QFile::encodeName(path).constData(), 0640);
  ASSERT_TRUE(QFile::link(u"real/list.txt"_s, tree.Path(u"link.txt"_s)));
  ReplaceFile(tree.Path(u"link.txt"_s), "new");
  EXPECT_EQ(tree.Read(u"real/list.txt"_s), "new");
  EXPECT_TRUE(QFileInfo(tree.Path(u"link.txt"_s)).isSymLink());
  EXPECT_EQ(ModeOf(path), 0640U);

  ASSERT_TRUE(QFile::link(u"real/new.txt"_s, tree.Path(u"dangling.txt"_s)));
  ReplaceFile(tree.Path(u"dangling.txt"_s), "made");
  EXPECT_EQ(tree.Read(u"real/new.txt"_s), "made");

  for (const QString& name : {QString(255, u'n'), QString(127, u'\u00E9'), u"a\nb*?\"'"_s}) {
    ReplaceFile(tree.Path(name), "one");
    ReplaceFile(tree.Path(name), "two");
    EXPECT_EQ(tree.Read(name), "two");
  }
}

TEST(ReplaceFile, ALeftOverBesideIsNoHindranceWhateverItIs) {
  const TemporaryTree tree;
  const QString path = tree.Path(u"list.txt"_s);
  const QString victim = tree.Write(u"victim"_s, "untouched");
  ASSERT_TRUE(QFile::link(victim, tree.Path(u".list.txt.kelvo-new"_s)));
  ReplaceFile(path, "one");
  tree.Write(u".list.txt.kelvo-new"_s, "torn");
  ::chmod(QFile::encodeName(tree.Path(u".list.txt.kelvo-new"_s)).constData(), 0);
  ReplaceFile(path, "two");
  ASSERT_EQ(::mkfifo(QFile::encodeName(tree.Path(u".list.txt.kelvo-new"_s)).constData(), 0600), 0);
  ReplaceFile(path, "three");
  EXPECT_EQ(tree.Read(u"list.txt"_s), "three");
  EXPECT_EQ(tree.Read(u"victim"_s), "untouched");
  EXPECT_EQ(EntriesOf(tree), (QStringList{u"list.txt"_s, u"victim"_s}));
}

TEST(ReplaceFile, WritersOfOneFileDoNotTearEachOther) {
  const TemporaryTree tree;
  const QString path = tree.Path(u"list.txt"_s);
  const auto writer = [&path](char letter) {
    for (int round = 0; round < 60; ++round) ReplaceFile(path, QByteArray(50000, letter));
  };
  std::thread first(writer, 'a');
  std::thread second(writer, 'b');
  first.join();
  second.join();
  const QByteArray found = tree.Read(u"list.txt"_s);
  EXPECT_TRUE(found == QByteArray(50000, 'a') || found == QByteArray(50000, 'b'));
  EXPECT_EQ(EntriesOf(tree), QStringList{u"list.txt"_s});
}

TEST(ReadWholeFile, RefusesWhatIsTooLargeOrWouldNeverEnd) {
  const TemporaryTree tree;
  const QString path = tree.Write(u"big"_s, QByteArray(1000, 'x'));
  EXPECT_EQ(ReadWholeFile(path, 1000).size(), 1000);
  EXPECT_THROW((void)ReadWholeFile(path, 999), Failure);
  ASSERT_EQ(::mkfifo(QFile::encodeName(tree.Path(u"pipe"_s)).constData(), 0600), 0);
  EXPECT_THROW((void)ReadWholeFile(tree.Path(u"pipe"_s)), Failure);
  EXPECT_THROW((void)ReadWholeFile(u"/dev/zero"_s), Failure);
  EXPECT_GT(ReadWholeFile(u"/proc/meminfo"_s).size(), 0) << "a size of 0 is no promise";
}

}  // namespace
}  // namespace kelvo

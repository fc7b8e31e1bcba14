#include "platform/ErrorLog.h"
#include "platform/QtEventLoop.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <optional>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ErrorLogTest : public ::testing::Test {
 protected:
  ErrorLogTest() { Open(tree_.Path(u"kelvo.log"_s)); }
  void Open(const QString& path) {
    log_.reset();
    log_.emplace(loop_, prompter_, path);
  }
  [[nodiscard]] QList<QByteArray> Lines(const QString& name = u"kelvo.log"_s) const {
    QList<QByteArray> lines = tree_.Read(name).split('\n');
    lines.removeLast();
    return lines;
  }

  TemporaryTree tree_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  ScriptedPrompter prompter_;
  std::optional<ErrorLog> log_;
};

TEST_F(ErrorLogTest, EachFailureHasItsLineAndAFloodOfTheSameIsCounted) {
  for (int each = 0; each < 1300; ++each) {
    NoteInLog(u"Not a sound file: x.mp3"_s);
    loop_.RunFor(3s);
  }
  QList<QByteArray> lines = Lines();
  ASSERT_EQ(lines.size(), 10 + 1 + 10);
  EXPECT_EQ(lines[0], "2007-06-01 09:00:00\tNot a sound file: x.mp3\r");
  EXPECT_EQ(lines[1], "2007-06-01 09:00:03\tNot a sound file: x.mp3\r");
  EXPECT_EQ(lines[10], "2007-06-01 10:00:00\tNot a sound file: x.mp3 (and 1190 times more)\r");
  EXPECT_EQ(lines[11], "2007-06-01 10:00:00\tNot a sound file: x.mp3\r");
  log_.reset();
  lines = Lines();
  ASSERT_EQ(lines.size(), 22) << "the count is not lost at the end";
  EXPECT_TRUE(lines.last().endsWith("Not a sound file: x.mp3 (and 90 times more)\r")) << lines.last().data();
}

TEST_F(ErrorLogTest, PeopleReadWhatCouldNotBeDoneAndWhyTheLogHasTheRest) {
  basHandleError(u" move"_s,
                 std::make_exception_ptr(Failure(u"Cannot write a.mp3 : No such device"_s, 19, u"a.mp3"_s)),
                 u"The files cannot be moved."_s);
  loop_.RunFor(1s);
  EXPECT_EQ(prompter_.Told(),
            QStringList{u"The files cannot be moved.\r\nCannot write a.mp3 : No such device"_s});
  ASSERT_EQ(Lines().size(), 1);
  EXPECT_TRUE(Lines()[0].endsWith("\tERROR 19 in  move (a.mp3) : Cannot write a.mp3 : No such device\r"));
}

TEST_F(ErrorLogTest, AFloodOfDifferentLinesNeitherLosesACountNorFillsTheDisk) {
  for (int each = 0; each < 15; ++each) NoteInLog(u"the same"_s);
  const QString much(1000, u'x');
  for (int each = 0; each < 12000; ++each) {
    NoteInLog(u"%1 %2"_s.arg(each).arg(much));
    if (each == 1000) {
      log_->Flush();
      EXPECT_TRUE(tree_.Read(u"kelvo.log"_s).contains("the same (and 5 times more)"));
    }
  }
  log_.reset();
  EXPECT_EQ(QDir(tree_.Path()).entryList(QDir::Files), (QStringList{u"kelvo.log"_s, u"kelvo.log.old"_s}));
  for (const QString& name : {u"kelvo.log"_s, u"kelvo.log.old"_s}) {
    EXPECT_LE(QFileInfo(tree_.Path(name)).size(), 4 << 20) << name.toStdString();
  }
  EXPECT_TRUE(Lines().last().contains("\t11999 x"));
  const QByteArray old = Lines(u"kelvo.log.old"_s).last();
  const int lastOld = old.mid(old.indexOf('\t') + 1).split(' ').front().toInt();
  EXPECT_TRUE(Lines().front().contains("\t" + QByteArray::number(lastOld + 1) + " x")) << "none between";
}

TEST_F(ErrorLogTest, ALogThatCannotBeWrittenIsToldOnceAndItsLinesGoToStderrUpToALimit) {
  tree_.Write(u"file"_s, "in the folder's place");
  Open(tree_.Path(u"file/kelvo.log"_s));
  ::testing::internal::CaptureStderr();
  for (int each = 0; each < 500; ++each) {
    NoteInLog(u"failure %1"_s.arg(each));
    loop_.RunFor(1ms);
  }
  log_.reset();
  const QString heard = QString::fromStdString(::testing::internal::GetCapturedStderr());
  EXPECT_TRUE(heard.contains(u"\tfailure 0\n"_s)) << heard.left(300).toStdString();
  EXPECT_TRUE(heard.contains(u"failure 99\n"_s));
  EXPECT_EQ(heard.count(u'\n'), 101);
  ASSERT_EQ(prompter_.asked.size(), 1U);
  EXPECT_TRUE(prompter_.asked[0].text.startsWith(
      u"The Error Log %1 Cannot Be Written !"_s.arg(tree_.Path(u"file/kelvo.log"_s))));
}

TEST_F(ErrorLogTest, WhatWaitsBehindAnotherDiskIsWrittenByAFlush) {
  log_.reset();
  std::mutex hang;
  hang.lock();
  QtEventLoop loop;
  ErrorLog log(loop, prompter_, tree_.Path(u"kelvo.log"_s));
  loop.RunOffThread(
      EventLoop::Lane::Files, [&hang] { const std::lock_guard wait(hang); }, [] {});
  NoteInLog(u"last words"_s);
  log.Flush();
  EXPECT_EQ(Lines().size(), 1);
  hang.unlock();
}

}  // namespace
}  // namespace kelvo::testing

#include "platform/ErrorLog.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(ErrorLogTest, WhatFailsAgainAndAgainIsWrittenOnceAnHourWithItsCount) {
  const TemporaryTree tree;
  SimulatedEventLoop loop(QDateTime(QDate(2007, 6, 1), QTime(9, 0)));
  ScriptedPrompter prompter;
  ErrorLog log(loop, prompter, tree.Path(u"kelvo.log"_s));
  for (int each = 0; each < 1300; ++each) {
    NoteInLog(u"Not a sound file: x.mp3"_s);
    loop.RunFor(3s);
  }
  for (int each = 0; each < 2000; ++each) NoteInLog(u"Another, number %1"_s.arg(each));
  loop.RunFor(1s);
  const QList<QByteArray> lines = tree.Read(u"kelvo.log"_s).split('\n');
  ASSERT_EQ(lines.size(), 2 + 2000 + 1);
  EXPECT_EQ(lines[0], "2007-06-01 09:00:00\tNot a sound file: x.mp3\r");
  EXPECT_EQ(lines[1], "2007-06-01 10:00:00\tNot a sound file: x.mp3 (and 1199 times before)\r");
}

}  // namespace
}  // namespace kelvo::testing

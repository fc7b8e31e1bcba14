#include "platform/ChildProcess.h"
#include "platform/QtEventLoop.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/SystemFacts.h"
#include "support/TemporaryTree.h"
#include "support/TurnUntil.h"

#include <QFileInfo>

#include <gtest/gtest.h>
#include <signal.h>

#include <optional>

namespace kelvo {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::TemporaryTree;
using testing::TurnUntil;

ChildCommand Shell(const QString& script) {
  ChildCommand command;
  command.program = u"/bin/sh"_s;
  command.arguments = QStringList{u"-c"_s, script};
  return command;
}

Job<> Keep(Job<ChildResult> child, std::optional<ChildResult>* result) {
  result->emplace(co_await std::move(child));
}

TEST(ChildProcess, OutputComesWhileItRunsAndTheCodeAtTheEnd) {
  const TemporaryTree tree;
  QtEventLoop loop;
  std::optional<ChildResult> result;
  QByteArray pieces;
  bool heardBeforeTheEnd = false;
  ChildCommand command = Shell(
      u"printf one; read nothing && exit 9; while [ ! -e go ]; do sleep 0.01; done; "
      "printf '%s' \"$KELVO_TEST\" >&2; head -c 300000 /dev/zero; exit 3"_s);
  command.workingFolder = tree.Path();
  command.environment = QStringList{u"KELVO_TEST=a=b"_s};
  const auto onOutput = [&](const QByteArray& piece) {
    pieces += piece;
    heardBeforeTheEnd = heardBeforeTheEnd || !result;
    if (!tree.Exists(u"go"_s)) tree.Write(u"go"_s, "");
  };
  const Job<> job = Keep(RunChild(loop, command, onOutput), &result);
  ASSERT_TRUE(TurnUntil([&] { return result.has_value(); }));
  EXPECT_TRUE(result->started);
  EXPECT_FALSE(result->crashed);
  EXPECT_EQ(result->exitCode, 3);
  EXPECT_EQ(result->output.size(), 300003);
  EXPECT_EQ(result->output, pieces);
  EXPECT_EQ(result->errorOutput, "a=b");
  EXPECT_TRUE(heardBeforeTheEnd);
}

TEST(ChildProcess, AProgramThatIsNotThereAndOneThatDiesAreTold) {
  QtEventLoop loop;
  std::optional<ChildResult> missing;
  std::optional<ChildResult> killed;
  ChildCommand nowhere;
  nowhere.program = u"/nowhere/at-all"_s;
  const Job<> first = Keep(RunChild(loop, nowhere), &missing);
  const Job<> second = Keep(RunChild(loop, Shell(u"kill -9 $$"_s)), &killed);
  ASSERT_TRUE(TurnUntil([&] { return missing && killed; }));
  EXPECT_FALSE(missing->started);
  EXPECT_FALSE(missing->error.isEmpty());
  EXPECT_TRUE(killed->started);
  EXPECT_TRUE(killed->crashed);
}

/// Starts a child that tells its number and runs for ever; cancels it from inside its own output when
/// `inside`.
void ExpectCancelEnds(const QString& before, bool inside) {
  QtEventLoop loop;
  std::optional<ChildResult> result;
  pid_t number = 0;
  Job<> job;
  const auto onOutput = [&](const QByteArray& piece) {
    number = piece.trimmed().toInt();
    if (inside) job.Cancel();
  };
  job = Keep(RunChild(loop, Shell(before + u"echo $$; while :; do sleep 0.05; done"_s), onOutput), &result);
  ASSERT_TRUE(TurnUntil([&] { return number > 0; }));
  if (!inside) {
    ASSERT_EQ(::kill(number, 0), 0);
  }
  job.Cancel();
  EXPECT_TRUE(TurnUntil([&] { return ::kill(number, 0) != 0; }));
  EXPECT_FALSE(result);
}

TEST(ChildProcess, CancellingEndsTheChildAlsoFromInsideItsOutput) {
  ExpectCancelEnds(QString(), false);
  ExpectCancelEnds(QString(), true);
}

TEST(ChildProcess, AChildThatIgnoresThePleaIsKilled) {
  ExpectCancelEnds(u"trap '' TERM; "_s, false);
}

TEST(ChildProcess, ASignalReachesItAndOfAFloodOnlyTheEndIsKept) {
  QtEventLoop loop;
  std::optional<ChildResult> result;
  ChildCommand command =
      Shell(u"trap 'echo; echo last; exit 4' INT; head -c 200000 /dev/zero; while :; do sleep 0.01; done"_s);
  command.keep = 1000;
  command.control = std::make_shared<ChildControl>();
  qsizetype heard = 0;
  const auto onOutput = [&](const QByteArray& piece) {
    heard += piece.size();
    if (heard == 200'000) command.control->Send(SIGINT);
  };
  const Job<> job = Keep(RunChild(loop, command, onOutput), &result);
  ASSERT_TRUE(TurnUntil([&] { return result.has_value(); }));
  EXPECT_EQ(result->exitCode, 4);
  EXPECT_EQ(result->output.size(), 1000);
  EXPECT_TRUE(result->output.endsWith("\nlast\n"));
  command.control->Send(SIGINT);  // nobody is there any more
}

TEST(ChildProcess, InSimulatedTimeAChildCostsNoTime) {
  const TemporaryTree tree;
  SimulatedEventLoop loop;
  std::optional<ChildResult> result;
  QByteArray heard;
  const auto onError = [&heard](const QByteArray& piece) { heard += piece; };
  ChildCommand command =
      Shell(u"sleep 0.2; echo 50% >&2; while [ ! -e go ]; do sleep 0.01; done; echo done"_s);
  command.workingFolder = tree.Path();
  const Job<> job = Keep(RunChild(loop, command, {}, onError), &result);
  EXPECT_TRUE(loop.RunUntil([&] { return heard.contains("50%"); }, 100ms));
  EXPECT_FALSE(result) << "its progress comes while it runs";
  tree.Write(u"go"_s, "");
  EXPECT_TRUE(loop.RunUntil([&] { return result.has_value(); }, 100ms));
  EXPECT_EQ(result->output, "done\n");
}

TEST(SystemFacts, TellWhatTheMachineHas) {
  const MemoryStatus memory = ReadMemoryStatus();
  EXPECT_GT(memory.total, memory.available);
  EXPECT_GT(memory.available, 0);
  EXPECT_EQ(ReadPlatformFacts().name, u"Linux"_s);
  const TemporaryTree tree;
  EXPECT_GT(FreeBytes(tree.Path(u"yet/to/be/made"_s)), 0);
}

}  // namespace
}  // namespace kelvo

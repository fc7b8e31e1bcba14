#include "platform/Disks.h"
#include "platform/ErrorLog.h"
#include "platform/Job.h"
#include "platform/QtEventLoop.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TurnUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kelvo {
namespace {

using namespace std::chrono_literals;
using testing::TurnUntil;
using Log = std::vector<std::string>;

TEST(SimulatedTime, EqualDuesComeInTheOrderInWhichTheyWereAsked) {
  SimulatedEventLoop loop;
  Log log;
  const Timer second = loop.After(20ms, [&] { log.emplace_back("b"); });
  const Timer first = loop.After(10ms, [&] { log.emplace_back("a"); });
  const Timer third = loop.After(20ms, [&] { log.emplace_back("c"); });
  loop.RunFor(1s);
  EXPECT_EQ(log, (Log{"a", "b", "c"}));
}

TEST(SimulatedTime, WhatATurnAddsWaitsForTheNextTurn) {
  SimulatedEventLoop loop;
  int rounds = 0;
  std::function<void()> again = [&] {
    ++rounds;
    loop.Post(again);
  };
  loop.Post(again);
  loop.RunFor(1ms);
  EXPECT_GT(rounds, 10);
  EXPECT_LT(rounds, 100) << "a job that posts itself must let time pass";
}

TEST(SimulatedTime, ARepeatedTimerKeepsItsBeatForAnHour) {
  SimulatedEventLoop loop;
  std::vector<Nanoseconds> beats;
  const Timer timer = loop.Every(33ms, [&] { beats.push_back(loop.Elapsed()); });
  loop.RunFor(1h);
  ASSERT_EQ(beats.size(), 109090U);
  EXPECT_EQ(beats[0], 33ms);
  EXPECT_EQ(beats.back(), 109090 * 33ms);
}

TEST(SimulatedTime, ATimerStopsFromInsideItsOwnCallAndFromAnothersAtTheSameTime) {
  SimulatedEventLoop loop;
  int own = 0;
  int others = 0;
  Timer self = loop.Every(10ms, [&] {
    if (++own == 3) self.Stop();
  });
  Timer victim = loop.Every(40ms, [&] { ++others; });
  const Timer killer = loop.After(80ms, [&] { victim = Timer(); });
  Timer sameTime = loop.After(500ms, [&] { ++others; });
  // Asked for later, but due earlier than what it stops.
  const Timer stopper = loop.After(499ms, [&] { sameTime.Stop(); });
  loop.RunFor(1s);
  EXPECT_EQ(own, 3);
  EXPECT_EQ(others, 1);
  EXPECT_FALSE(self.Active());
}

TEST(SimulatedTime, ATimerIsInertWhenItsLoopIsGone) {
  auto loop = std::make_unique<SimulatedEventLoop>();
  const auto captured = std::make_shared<int>(1);
  Timer timer = loop->Every(1s, [captured] {});
  loop.reset();
  EXPECT_FALSE(timer.Active());
  timer.Stop();
  timer = Timer();
  EXPECT_EQ(captured.use_count(), 1);
}

Job<> CountForEver(SimulatedEventLoop& loop, int& count) {
  Turn turn(loop);
  for (;;) {
    ++count;
    co_await turn.Yield();
  }
}

TEST(SimulatedTime, ALongJobYieldsByItsBudgetAndNotAtEachItem) {
  SimulatedEventLoop loop;
  int count = 0;
  const Job<> job = CountForEver(loop, count);
  const int inOneTurn = count;
  EXPECT_GT(inOneTurn, 20);
  EXPECT_LT(inOneTurn, 200);
  loop.RunFor(1ms);
  EXPECT_GT(count, inOneTurn * 10) << "the loop went round and the job went on";
}

Job<> Offloads(EventLoop& loop, std::function<int()> work, Log& log) {
  try {
    const int result = co_await loop.Offload(EventLoop::Lane::Files, work);
    log.push_back(std::to_string(result));
  } catch (const Failure& failure) {
    log.emplace_back(failure.what());
  }
}

TEST(SimulatedTime, OffloadedWorkGivesItsResultItsFailureOrNothingWhenCancelled) {
  SimulatedEventLoop loop;
  Log log;
  bool done = false;
  const Job<> result = Offloads(
      loop, [] { return 5; }, log);
  const Job<> failure = Offloads(
      loop, []() -> int { throw Failure(QStringLiteral("torn")); }, log);
  {
    const Job<> dropped = Offloads(
        loop,
        [&done] {
          done = true;
          return 6;
        },
        log);
  }
  EXPECT_TRUE(log.empty()) << "the answer comes at a later turn, as it does in real time";
  loop.RunFor(1s);
  EXPECT_EQ(log, (Log{"5", "torn"}));
  EXPECT_TRUE(done);
}

TEST(SimulatedTime, FollowersOfTheClockHearOfEachMoveBeforeTheEventsAtItsEnd) {
  SimulatedEventLoop loop;
  Nanoseconds heard{0};
  loop.AddFollower(&heard, [&](Nanoseconds to) {
    EXPECT_LT(loop.Elapsed(), to);
    heard = to;
  });
  Timer timer = loop.Every(7ms, [&] { EXPECT_EQ(heard, loop.Elapsed()); });
  loop.RunFor(1s);
  EXPECT_EQ(heard, 1s);
  timer.Stop();
  EXPECT_EQ(loop.Now(), QDateTime(QDate(2007, 6, 1), QTime(20, 0, 1)));
  loop.RemoveFollower(&heard);
  loop.RunFor(1s);
  EXPECT_EQ(heard, 1s);
}

TEST(RealTime, TimersComeInOrderAndNeverEarly) {
  QtEventLoop loop;
  Log log;
  const Timer aMonth = loop.After(24h * 40, [&] { log.emplace_back("never"); });
  loop.Post([&] { log.emplace_back("posted"); });
  const Nanoseconds start = loop.Elapsed();
  const Timer early = loop.After(10ms, [&] { log.emplace_back("early"); });
  const Timer late = loop.After(30ms, [&] {
    EXPECT_GE(loop.Elapsed() - start, 30ms);
    log.emplace_back("late");
  });
  EXPECT_TRUE(TurnUntil([&] { return log.size() >= 3; }));
  EXPECT_EQ(log, (Log{"posted", "early", "late"}));
}

TEST(RealTime, MissedBeatsAreDroppedAndTheBeatIsKept) {
  QtEventLoop loop;
  std::vector<Nanoseconds> beats;
  const Nanoseconds start = loop.Elapsed();
  const Timer timer = loop.Every(10ms, [&] {
    beats.push_back(loop.Elapsed() - start);
    if (beats.size() == 1) std::this_thread::sleep_for(75ms);
  });
  EXPECT_TRUE(TurnUntil([&] { return beats.size() >= 8; }));
  // The second may come at once, the others fall on the old beat: no burst makes up for what was missed.
  for (size_t beat = 1; beat < beats.size(); ++beat) EXPECT_GE(beats[beat], 70ms + beat * 10ms) << beat;
}

TEST(RealTime, OffloadedWorkRunsElsewhereInOrderAndComesBack) {
  QtEventLoop loop;
  Log log;
  const std::thread::id here = std::this_thread::get_id();
  std::vector<Job<>> jobs;
  for (int number = 0; number < 20; ++number) {
    jobs.push_back(Offloads(
        loop, [number, here] { return std::this_thread::get_id() == here ? -1 : number; }, log));
  }
  EXPECT_TRUE(TurnUntil([&] { return log.size() == 20; }));
  for (size_t number = 0; number < log.size(); ++number) EXPECT_EQ(log[number], std::to_string(number));
}

TEST(RealTime, CancelledAndUnfinishedWorkEndsUnheardWithTheLoop) {
  const auto finished = std::make_shared<std::atomic<int>>(0);
  Log log;
  {
    std::vector<Job<>> jobs;
    QtEventLoop loop;
    for (int number = 0; number < 3; ++number) {
      jobs.push_back(Offloads(
          loop,
          [finished] {
            std::this_thread::sleep_for(10ms);
            return ++*finished;
          },
          log));
    }
    jobs.erase(jobs.begin());
  }
  EXPECT_EQ(*finished, 3) << "work on files is never left half done";
  EXPECT_TRUE(log.empty());
}

Job<> Looks(Disks& disks, Nanoseconds limit, std::function<int()> look, Log& log) {
  try {
    const QString root = QStringLiteral("/");
    const std::optional<int> seen = co_await disks.Look(root, look, Disks::Patience::Person, limit);
    log.push_back(seen ? std::to_string(*seen) : "given up");
  } catch (const Failure& failure) {
    log.emplace_back(failure.what());
  }
}

TEST(RealTime, ALookAtADeadDiskIsGivenUpAndHoldsUpNeitherOthersNorTheEnd) {
  std::promise<void> plugged;
  const std::shared_future<void> back = plugged.get_future();
  std::promise<void> ended;
  Log log;
  {
    QtEventLoop loop;
    Disks disks(loop);
    const auto dead = [back, &ended] {
      back.wait();
      ended.set_value_at_thread_exit();
      return 1;
    };
    const Job<> first = Looks(disks, 30ms, dead, log);
    const Job<> second = Looks(
        disks, 1min, [] { return 2; }, log);
    const Job<> third = Looks(
        disks, 1min, []() -> int { throw Failure(QStringLiteral("torn")); }, log);
    EXPECT_TRUE(TurnUntil([&] { return log.size() == 3; }));
    EXPECT_EQ(std::count(log.begin(), log.end(), "given up"), 1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "2") + std::count(log.begin(), log.end(), "torn"), 2);
  }
  plugged.set_value();
  ended.get_future().wait();
  EXPECT_EQ(log.size(), 3U) << "what it saw in the end is unheard";
}

TEST(RealTime, AFailingCallbackLeavesTheOthersRunning) {
  QtEventLoop loop;
  bool went = false;
  loop.Post([] { throw Failure(QStringLiteral("bad callback")); });
  loop.Post([&] { went = true; });
  EXPECT_TRUE(TurnUntil([&] { return went; }));
}

}  // namespace
}  // namespace kelvo

#include "platform/ErrorLog.h"
#include "platform/Job.h"
#include "platform/SimulatedEventLoop.h"

#include <QString>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

/// Writes down when it goes.
struct Witness {
  std::vector<std::string>& log;
  std::string name;
  Witness(std::vector<std::string>& to, std::string called) : log(to), name(std::move(called)) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() { log.push_back("-" + name); }
};

std::string TextOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& known) {
    return known.what();
  }
}

class JobTest : public ::testing::Test {
 protected:
  JobTest() {
    SetJobFailureHandler([this](const std::exception_ptr& failure) { reported.push_back(TextOf(failure)); });
  }
  ~JobTest() override { SetJobFailureHandler(nullptr); }

  Job<int> Inner(Nanoseconds pause) {
    const Witness witness(log, "inner");
    co_await loop.Sleep(pause);
    log.emplace_back("inner done");
    co_return 7;
  }
  Job<> Outer(Nanoseconds pause) {
    const Witness witness(log, "outer");
    const int result = co_await Inner(pause);
    log.push_back("got " + std::to_string(result));
  }
  Job<std::unique_ptr<int>> FailsAfter(Nanoseconds pause) {
    if (pause > 0ns) co_await loop.Sleep(pause);
    throw Failure(QStringLiteral("no disk"));
  }
  Job<> Catches(Nanoseconds pause) {
    try {
      const std::unique_ptr<int> value = co_await FailsAfter(pause);
      log.push_back(value ? "a value" : "nothing");
    } catch (const Failure& failure) {
      log.emplace_back(failure.what());
    }
  }

  SimulatedEventLoop loop;
  std::vector<std::string> log;
  std::vector<std::string> reported;
};

using Log = std::vector<std::string>;

TEST_F(JobTest, AResultTravelsToTheJobThatAwaitsIt) {
  const Job<> job = Outer(1s);
  EXPECT_TRUE(job.Running());
  loop.RunFor(2s);
  EXPECT_FALSE(job.Running());
  EXPECT_EQ(log, (Log{"inner done", "-inner", "got 7", "-outer"}));
}

TEST_F(JobTest, DroppingASuspendedJobUnwindsItsFrameAndTheFrameItWaitsFor) {
  {
    const Job<> job = Outer(1s);
    loop.RunFor(500ms);
  }
  EXPECT_EQ(log, (Log{"-inner", "-outer"}));
  loop.RunFor(5s);
  EXPECT_EQ(log.size(), 2U) << "nothing may go on after a cancel";
}

TEST_F(JobTest, AJobThatDropsItselfEndsAtItsNextSuspension) {
  Job<> job;
  const auto body = [](Job<>* self, Log* log, SimulatedEventLoop* loop) -> Job<> {
    const Witness witness(*log, "self");
    co_await loop->Sleep(1s);
    *self = Job<>();
    log->emplace_back("still here");
    co_await loop->Sleep(1s);
    log->emplace_back("never");
  };
  job = body(&job, &log, &loop);
  loop.RunFor(10s);
  EXPECT_EQ(log, (Log{"still here", "-self"}));
  EXPECT_FALSE(job.Running());
}

TEST_F(JobTest, AnInnerJobThatDropsTheOuterOneEndsWithoutGoingBackToIt) {
  Job<> outer;
  const auto inner = [](Job<>* owner, Log* log, SimulatedEventLoop* loop) -> Job<> {
    const Witness witness(*log, "inner");
    co_await loop->Sleep(1s);
    owner->Cancel();
    log->emplace_back("inner ends");
  };
  const auto body = [](auto start, Job<>* self, Log* log, SimulatedEventLoop* loop) -> Job<> {
    const Witness witness(*log, "outer");
    co_await start(self, log, loop);
    log->emplace_back("never");
  };
  outer = body(inner, &outer, &log, &loop);
  loop.RunFor(10s);
  EXPECT_EQ(log, (Log{"-outer", "inner ends", "-inner"}));
}

TEST_F(JobTest, AFailureTravelsToTheAwaitingJobWheneverItHappens) {
  const Job<> atOnce = Catches(0ns);
  const Job<> later = Catches(1s);
  loop.RunFor(2s);
  EXPECT_EQ(log, (Log{"no disk", "no disk"}));
  EXPECT_TRUE(reported.empty()) << "what is caught is nobody else's business";
}

TEST_F(JobTest, AFailureThatNobodyAwaitsIsReportedOnce) {
  auto kept = FailsAfter(1s);
  loop.RunFor(2s);
  EXPECT_EQ(reported, Log{"no disk"});
  kept.Cancel();
  EXPECT_EQ(reported.size(), 1U);

  // Before its first suspension: when it is stored, or dropped.
  Job<std::unique_ptr<int>> member;
  member = FailsAfter(0ns);
  EXPECT_EQ(reported.size(), 2U);
  member.Cancel();
  EXPECT_EQ(reported.size(), 2U);
  { const auto dropped = FailsAfter(0ns); }
  EXPECT_EQ(reported.size(), 3U);
}

TEST_F(JobTest, AListLetsGoOfFinishedJobsAndEndsTheOthersWithItself) {
  {
    JobList jobs;
    jobs.Add(Outer(1s));
    // A frame keeps its arguments until it is let go.
    const auto kept = std::make_shared<int>();
    const auto keeps = [](std::shared_ptr<int> /*held*/, SimulatedEventLoop* on) -> Job<> {
      co_await on->Sleep(1s);
    };
    jobs.Add(keeps(kept, &loop));
    loop.RunFor(2s);
    EXPECT_FALSE(jobs.Running());
    EXPECT_EQ(kept.use_count(), 2);
    jobs.Add(Outer(10s));
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_TRUE(jobs.Running());
    log.clear();
  }
  EXPECT_EQ(log, (Log{"-inner", "-outer"}));
}

TEST_F(JobTest, AOneShotAnswersBeforeOrAfterTheQuestionAndOnlyOnce) {
  const auto wait = [](OneShot<int>* shot, Log* log) -> Job<> {
    log->push_back(std::to_string(co_await shot->Wait()));
  };
  OneShot<int> after;
  const Job<> first = wait(&after, &log);
  after.Set(1);
  after.Set(2);
  OneShot<int> before;
  before.Set(3);
  const Job<> second = wait(&before, &log);
  EXPECT_EQ(log, (Log{"1", "3"}));

  OneShot<int> unheard;
  { const Job<> dropped = wait(&unheard, &log); }
  unheard.Set(4);
  EXPECT_EQ(log.size(), 2U);
}

}  // namespace
}  // namespace kelvo

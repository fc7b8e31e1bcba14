#include "platform/EndLimit.h"
#include "platform/EndSignals.h"
#include "platform/QtEventLoop.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <thread>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

TEST(EndSignals, EachSignalBecomesACallOnTheLoop) {
  int asked = 0;
  const EndSignals signals([&asked] { ++asked; });
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    const int before = asked;
    ::raise(signal);
    EXPECT_EQ(asked, before) << "not where the signal found the thread";
    QCoreApplication::processEvents();
    EXPECT_EQ(asked, before + 1) << signal;
  }
}

TEST(EndSignalsDeathTest, WhoSendsOneAgainEndsTheProcessAtOnce) {
  EXPECT_EXIT(
      {
        const EndSignals signals([] {});
        ::raise(SIGTERM);
        ::raise(SIGTERM);
      },
      ::testing::KilledBySignal(SIGTERM), "");
}

TEST(EndSignals, ASignalThatWasToBeIgnoredStaysIgnoredAndAllIsAsBeforeInTheEnd) {
  const auto old = std::signal(SIGHUP, SIG_IGN);
  {
    const EndSignals signals([] { ADD_FAILURE() << "it was to be ignored"; });
    ::raise(SIGHUP);
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(std::signal(SIGHUP, old), SIG_IGN);
  EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
}

TEST(EndLimitDeathTest, AProcessThatWaitsForADeadDiskEndsAllTheSame) {
  EXPECT_EXIT(
      {
        const EndLimit limit(50ms);
        QtEventLoop loop;
        const auto hang = [] { std::this_thread::sleep_for(1h); };
        loop.RunOffThread(EventLoop::Lane::Files, hang, [] {});
      },
      ::testing::ExitedWithCode(EXIT_FAILURE), "a disk does not answer");
}

TEST(EndLimitDeathTest, TheExitCodeIsAnOrdinaryOneWhenOnlyReadersHang) {
  EXPECT_EXIT(
      {
        const EndLimit limit(1s);
        QtEventLoop loop;
        const auto hang = [] { std::this_thread::sleep_for(1h); };
        loop.RunOffThread(EventLoop::Lane::Apart, hang, [] {});
        loop.RunOffThread(EventLoop::Lane::Files, limit.WhenWritten(EXIT_SUCCESS), [] {});
      },
      ::testing::ExitedWithCode(EXIT_SUCCESS), "a disk does not answer");
}

}  // namespace
}  // namespace kelvo

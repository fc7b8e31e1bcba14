#include "console/AutoSoak.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <tuple>

namespace kelvo {
namespace {

using testing::RunSoak;
using testing::SoakMode;
using testing::SoakOptions;
using testing::SoakResult;

class AutoSoakTest : public ::testing::TestWithParam<std::tuple<SoakMode, int>> {
 protected:
  /// Previews come as often in one hour as other tracks in eight.
  [[nodiscard]] static int Hours() { return std::get<0>(GetParam()) == SoakMode::Preview ? 1 : 2; }
  [[nodiscard]] static SoakResult Run() {
    const testing::TemporaryTree tree;
    SoakOptions options;
    options.seconds = Hours() * 3600;
    options.mode = std::get<0>(GetParam());
    options.seed = static_cast<std::uint64_t>(std::get<1>(GetParam()));
    return RunSoak(tree.Path(), options);
  }
};

/// bench_soak --seed repeats a seed that fails here over any length of time.
TEST_P(AutoSoakTest, TheDeskDoesWhatTheRulesSayWhateverGoesWrong) {
  const SoakResult result = Run();
  EXPECT_EQ(result.violationCount, 0) << result.violations.join(u'\n').toStdString();
  EXPECT_GT(result.faults, 30 * Hours());
  EXPECT_GT(result.startsCompared, 20);
  EXPECT_GT(result.startsCompared, result.startsExcused);
}

INSTANTIATE_TEST_SUITE_P(ModesAndSeeds, AutoSoakTest,
                         ::testing::Combine(::testing::Values(SoakMode::Kelvo, SoakMode::Jukebox,
                                                              SoakMode::Preview, SoakMode::Random),
                                            ::testing::Values(1, 2)));

TEST(AutoSoak, TheSameSeedGivesTheSameEvening) {
  SoakOptions options;
  options.seconds = 1800;
  options.seed = 7;
  const auto run = [&options] {
    const testing::TemporaryTree tree;
    return RunSoak(tree.Path(), options);
  };
  const SoakResult first = run();
  const SoakResult second = run();
  EXPECT_EQ(first.starts, second.starts);
  EXPECT_EQ(first.startsCompared, second.startsCompared);
  EXPECT_EQ(first.skipped, second.skipped);
  EXPECT_EQ(first.silences, second.silences);
  EXPECT_EQ(first.longestSilence, second.longestSilence);
}

}  // namespace
}  // namespace kelvo

#include "console/AutoSoak.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <tuple>

namespace kelvo {
namespace {

using testing::RunSoak;
using testing::SoakOptions;
using testing::SoakResult;

class AutoSoakTest : public ::testing::TestWithParam<std::tuple<int, int>> {};

/// bench_soak --seed repeats a seed that fails here over any length of time.
TEST_P(AutoSoakTest, AnHourOfFaultsLeavesNoSilenceAndNoImpossibleState) {
  const auto [kind, seed] = GetParam();
  const testing::TemporaryTree tree;
  SoakOptions options;
  options.seed = static_cast<std::uint64_t>(seed);
  options.mode = kind == 1 ? AutoMode::Jukebox : kind == 2 ? AutoMode::Preview : AutoMode::Kelvo;
  options.random = kind == 3;
  const SoakResult result = RunSoak(tree.Path(), options);
  EXPECT_TRUE(result.violations.isEmpty()) << result.violations.join(u'\n').toStdString();
  EXPECT_GT(result.faults, 30);
  EXPECT_GT(result.starts, 10);
}

INSTANTIATE_TEST_SUITE_P(ModesAndSeeds, AutoSoakTest,
                         ::testing::Combine(::testing::Range(0, 4), ::testing::Values(1, 2, 3)));

}  // namespace
}  // namespace kelvo

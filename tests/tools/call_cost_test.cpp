#include "call_cost.h"

#include "walk.h"

#include <gait/generate_statistics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <optional>
#include <string>

namespace {

using gait_program::expected_seconds;
using gait_program::rough_duration;
using gait_walk::analysed_cycles;
using gait_walk::analysis;
using gait_walk::exclusion_list;
using gait_walk::side;
using gait_walk::walk;

gait_walk::foot foot_of(int strides) {
  gait_walk::foot foot;
  foot.sampling_rate = 100;
  for (int i = 0; i < strides; ++i) {
    gait_foot_cycle cycle;
    cycle.index = i;
    foot.cycles.push_back(cycle);
  }
  return foot;
}

walk walk_of(int strides) {
  walk walk;
  walk.left = foot_of(strides);
  walk.right = foot_of(strides);
  for (int i = 0; i < strides; ++i) {
    walk.feet.push_back({1.0, 25.0, i, i});
  }
  return walk;
}

/// The walk with as many of its cycles, from the first on, in an exclusion list.
walk with_exclusions(walk walk, exclusion_list list, int count) {
  for (int i = 0; i < count; ++i) {
    walk.exclusions.push_back({analysed_cycles::feet, list, i, ""});
  }
  return walk;
}

// How near the estimate must be: the lesser of both times, divided by the greater. On a quiet
// machine that is above 0.5.
constexpr double not_far_off = 0.25;

double processor_seconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// How near the expected time is to what the call takes: 1 where they agree, 0.5 for half of it and
/// for twice of it. Tried again when they are far off, because other programs take the caches away
/// at times.
double nearness(const walk& walk, std::optional<side> only = std::nullopt) {
  double best = 0.0;
  for (int tries = 0; tries < 3 && best <= not_far_off; ++tries) {
    analysis analysis = gait_walk::make_analysis(walk, only);
    const double expected = expected_seconds(analysis.result);
    const double ratio =
        expected / processor_seconds([&] { gait_generate_statistics(analysis.result, {}); });
    best = std::max(best, std::min(ratio, 1.0 / ratio));
  }
  return best;
}

TEST(ExpectedTime, IsThatOfACallForBothFeet) { EXPECT_GT(nearness(walk_of(8000)), not_far_off); }

TEST(ExpectedTime, IsThatOfACallForOneFoot) {
  EXPECT_GT(nearness(walk_of(8000), side::left), not_far_off);
}

TEST(ExpectedTime, CountsEachFoot) {
  walk long_left = walk_of(8000);
  walk long_right = walk_of(8000);
  for (auto& cycle : long_left.feet) {
    cycle.right_index.reset();
  }
  for (auto& cycle : long_right.feet) {
    cycle.left_index.reset();
  }
  EXPECT_GT(nearness(long_left), not_far_off);
  EXPECT_GT(nearness(long_right), not_far_off);
}

TEST(ExpectedTime, CountsTheSearchInTheExclusionLists) {
  EXPECT_GT(nearness(with_exclusions(walk_of(12000), exclusion_list::excluded_1, 11999)),
            not_far_off);
}

TEST(ExpectedTime, CountsTheFallbackLists) {
  walk walk = with_exclusions(walk_of(4000), exclusion_list::excluded_1, 3999);
  for (int i = 0; i < 400000; ++i) {
    walk.exclusions.push_back(
        {analysed_cycles::feet, exclusion_list::excluded_2_fallback, i % 4000, ""});
  }
  EXPECT_GT(nearness(walk), not_far_off);
}

TEST(ExpectedTime, OfAWalkOfOrdinaryLengthIsNotWorthAWord) {
  for (const int strides : {1, 2, 15, 16, 17, 127, 128, 129, 1000}) {
    EXPECT_LT(expected_seconds(gait_walk::make_analysis(walk_of(strides)).result), 5.0);
  }
}

TEST(RoughDuration, IsInTheUnitThatPeopleUse) {
  EXPECT_EQ(rough_duration(5.2), "5 seconds");
  EXPECT_EQ(rough_duration(119.4), "119 seconds");
  EXPECT_EQ(rough_duration(120.0), "2 minutes");
  EXPECT_EQ(rough_duration(7199.0), "120 minutes");
  EXPECT_EQ(rough_duration(7200.0), "2 hours");
  EXPECT_EQ(rough_duration(172799.0), "48 hours");
  EXPECT_EQ(rough_duration(1e6), "12 days");
  EXPECT_EQ(rough_duration(0.0), "0 seconds");
}

}  // namespace

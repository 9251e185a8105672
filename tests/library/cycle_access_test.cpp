#include "bits.h"
#include "builders.h"

#include <gait/cycle_access.h>
#include <gait/result.h>

#include <cstddef>
#include <list>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using gait_detail::for_each_cycle;
using gait_detail::index_sum;
using gait_test::nan;

/// The visits to a foot with `count` cycles, each as "position:cycle ".
std::string visits(std::size_t count, const std::list<int>& indices) {
  std::string seen;
  const foot f = foot().cycles(count);
  for_each_cycle(f.cycle_list(), indices, [&](std::size_t position, const gait_foot_cycle& cycle) {
    seen += std::to_string(position) + ":" + std::to_string(cycle.index) + " ";
  });
  return seen;
}

TEST(CycleAccess, ReachesCyclesInTheOrderOfTheIndexListAndSkipsThoseOutOfRange) {
  EXPECT_EQ(visits(4, {2, 0, 3, 1}), "0:2 1:0 2:3 3:1 ");
  EXPECT_EQ(visits(2, {1, 2, 0, -1, 1}), "0:1 2:0 4:1 ");
  EXPECT_EQ(visits(2, {int_min, 0, int_max, 1}), "1:0 3:1 ");
  EXPECT_EQ(visits(0, {0, -1, 1}), "");
  EXPECT_EQ(visits(3, {}), "");
}

TEST(CycleAccess, GivesTheRecordItselfAndNoCopy) {
  const foot f = foot().cycles(2);
  for_each_cycle(f.cycle_list(), {1}, [&](std::size_t, const gait_foot_cycle& cycle) {
    EXPECT_EQ(&cycle, &f.cycle_list().back());
  });
}

/// The visits as one std::next after another makes them.
std::string visits_one_by_one(std::size_t count, const std::list<int>& indices) {
  std::string seen;
  std::size_t position = 0;
  for (const int index : indices) {
    if (index >= 0 && static_cast<std::size_t>(index) < count) {
      seen += std::to_string(position) + ":" + std::to_string(index) + " ";
    }
    ++position;
  }
  return seen;
}

TEST(CycleAccessOnLongLists, ReachesWhatASingleIndexReaches) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> lengths(0, 150);
  for (int round = 0; round < 500; ++round) {
    const int count = lengths(random);
    std::uniform_int_distribution<int> from_below(0, count + 6);
    std::list<int> indices;
    for (int k = lengths(random); k > 0; --k) {
      indices.push_back(from_below(random) - 3);
    }
    const auto length = static_cast<std::size_t>(count);
    ASSERT_EQ(visits(length, indices), visits_one_by_one(length, indices)) << "round " << round;
  }
}

double gct_sum(const std::vector<double>& gct, const std::list<int>& indices) {
  const foot f = foot().gct(gct);
  return index_sum(f.cycle_list(), indices, &gait_foot_cycle::gct);
}

TEST(IndexSum, AddsInTheOrderOfTheIndexList) {
  const std::vector<double> gct = {1e16, 1.0, -1e16};
  EXPECT_THAT(gct_sum(gct, {0, 1, 2}), SameBits(0.0));
  EXPECT_THAT(gct_sum(gct, {0, 2, 1}), SameBits(1.0));
  EXPECT_THAT(gct_sum(gct, {2, 1, 0}), SameBits(0.0));
}

TEST(IndexSum, AddsOneValueAfterTheOther) {
  // In pairs, or in several accumulators, the small ones would reach the last bit of 1.0.
  constexpr double small = 1e-16;
  EXPECT_THAT(gct_sum({1.0, small, small, small, small, small, small, small, small},
                      {0, 1, 2, 3, 4, 5, 6, 7, 8}),
              SameBits(1.0));
  EXPECT_THAT(gct_sum({1.0, small, small}, {1, 2, 0}), SameBits(1.0 + 2e-16));
}

TEST(IndexSum, LeavesOutWhatIsMissingOrOutOfRangeAndNothingElse) {
  EXPECT_THAT(gct_sum({1.0}, {}), SameBits(0.0));
  EXPECT_THAT(gct_sum({-0.0}, {0}), SameBits(0.0)) << "the sum starts from 0.0";
  EXPECT_THAT(gct_sum({1.5, -1.0, 2.0}, {0, 1, 2}), SameBits(3.5));
  EXPECT_THAT(gct_sum({-0.999}, {0}), SameBits(-0.999));
  EXPECT_THAT(gct_sum({1.0, nan, 1.0}, {0, 1, 2}), SameBits(nan));
  EXPECT_THAT(gct_sum({1.25, 7.0}, {0, 0, 0}), SameBits(3.75));
  EXPECT_THAT(gct_sum({1.25, 2.0}, {2, 1, -1, int_min, int_max}), SameBits(2.0));
  EXPECT_THAT(gct_sum({1e308, 1e308, -1e308}, {0, 1, 2}), SameBits(infinity));
}

TEST(IndexSum, ReadsTheNamedFieldOnly) {
  const foot f = foot().gct({1.0, 2.0}).slength({10.0, 20.0});
  EXPECT_THAT(index_sum(f.cycle_list(), {0, 1}, &gait_foot_cycle::slength), SameBits(30.0));
}

TEST(IndexSum, ReadsTwoFeetCyclesToo) {
  std::list<gait_feet_cycle> cycles;
  fill(cycles, &gait_feet_cycle::gct, {1.0, 2.0, 4.0});
  EXPECT_THAT(index_sum(cycles, {2, 0}, &gait_feet_cycle::gct), SameBits(5.0));
}

}  // namespace

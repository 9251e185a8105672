#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include <gait/compute_info.h>
#include <gait/result.h>

#include <list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using gait_test::nan;

/// An accounting of one foot, of which a test states what differs from four cycles of 1, 2, 4 and 8
/// seconds.
struct accounting {
  std::list<int> excluded_1 = {};
  std::list<int> excluded_1_fallback = {};
  std::list<int> excluded_2 = {};
  std::list<int> excluded_2_fallback = {};
  std::vector<double> gct = {1.0, 2.0, 4.0, 8.0};
  int total_cycles = 4;
  double total_duration = 100.0;
};

gait_result with_lists(const accounting& a) {
  gait_result gait;
  gait.excluded_1 = a.excluded_1;
  gait.excluded_1_fallback = a.excluded_1_fallback;
  gait.excluded_2 = a.excluded_2;
  gait.excluded_2_fallback = a.excluded_2_fallback;
  return gait;
}

gait_statistics_info info_of(const accounting& a, gait_statistics_info info = {}) {
  const gait_foot_result result = foot().gct(a.gct).result();
  gait_statistics_compute_info<gait_foot_result, GCT>(info, result, with_lists(a), GCT{},
                                                      a.total_cycles, a.total_duration);
  return info;
}

accounting excluding(std::list<int> accounting::*kind, std::list<int> indices) {
  accounting a;
  a.*kind = std::move(indices);
  return a;
}

TEST(CycleAccounting, OfFourEmptyListsTakesOffTwoCyclesAndNoTime) {
  const auto info = info_of({});
  EXPECT_EQ(info.excluded_2_fallback_count, 2U);
  EXPECT_EQ(info.excluded_2_count, 2U);
  EXPECT_THAT(info.excluded_2_fallback_duration, SameBits(0.0));
  EXPECT_THAT(info.excluded_2_duration, SameBits(0.0));
  EXPECT_EQ(info.excluded_1_fallback_count, 0U);
  EXPECT_EQ(info.excluded_1_count, 0U);
  EXPECT_THAT(info.excluded_1_fallback_duration, SameBits(0.0));
  EXPECT_THAT(info.excluded_1_duration, SameBits(0.0));
  EXPECT_EQ(info.included_count, 4 - 2);
  EXPECT_THAT(info.included_duration, SameBits(100.0));
}

TEST(CycleAccounting, CountsTheConstantTwoWhateverTheLengthOfTheKind2Fallback) {
  for (const std::list<int>& fallback :
       {std::list<int>{}, {0}, {0, 1}, {0, 1, 2}, {0, 1, 2, 3, 3, 9}}) {
    const auto info = info_of(excluding(&accounting::excluded_2_fallback, fallback));
    EXPECT_EQ(info.excluded_2_fallback_count, 2U);
    EXPECT_EQ(info.excluded_2_count, 2U);
    EXPECT_EQ(info.included_count, 2);
  }
}

TEST(CycleAccounting, SumsTheWholeKind2FallbackAlthoughItCountsTwo) {
  const auto info = info_of(excluding(&accounting::excluded_2_fallback, {0, 1, 2}));
  EXPECT_THAT(info.excluded_2_fallback_duration, SameBits(7.0));
  EXPECT_THAT(info.excluded_2_duration, SameBits(7.0));
  EXPECT_THAT(info.included_duration, SameBits(93.0));
}

TEST(CycleAccounting, CountsTheKind1FallbackByItsLength) {
  const auto info = info_of(excluding(&accounting::excluded_1_fallback, {0, 1, 2}));
  EXPECT_EQ(info.excluded_1_fallback_count, 3U);
  EXPECT_EQ(info.excluded_1_count, 3U);
  EXPECT_THAT(info.excluded_1_fallback_duration, SameBits(7.0));
  EXPECT_THAT(info.excluded_1_duration, SameBits(7.0));
  EXPECT_EQ(info.included_count, 4 - 2 - 3);
  EXPECT_THAT(info.included_duration, SameBits(93.0));
}

TEST(CycleAccounting, LeavesTheFallbackOutWhereThePrimaryListHoldsAnything) {
  accounting a;
  a.excluded_1 = {3};
  a.excluded_1_fallback = {0, 1, 2};
  a.excluded_2 = {1};
  a.excluded_2_fallback = {0, 1, 2};
  const auto info = info_of(a);
  EXPECT_EQ(info.excluded_1_fallback_count, 0U);
  EXPECT_EQ(info.excluded_1_count, 1U);
  EXPECT_THAT(info.excluded_1_fallback_duration, SameBits(0.0));
  EXPECT_THAT(info.excluded_1_duration, SameBits(8.0));
  EXPECT_EQ(info.excluded_2_fallback_count, 0U);
  EXPECT_EQ(info.excluded_2_count, 1U);
  EXPECT_THAT(info.excluded_2_fallback_duration, SameBits(0.0));
  EXPECT_THAT(info.excluded_2_duration, SameBits(2.0));
  EXPECT_EQ(info.included_count, 2);
  EXPECT_THAT(info.included_duration, SameBits(90.0));
}

TEST(CycleAccounting, LeavesTheFallbackOutAlsoWhereNoPrimaryIndexIsInRange) {
  accounting a;
  a.excluded_1 = {4};
  a.excluded_1_fallback = {0, 1};
  a.excluded_2 = {-1};
  a.excluded_2_fallback = {2};
  const auto info = info_of(a);
  EXPECT_EQ(info.excluded_1_fallback_count, 0U);
  EXPECT_THAT(info.excluded_1_duration, SameBits(0.0));
  EXPECT_EQ(info.excluded_2_fallback_count, 0U);
  EXPECT_EQ(info.excluded_2_count, 1U);
  EXPECT_THAT(info.excluded_2_duration, SameBits(0.0));
}

TEST(CycleAccounting, AddsADuplicateOncePerOccurrence) {
  const auto info = info_of(excluding(&accounting::excluded_2, {0, 0}));
  EXPECT_EQ(info.excluded_2_count, 2U);
  EXPECT_THAT(info.excluded_2_duration, SameBits(2.0));
}

TEST(CycleAccounting, CountsOutOfRangeIndicesButAddsNoTime) {
  const std::list<int> indices = {4, -1, 1, int_min, int_max};
  EXPECT_EQ(info_of(excluding(&accounting::excluded_1, indices)).excluded_1_count, 5U);
  EXPECT_EQ(info_of(excluding(&accounting::excluded_1_fallback, indices)).excluded_1_fallback_count,
            5U);
  EXPECT_EQ(info_of(excluding(&accounting::excluded_2, indices)).excluded_2_count, 5U);
  EXPECT_EQ(info_of(excluding(&accounting::excluded_2, indices)).included_count, -1);
  EXPECT_THAT(info_of(excluding(&accounting::excluded_1, indices)).excluded_1_duration,
              SameBits(2.0));
  EXPECT_THAT(
      info_of(excluding(&accounting::excluded_1_fallback, indices)).excluded_1_fallback_duration,
      SameBits(2.0));
  EXPECT_THAT(info_of(excluding(&accounting::excluded_2, indices)).excluded_2_duration,
              SameBits(2.0));
  EXPECT_THAT(
      info_of(excluding(&accounting::excluded_2_fallback, indices)).excluded_2_fallback_duration,
      SameBits(2.0));
}

TEST(CycleAccounting, CountsACycleWithoutDurationButAddsNoTime) {
  accounting a = excluding(&accounting::excluded_1, {0, 1});
  a.gct = {-1.0, 2.0};
  EXPECT_EQ(info_of(a).excluded_1_count, 2U);
  EXPECT_THAT(info_of(a).excluded_1_duration, SameBits(2.0));
}

TEST(CycleAccounting, AddsADurationThatIsAlmostMinusOne) {
  accounting a = excluding(&accounting::excluded_1, {0});
  a.gct = {-1.0000001};
  EXPECT_THAT(info_of(a).excluded_1_duration, SameBits(-1.0000001));
  EXPECT_THAT(info_of(a).included_duration, SameBits(100.0 - -1.0000001));
}

TEST(CycleAccounting, GoesBelowZeroForAWalkOfOneCycle) {
  accounting a;
  a.total_cycles = 1;
  EXPECT_EQ(info_of(a).included_count, -1);
}

TEST(CycleAccounting, WrapsTheIncludedCountAroundAt32Bits) {
  accounting a;
  a.total_cycles = int_min;
  EXPECT_EQ(info_of(a).included_count, int_max - 1);
  a.excluded_1 = {0, 1, 2};
  EXPECT_EQ(info_of(a).included_count, int_max - 4);
}

TEST(CycleAccounting, TakesOffACycleOfBothKindsTwice) {
  accounting a;
  a.excluded_1 = {2};
  a.excluded_2 = {2};
  EXPECT_EQ(info_of(a).included_count, 2);
  EXPECT_THAT(info_of(a).included_duration, SameBits(100.0 - 8.0));
}

TEST(CycleAccounting, AddsTheDurationsOfBothKindsBeforeItSubtractsThem) {
  accounting a;
  a.gct = {5e-17, 5e-17};
  a.excluded_1 = {0};
  a.excluded_2 = {1};
  a.total_duration = 1.0;
  // Each alone would be lost against 1.0.
  EXPECT_THAT(info_of(a).included_duration, SameBits(1.0 - 1e-16));
  EXPECT_LT(info_of(a).included_duration, 1.0);
}

TEST(CycleAccounting, SumsInTheOrderOfTheList) {
  accounting a = excluding(&accounting::excluded_2, {0, 1, 2});
  a.gct = {1e16, 1.0, -1e16};
  EXPECT_THAT(info_of(a).excluded_2_duration, SameBits(0.0));
  a.excluded_2 = {0, 2, 1};
  EXPECT_THAT(info_of(a).excluded_2_duration, SameBits(1.0));
}

TEST(CycleAccounting, PassesNanOnToTheIncludedDuration) {
  for (accounting a :
       {excluding(&accounting::excluded_1, {0}), excluding(&accounting::excluded_1_fallback, {0}),
        excluding(&accounting::excluded_2, {0}),
        excluding(&accounting::excluded_2_fallback, {0})}) {
    a.gct = {nan};
    EXPECT_THAT(info_of(a).included_duration, SameBits(nan));
  }
}

TEST(CycleAccounting, DoesNotTouchTheFieldsOfTheWalk) {
  gait_statistics_info info;
  info.recording_duration = 1.5;
  info.duration = nan;
  info.excluded_1_fallback_gct_sum = -0.0;
  info.excluded_2_gct_sum = 2.5;
  info.included_gct_sum = 3.5;
  info.included_distance = 4.5;
  info.total_distance = infinity;
  info.cycle_count = 77;
  info.excluded_count = -8;
  info.cycles = {5, 4, 3};
  EXPECT_EQ(difference(text_of_walk(info_of(excluding(&accounting::excluded_1, {0, 1}), info)),
                       text_of_walk(info)),
            "");
}

TEST(CycleAccounting, WritesAllItsFieldsOnEveryCall) {
  gait_statistics_info used;
  used.excluded_2_fallback_count = 91;
  used.excluded_2_count = 92;
  used.excluded_1_fallback_count = 93;
  used.excluded_1_count = 94;
  used.included_count = 95;
  used.excluded_2_fallback_duration = nan;
  used.excluded_2_duration = nan;
  used.excluded_1_fallback_duration = nan;
  used.excluded_1_duration = nan;
  used.included_duration = nan;
  for (const accounting& a :
       {accounting(), excluding(&accounting::excluded_1, {0}),
        excluding(&accounting::excluded_1_fallback, {0}), excluding(&accounting::excluded_2, {0}),
        excluding(&accounting::excluded_2_fallback, {0})}) {
    EXPECT_EQ(difference(text_of(info_of(a, used)), text_of(info_of(a))), "");
  }
}

TEST(CycleAccounting, TakesTheTotalsFromItsArguments) {
  gait_statistics_info info;
  info.cycle_count = 1000;
  info.duration = 1000.0;
  info = info_of({}, info);
  EXPECT_EQ(info.included_count, 2);
  EXPECT_THAT(info.included_duration, SameBits(100.0));
}

TEST(CycleAccounting, OfTwoFeetSumsTheTwoFeetCycles) {
  walk w = two_feet(foot().gct({50.0, 60.0})).gct({1.0, 2.0}).excluded_1({0}).excluded_2({0, 1});
  const gait_result& gait = w.result();
  gait_statistics_info feet;
  gait_statistics_compute_info<gait_feet_result, GCT>(feet, gait.feet_result, gait, GCT{}, 2,
                                                      100.0);
  EXPECT_THAT(feet.excluded_1_duration, SameBits(1.0));
  EXPECT_THAT(feet.excluded_2_duration, SameBits(3.0));

  gait_statistics_info one;
  gait_statistics_compute_info<gait_foot_result, GCT>(one, *gait.left_foot, gait, GCT{}, 2, 100.0);
  EXPECT_THAT(one.excluded_1_duration, SameBits(50.0));
  EXPECT_THAT(one.excluded_2_duration, SameBits(110.0));
}

TEST(CycleAccounting, CannotFail) {
  gait_statistics_info info;
  const gait_foot_result result;
  const gait_result gait;
  static_assert(noexcept(
      gait_statistics_compute_info<gait_foot_result, GCT>(info, result, gait, GCT{}, 0, 0.0)));
  gait_statistics_compute_info<gait_foot_result, GCT>(info, result, gait, GCT{}, 0, 0.0);
  EXPECT_EQ(info.included_count, -2);
}

TEST(AccountedExclusions, AreThePrimaryListsOrTheFallbackListsWhereThatIsEmpty) {
  const std::list<int> none;
  const std::list<int> some = {3};
  const std::list<int> others = {1, 2};
  EXPECT_EQ(&gait_accounted_exclusions(some, others), &some);
  EXPECT_EQ(&gait_accounted_exclusions(none, others), &others);
  EXPECT_EQ(&gait_accounted_exclusions(some, none), &some);
}

}  // namespace

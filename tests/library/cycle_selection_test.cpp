#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include "is_included_in.h"

#include <gait/matching_cycles.h>
#include <gait/result.h>

#include <cstddef>
#include <list>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(IsIncludedIn, FindsAnIndexAnywhereInTheList) {
  const std::list<int> indices = {7, 3, 5};
  const IsIncludedIn is_included(indices);
  EXPECT_TRUE(is_included(7));
  EXPECT_TRUE(is_included(3));
  EXPECT_TRUE(is_included(5));
  EXPECT_FALSE(is_included(4));
  EXPECT_FALSE(is_included(-7));
}

TEST(IsIncludedIn, FindsNothingInAnEmptyList) {
  const std::list<int> none;
  EXPECT_FALSE(IsIncludedIn(none)(0));
}

TEST(IsIncludedIn, ComparesAll32Bits) {
  const std::list<int> indices = {int_min, int_max, -1};
  const IsIncludedIn is_included(indices);
  EXPECT_TRUE(is_included(int_min));
  EXPECT_TRUE(is_included(int_max));
  EXPECT_TRUE(is_included(-1));
  EXPECT_FALSE(is_included(0));
  EXPECT_FALSE(is_included(int_max - 1));
  EXPECT_FALSE(is_included(0xFF));
}

TEST(IsIncludedIn, RefersToTheListAsItIsNow) {
  std::list<int> indices = {1};
  const IsIncludedIn is_included(indices);
  indices.push_back(2);
  EXPECT_TRUE(is_included(2));
  indices.clear();
  EXPECT_FALSE(is_included(1));
}

TEST(IsIncludedIn, RemovesWhatItHoldsAndKeepsTheOrderOfTheRest) {
  const std::list<int> indices = {9, 1};
  std::list<int> selection = {4, 1, 9, 2, 1, 3};
  selection.remove_if(IsIncludedIn(indices));
  EXPECT_THAT(selection, ElementsAre(4, 2, 3));
}

walk alone(std::size_t cycles) { return one_foot(foot().cycles(cycles)); }
walk together(std::size_t cycles) { return two_feet(foot().cycles(cycles)); }

/// The selection is made alike in both modes.
class CycleSelection : public testing::TestWithParam<walk (*)(std::size_t)> {
protected:
  static walk of(std::size_t cycles) { return GetParam()(cycles); }
  static gait_statistics_info info(walk w) { return w.analyse().statistics.info; }
};

INSTANTIATE_TEST_SUITE_P(Modes, CycleSelection, testing::Values(alone, together),
                         [](const auto& tested) {
                           return tested.param == alone ? "OneFoot" : "TwoFeet";
                         });

TEST_P(CycleSelection, OfAWalkWithoutExclusionsIsEveryCycleInOrder) {
  const auto info = CycleSelection::info(of(5));
  EXPECT_THAT(info.cycles, ElementsAre(0, 1, 2, 3, 4));
  EXPECT_EQ(info.cycle_count, 5);
  EXPECT_EQ(info.excluded_count, 0);
}

TEST_P(CycleSelection, LosesTheCyclesOfBothPrimaryLists) {
  const auto info = CycleSelection::info(of(6).excluded_1({4, 0}).excluded_2({3}));
  EXPECT_THAT(info.cycles, ElementsAre(1, 2, 5));
  EXPECT_EQ(info.cycle_count, 6);
  EXPECT_EQ(info.excluded_count, 3);
}

TEST_P(CycleSelection, LosesTheCyclesOfEitherListAlone) {
  EXPECT_THAT(info(of(4).excluded_1({1})).cycles, ElementsAre(0, 2, 3));
  EXPECT_THAT(info(of(4).excluded_2({1})).cycles, ElementsAre(0, 2, 3));
}

TEST_P(CycleSelection, NeverLosesTheCyclesOfTheFallbackLists) {
  const auto info =
      CycleSelection::info(of(4).excluded_1_fallback({0, 1}).excluded_2_fallback({2, 3}));
  EXPECT_THAT(info.cycles, ElementsAre(0, 1, 2, 3));
  EXPECT_EQ(info.excluded_count, 0);
}

TEST_P(CycleSelection, CountsACycleThatBothListsHoldOnce) {
  const auto info = CycleSelection::info(of(4).excluded_1({1, 2}).excluded_2({2, 3}));
  EXPECT_THAT(info.cycles, ElementsAre(0));
  EXPECT_EQ(info.excluded_count, 3);
}

TEST_P(CycleSelection, IsNotChangedByDuplicatesAndIndicesOutOfRange) {
  const auto info = CycleSelection::info(
      of(4).excluded_1({2, 2, 2, 4, -1}).excluded_2({int_min, int_max, 4, 4, -3}));
  EXPECT_THAT(info.cycles, ElementsAre(0, 1, 3));
  EXPECT_EQ(info.excluded_count, 1);
}

TEST_P(CycleSelection, MayBeLeftEmpty) {
  const auto info = CycleSelection::info(of(3).excluded_1({2, 1}).excluded_2({0}));
  EXPECT_THAT(info.cycles, IsEmpty());
  EXPECT_EQ(info.cycle_count, 3);
  EXPECT_EQ(info.excluded_count, 3);
  EXPECT_THAT(info.included_gct_sum, SameBits(0.0));
  EXPECT_THAT(info.included_distance, SameBits(0.0));
}

TEST_P(CycleSelection, ReplacesTheListOfAnEarlierCall) {
  walk w = of(3).excluded_1({1});
  gait_result& result = w.result();
  result.statistics.info.cycles = {9, 8, 7, 6, 5};
  gait_generate_statistics(result, {});
  EXPECT_THAT(result.statistics.info.cycles, ElementsAre(0, 2));
}

TEST_P(CycleSelection, GivesTheValuesOfTheParametersTheirOrder) {
  walk w = GetParam() == alone ? one_foot(foot().gct({1.0, 2.0, 3.0, 4.0}))
                               : two_feet(foot().gct({1.0, 2.0, 3.0, 4.0}));
  const auto& parameters = w.excluded_1({2}).excluded_2({0}).analyse().statistics.parameters;
  EXPECT_THAT(parameters.at(GetParam() == alone ? "gct" : "gct_R").values,
              SameBitsEach({2.0, 4.0}));
}

TEST(CycleSelectionOfTwoFeet, CountsTheTwoFeetCyclesAndNotThoseOfAFoot) {
  walk w = two_feet(foot().cycles(7), foot().cycles(6)).left_links({0, 1}).right_links({0, 1});
  EXPECT_EQ(w.analyse().statistics.info.cycle_count, 7)
      << "the builder gives a two-feet cycle to every foot cycle";

  gait_result& result = w.result();
  result.statistics = {};
  result.feet_result.cycles.resize(2);
  gait_generate_statistics(result, {});
  EXPECT_EQ(result.statistics.info.cycle_count, 2);
  EXPECT_THAT(result.statistics.info.cycles, ElementsAre(0, 1));
}

TEST(CycleSelectionOfTwoFeet, MayHaveNoCycleToStartWith) {
  walk w = two_feet(foot().cycles(3));
  gait_result& result = w.result();
  result.feet_result.cycles.clear();
  gait_generate_statistics(result, {});
  EXPECT_EQ(result.statistics.info.cycle_count, 0);
  EXPECT_EQ(result.statistics.info.excluded_count, 0);
  EXPECT_THAT(result.statistics.info.cycles, IsEmpty());
  EXPECT_THAT(result.statistics.info.duration, SameBits(3.0))
      << "the feet's cycles still tell how long the walk was";
  EXPECT_FALSE(result.statistics.parameters.at("gct_R").valid);
}

// Cycles of one foot that belong to cycles of two

gait_feet_result feet_with_right_cycles(const std::vector<gait_foot_cycle*>& cycles) {
  gait_feet_result feet;
  for (gait_foot_cycle* cycle : cycles) {
    feet.cycles.emplace_back().right_cycle = cycle;
  }
  return feet;
}

TEST(MatchingCycles, HaveTheIndexOfTheCyclePointedToOrMinusOnePositionByPosition) {
  gait_foot_cycle a;
  gait_foot_cycle b;
  a.index = 7;
  b.index = 4;
  const gait_feet_result feet = feet_with_right_cycles({&a, nullptr, &b});
  EXPECT_THAT(gait_matching_cycles(feet, {2, 1, 0, 2}, &gait_feet_cycle::right_cycle),
              ElementsAre(4, -1, 7, 4));
  EXPECT_THAT(gait_matching_cycles(feet, {2, 0}, &gait_feet_cycle::left_cycle),
              ElementsAre(-1, -1));
}

TEST(MatchingCycles, HaveNoPlaceForAnIndexOutOfRange) {
  gait_foot_cycle only;
  EXPECT_THAT(gait_matching_cycles(feet_with_right_cycles({&only}), {-1, 0, 1},
                                   &gait_feet_cycle::right_cycle),
              ElementsAre(0));
}

}  // namespace

#include <gait/gait.h>

#include "bits.h"
#include "builders.h"
#include "catalogue_keys.h"
#include "side.h"
#include "text_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

namespace {

using gait_test::feet_with_ds;
using gait_test::first_cycles;
using gait_test::foot;
using gait_test::keys_of_side;
using gait_test::SameBits;
using gait_test::SameBitsEach;
using testing::UnorderedElementsAreArray;

std::vector<std::string> keys_of(const gait_statistics& statistics) {
  std::vector<std::string> keys;
  for (const auto& [key, parameter] : statistics.parameters) {
    keys.push_back(key);
  }
  return keys;
}

gait_statistics of_one_foot(const foot& side, const std::list<int>& cycles) {
  gait_statistics statistics;
  gait_statistics_build_parameters(statistics, side.result(), cycles, "", nullptr, nullptr);
  return statistics;
}

gait_statistics of_one_foot(const foot& side) {
  return of_one_foot(side, first_cycles(side.cycle_list().size()));
}

/// The side of a foot with a two-feet result, and all its cycles.
gait_statistics of_two_feet(const foot& side, gait_feet_result feet,
                            const std::list<int>& feet_cycles) {
  gait_statistics statistics;
  gait_statistics_build_parameters(statistics, side.result(),
                                   first_cycles(side.cycle_list().size()), "", &feet, &feet_cycles);
  return statistics;
}

TEST(BuildParameters, WithoutATwoFeetResultBuildsThoseOfAFootAlone) {
  EXPECT_THAT(keys_of(of_one_foot(foot().gct({1.0}))),
              UnorderedElementsAreArray(keys_of_side(false)));
}

TEST(BuildParameters, WithATwoFeetResultBuildsThoseOfOneOfTwoSides) {
  EXPECT_THAT(keys_of(of_two_feet(foot().gct({1.0}), feet_with_ds({20.0}), {0})),
              UnorderedElementsAreArray(keys_of_side(true)));
}

TEST(BuildParameters, OfANullTwoFeetResultDoesNotLookAtItsCycleList) {
  gait_statistics statistics;
  const std::list<int> feet_cycles = {0, 1};
  gait_statistics_build_parameters(statistics, foot().gct({1.0}).result(), {0}, "", nullptr,
                                   &feet_cycles);
  EXPECT_THAT(keys_of(statistics), UnorderedElementsAreArray(keys_of_side(false)));
}

TEST(BuildParameters, OfAFootWithoutIncludedCyclesInsertsEveryKeyAsInvalid) {
  const gait_statistics statistics = of_one_foot(foot().ramp(3, 1.0, 0.1), {});
  EXPECT_THAT(keys_of(statistics), UnorderedElementsAreArray(keys_of_side(false)));
  for (const auto& [key, parameter] : statistics.parameters) {
    EXPECT_FALSE(parameter.valid) << key;
    EXPECT_TRUE(parameter.values.empty()) << key;
  }
}

TEST(BuildParameters, ReadsTheFootByTheFootsListAndDoubleSupportByTheFeetsList) {
  gait_feet_result feet = feet_with_ds({20.0, 21.0, 22.0});
  const std::list<int> feet_cycles = {2, 9, 0};
  gait_statistics statistics;
  gait_statistics_build_parameters(statistics, foot().ramp(3, 1.0, 1.0).result(), {1}, "_R", &feet,
                                   &feet_cycles);
  EXPECT_THAT(statistics.parameters.at("DS_R").values, SameBitsEach({22.0, -1.0, 20.0}));
  for (const std::string& key : keys_of_side(false, "_R")) {
    EXPECT_THAT(statistics.parameters.at(key).values, SameBitsEach({2.0})) << key;
  }
}

TEST(BuildParameters, TakesHalfTheStrideForTheStepWhenTheOtherFootIsNotKnown) {
  const foot side = foot().slength({1.5, 1.25}).with(&gait_foot_cycle::step_length, {0.7, 0.6});
  EXPECT_THAT(of_one_foot(side).parameters.at("StepLength").values, SameBitsEach({0.75, 0.625}));
}

TEST(BuildParameters, TakesTheFootsOwnStepLengthWhenTheOtherFootIsKnown) {
  const foot side = foot().slength({1.5, 1.25}).with(&gait_foot_cycle::step_length, {0.7, 0.6});
  EXPECT_THAT(of_two_feet(side, feet_with_ds({}), {}).parameters.at("StepLength").values,
              SameBitsEach({0.7, 0.6}));
}

TEST(BuildParameters, SkipsAMissingStrideLengthInSlengthAndCountsItsHalfInStepLength) {
  const gait_statistics statistics = of_one_foot(foot().slength({1.0, -1.0}));
  const auto& stride = statistics.parameters.at("slength");
  const auto& step = statistics.parameters.at("StepLength");
  EXPECT_EQ(stride.mean, 1.0);
  EXPECT_THAT(stride.values, SameBitsEach({1.0, -1.0}));
  EXPECT_EQ(step.mean, 0.0);
  EXPECT_THAT(step.values, SameBitsEach({0.5, -0.5}));
}

TEST(BuildParameters, SkipsAMissingStepLengthWhenTheOtherFootIsKnown) {
  const foot side = foot().slength({-1.0, 1.0}).with(&gait_foot_cycle::step_length, {-1.0, 0.5});
  EXPECT_EQ(of_two_feet(side, feet_with_ds({}), {}).parameters.at("StepLength").mean, 0.5);
}

TEST(BuildParameters, ReportsNoVariationForSwingWidthWhateverItsTwentyValues) {
  const gait_statistics statistics = of_one_foot(foot().ramp(20, 1.0, 0.5));
  EXPECT_EQ(statistics.parameters.at("swidth").cv, -1.0);
  EXPECT_GT(statistics.parameters.at("swidth").std, 0.0);
  EXPECT_GT(statistics.parameters.at("slength").cv, 0.0);
}

TEST(BuildParameters, ReportsTheVariationOfCycleDurationsFromTenValuesOn) {
  EXPECT_EQ(of_one_foot(foot().ramp(9, 1.0, 1.0)).parameters.at("gct").cv, -1.0);
  EXPECT_THAT(of_one_foot(foot().ramp(10, 1.0, 1.0)).parameters.at("gct").cv,
              SameBits(55.04818825631803));
}

/// Both sides into one record, as the entry builds them.
gait_statistics both_sides(const foot& right, const foot& left, gait_feet_result feet,
                           const std::list<int>& feet_cycles) {
  gait_statistics statistics;
  gait_statistics_build_parameters(statistics, right.result(),
                                   first_cycles(right.cycle_list().size()), "_R", &feet,
                                   &feet_cycles);
  gait_statistics_build_parameters(
      statistics, left.result(), first_cycles(left.cycle_list().size()), "_L", &feet, &feet_cycles);
  return statistics;
}

TEST(BuildParameters, GivesBothSidesTheSameKeysButForTheSuffix) {
  auto expected = keys_of_side(true, "_R");
  for (const std::string& key : keys_of_side(true, "_L")) {
    expected.push_back(key);
  }
  EXPECT_THAT(keys_of(both_sides(foot().gct({1.0}), foot().gct({2.0}), feet_with_ds({20.0}), {0})),
              UnorderedElementsAreArray(expected));
}

TEST(BuildParameters, BuildsDoubleSupportDeliberatelyTwice) {
  const auto statistics = both_sides(foot().gct({1.0}), foot().gct({2.0, 3.0}),
                                     feet_with_ds({20.0, -1.0, 23.5, 22.0}), {3, 1, 0, 2});
  const auto& right = statistics.parameters.at("DS_R");
  const auto& left = statistics.parameters.at("DS_L");
  EXPECT_EQ(gait_test::text_of(right), gait_test::text_of(left));
  EXPECT_THAT(right.values, SameBitsEach({22.0, -1.0, 20.0, 23.5}));
  EXPECT_EQ(right.median, 22.0);
}

TEST(BuildParameters, KeepsEveryEntryThatIsPresent) {
  gait_statistics statistics;
  gait_statistics_build_parameters(statistics, foot().ramp(2, 1.0, 1.0).result(), {0, 1}, "",
                                   nullptr, nullptr);
  const std::string before = gait_test::text_of(statistics);
  gait_statistics_build_parameters(statistics, foot().ramp(3, 5.0, 1.0).result(), {0, 1, 2}, "",
                                   nullptr, nullptr);
  EXPECT_EQ(gait_test::text_of(statistics), before);
}

TEST(BuildParameters, LeavesTheAccountingAndTheAsymmetriesAlone) {
  const gait_statistics statistics = of_one_foot(foot().ramp(3, 1.0, 0.5));
  EXPECT_EQ(gait_test::text_of(statistics.info), gait_test::text_of(gait_statistics_info()));
  for (const auto& [key, parameter] : statistics.parameters) {
    EXPECT_EQ(parameter.asymmetry, -1.0) << key;
  }
}

TEST(SampleSize, IsTheNumberOfValuesThatAreNotMissing) {
  const gait_statistics statistics = of_one_foot(foot().gct({1.0, -1.0, -0.5, gait_test::nan}));
  EXPECT_EQ(gait_sample_size(statistics.parameters.at("gct")), 3U);
  EXPECT_EQ(gait_sample_size(statistics.parameters.at("swing")), 0U);
  EXPECT_EQ(gait_sample_size(gait_statistics_parameter()), 0U);
}

}  // namespace

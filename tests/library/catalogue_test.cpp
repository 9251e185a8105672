#include <gait/gait.h>

#include "bits.h"
#include "builders.h"
#include "side.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using gait_test::built;
using gait_test::feet_with_ds;
using gait_test::first_cycles;
using gait_test::foot;
using gait_test::SameBitsEach;
using testing::ElementsAre;

template <class Row>
constexpr bool reads_one_foot = std::is_same_v<typename Row::result_type, gait_foot_result>;

/// The parameter of a row over as many cycles, each with the same measured values from 20 percent
/// or so upwards.
template <class Row>
gait_statistics_parameter built_from(const Row& /*row*/, std::size_t cycles) {
  using tag = typename Row::tag_type;
  if constexpr (reads_one_foot<Row>) {
    return built<tag>(foot().ramp(cycles, 20.0, 0.5));
  } else {
    return built<tag>(feet_with_ds(std::vector<double>(cycles, 20.0)), first_cycles(cycles));
  }
}

/// The keys of the rows that a condition holds for, in the order of the table.
template <class Condition>
std::vector<std::string> keys_where(Condition condition) {
  std::vector<std::string> keys;
  gait_catalogue::for_each_row([&](const auto& row) {
    if (condition(row)) {
      keys.emplace_back(row.key);
    }
  });
  return keys;
}

TEST(Catalogue, HasTwentyNineRowsInTheOrderInWhichTheyAreBuilt) {
  EXPECT_THAT(
      keys_where([](const auto&) { return true; }),
      ElementsAre("gct", "swing", "stance", "contact", "cadence", "LDr", "FFr", "PUr", "DS",
                  "slength", "swidth", "PathLength", "speed", "TA", "peakswing", "TOP", "HSP",
                  "maxHC", "minTC", "maxTC1", "maxTC2", "mtcS", "HS", "Step Time", "StepLength",
                  "StepLength", "impact_vert", "impact_hor", "strike_eversion"));
}

TEST(Catalogue, ReadsTheTwoFeetTogetherForDoubleSupportOnly) {
  EXPECT_THAT(
      keys_where([](const auto& row) { return !reads_one_foot<std::decay_t<decltype(row)>>; }),
      ElementsAre("DS"));
}

TEST(Catalogue, ComparesTheSidesOfAllButDoubleSupportAndHeelStrikeTime) {
  EXPECT_THAT(keys_where([](const auto& row) { return !built_from(row, 2).asymmetry_enabled; }),
              ElementsAre("DS", "HS"));
}

TEST(Catalogue, ReportsNoVariationForNineParametersWhateverTheirValues) {
  EXPECT_THAT(keys_where([](const auto& row) { return built_from(row, 20).cv == -1.0; }),
              ElementsAre("swidth", "TA", "maxHC", "minTC", "maxTC1", "maxTC2", "mtcS", "HS",
                          "strike_eversion"));
}

TEST(Catalogue, GivesEveryParameterTheTextsAndDecimalsOfItsRow) {
  gait_catalogue::for_each_row([](const auto& row) {
    const auto parameter = built_from(row, 3);
    EXPECT_EQ(parameter.description, row.description) << row.key;
    EXPECT_EQ(parameter.unit, row.unit) << row.key;
    EXPECT_EQ(parameter.decimals, row.decimals) << row.key;
    EXPECT_EQ(parameter.asymmetry, -1.0) << row.key;
  });
}

TEST(Catalogue, StoresEveryParameterUnderItsKey) {
  gait_statistics statistics;
  std::set<std::string> keys;
  gait_catalogue::for_each_row([&](const auto& row) {
    using row_type = std::decay_t<decltype(row)>;
    gait_statistics_build_parameter(statistics, typename row_type::result_type{}, {}, "_L",
                                    typename row_type::tag_type{});
    keys.insert(row.key + std::string("_L"));
  });
  EXPECT_EQ(keys.size(), 28U);
  EXPECT_EQ(statistics.parameters.size(), keys.size());
  for (const std::string& key : keys) {
    EXPECT_EQ(statistics.parameters.count(key), 1U) << key;
  }
}

// Texts that look like slips, and are what callers rely on.

template <class Tag>
gait_statistics_parameter empty_parameter() {
  return built<Tag>(foot());
}

TEST(CatalogueIrregularities, APointAfterMaxInToeOneIsNotThereInToeTwo) {
  EXPECT_EQ(empty_parameter<MAXTC1>().description, "Max. toe 1");
  EXPECT_EQ(empty_parameter<MAXTC2>().description, "Max toe 2");
}

TEST(CatalogueIrregularities, DegreesAreDegreeExceptForTheEversion) {
  EXPECT_EQ(empty_parameter<TA>().unit, "degree");
  EXPECT_EQ(empty_parameter<TOP>().unit, "degree");
  EXPECT_EQ(empty_parameter<HSP>().unit, "degree");
  EXPECT_EQ(empty_parameter<PRONATION>().unit, "deg");
}

TEST(CatalogueIrregularities, KeysDifferFromTheirTags) {
  EXPECT_STREQ(gait_catalogue::row_of<STANCE_MS>.key, "contact");
  EXPECT_STREQ(gait_catalogue::row_of<MTCS>.key, "mtcS");
  EXPECT_STREQ(gait_catalogue::row_of<IMPACT_BREAK>.key, "impact_hor");
  EXPECT_STREQ(gait_catalogue::row_of<PRONATION>.key, "strike_eversion");
}

TEST(CatalogueIrregularities, OneKeyHasABlank) {
  EXPECT_THAT(keys_where([](const auto& row) {
                return std::string(row.key).find(' ') != std::string::npos;
              }),
              ElementsAre("Step Time"));
  EXPECT_EQ(empty_parameter<STEPTIME>().description, "Step time");
}

TEST(CatalogueIrregularities, InTheLiftOffAngleAndTheHeelStrikeTimeTheSecondNounIsCapitalised) {
  EXPECT_EQ(empty_parameter<TOP>().description, "Lift-off Angle");
  EXPECT_EQ(empty_parameter<HSP>().description, "Strike angle");
  EXPECT_EQ(empty_parameter<HS>().description, "Heel-strike Time");
}

TEST(CatalogueIrregularities, TwoTagsShareTheStepLength) {
  constexpr auto own = gait_catalogue::row_of<STEPLENGTH>;
  constexpr auto half = gait_catalogue::row_of<STEPLENGTH_ALT>;
  EXPECT_STREQ(own.key, half.key);
  EXPECT_STREQ(own.description, half.description);
  EXPECT_STREQ(own.unit, half.unit);
  EXPECT_EQ(own.decimals, half.decimals);
}

// The value of a cycle

/// Two cycles in which no two fields hold the same value.
gait_foot_result cycles_with_distinct_fields() {
  foot result;
  double value = 7.0;
  for (const auto field : foot::measured_fields) {
    result.with(field, {value, -value / 1024.0});
    value += 1.0;
  }
  return result.result();
}

template <class Tag>
void expect_reads_as_stored(double gait_foot_cycle::*field) {
  const gait_foot_result result = cycles_with_distinct_fields();
  EXPECT_THAT(built<Tag>(result, {1, 0}).values,
              SameBitsEach({result.cycles.back().*field, result.cycles.front().*field}))
      << gait_catalogue::row_of<Tag>.key;
}

TEST(CatalogueSource, OfEveryFootParameterButOneIsAFieldAsStored) {
  expect_reads_as_stored<GCT>(&gait_foot_cycle::gct);
  expect_reads_as_stored<SWING>(&gait_foot_cycle::swing);
  expect_reads_as_stored<STANCE>(&gait_foot_cycle::stance);
  expect_reads_as_stored<STANCE_MS>(&gait_foot_cycle::contact);
  expect_reads_as_stored<CADENCE>(&gait_foot_cycle::cadence);
  expect_reads_as_stored<LDR>(&gait_foot_cycle::ldr);
  expect_reads_as_stored<FFR>(&gait_foot_cycle::ffr);
  expect_reads_as_stored<PUR>(&gait_foot_cycle::pur);
  expect_reads_as_stored<SLENGTH>(&gait_foot_cycle::slength);
  expect_reads_as_stored<SWIDTH>(&gait_foot_cycle::swidth);
  expect_reads_as_stored<PATHLENGTH>(&gait_foot_cycle::path_length);
  expect_reads_as_stored<SPEED>(&gait_foot_cycle::speed);
  expect_reads_as_stored<TA>(&gait_foot_cycle::ta);
  expect_reads_as_stored<PEAKSWING>(&gait_foot_cycle::peakswing);
  expect_reads_as_stored<TOP>(&gait_foot_cycle::top);
  expect_reads_as_stored<HSP>(&gait_foot_cycle::hsp);
  expect_reads_as_stored<MAXHC>(&gait_foot_cycle::max_hc);
  expect_reads_as_stored<MINTC>(&gait_foot_cycle::min_tc);
  expect_reads_as_stored<MAXTC1>(&gait_foot_cycle::max_tc1);
  expect_reads_as_stored<MAXTC2>(&gait_foot_cycle::max_tc2);
  expect_reads_as_stored<MTCS>(&gait_foot_cycle::mtc_speed);
  expect_reads_as_stored<HS>(&gait_foot_cycle::hs);
  expect_reads_as_stored<STEPTIME>(&gait_foot_cycle::step_time);
  expect_reads_as_stored<STEPLENGTH>(&gait_foot_cycle::step_length);
  expect_reads_as_stored<IMPACT_VERT>(&gait_foot_cycle::impact_vert);
  expect_reads_as_stored<IMPACT_BREAK>(&gait_foot_cycle::impact_hor);
  expect_reads_as_stored<PRONATION>(&gait_foot_cycle::strike_eversion);
}

TEST(CatalogueSource, OfDoubleSupportIsThatOfTheTwoFeetCycle) {
  gait_feet_result feet = feet_with_ds({21.5, 22.25});
  gait_test::fill(feet.cycles, &gait_feet_cycle::gct, {1.0, 1.0});
  EXPECT_THAT(built<DS>(feet, {0, 1}).values, SameBitsEach({21.5, 22.25}));
}

TEST(CatalogueSource, OfTheAlternativeStepLengthIsHalfTheStride) {
  const auto parameter = built<STEPLENGTH_ALT>(
      foot().slength({1.5, 1.0}).with(&gait_foot_cycle::step_length, {9.0, 9.0}));
  EXPECT_THAT(parameter.values, SameBitsEach({0.75, 0.5}));
  EXPECT_EQ(parameter.mean, 0.625);
}

TEST(CatalogueSource, OfTheAlternativeStepLengthDeliberatelyCountsAHalvedMissingStrideLength) {
  const auto parameter = built<STEPLENGTH_ALT>(foot().slength({-1.0, 1.0}));
  EXPECT_THAT(parameter.values, SameBitsEach({-0.5, 0.5}));
  EXPECT_EQ(parameter.mean, 0.0);
  EXPECT_EQ(parameter.min, -0.5);
  EXPECT_TRUE(built<STEPLENGTH_ALT>(foot().slength({-1.0})).valid);
}

TEST(CatalogueSource, OfTheAlternativeStepLengthLeavesOutAStrideOfMinusTwo) {
  EXPECT_FALSE(built<STEPLENGTH_ALT>(foot().slength({-2.0})).valid);
}

}  // namespace

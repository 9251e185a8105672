#include <gait/gait.h>

#include "bits.h"
#include "builders.h"
#include "catalogue_keys.h"
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
using testing::UnorderedElementsAreArray;

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

TEST(Catalogue, ReadsTheTwoFeetTogetherForDoubleSupportOnly) {
  EXPECT_THAT(
      keys_where([](const auto& row) { return !reads_one_foot<std::decay_t<decltype(row)>>; }),
      ElementsAre("DS"));
}

TEST(Catalogue, ComparesTheSidesOfAllButSomeParameters) {
  EXPECT_THAT(keys_where([](const auto& row) { return !built_from(row, 2).asymmetry_enabled; }),
              UnorderedElementsAreArray(gait_test::keys_without_ratio()));
}

TEST(Catalogue, ReportsNoVariationForSomeParametersWhateverTheirValues) {
  EXPECT_THAT(keys_where([](const auto& row) { return built_from(row, 20).cv == -1.0; }),
              UnorderedElementsAreArray(gait_test::keys_without_variation()));
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

TEST(CatalogueSource, OfEveryFieldIsItsValueAsStored) {
  const gait_foot_result result = cycles_with_distinct_fields();
  gait_catalogue::for_each_row([&](const auto& row) {
    using row_type = std::decay_t<decltype(row)>;
    if constexpr (std::is_same_v<decltype(row.source), double gait_foot_cycle::*>) {
      EXPECT_THAT(
          built<typename row_type::tag_type>(result, {1, 0}).values,
          SameBitsEach({result.cycles.back().*row.source, result.cycles.front().*row.source}))
          << row.key;
    }
  });
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

#include <gait/gait.h>

#include "bits.h"
#include "builders.h"
#include "side.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <list>
#include <new>
#include <string>
#include <vector>

namespace {

using gait_test::built;
using gait_test::first_cycles;
using gait_test::foot;
using gait_test::infinity;
using gait_test::int_max;
using gait_test::int_min;
using gait_test::nan;
using gait_test::SameBits;
using gait_test::SameBitsEach;
using gait_test::statistics_of;
using testing::IsNan;

constexpr double epsilon = 2.220446049250313e-16;

std::vector<double> ramp(std::size_t count, double first, double difference) {
  std::vector<double> values;
  for (std::size_t k = 0; k < count; ++k) {
    values.push_back(first + difference * static_cast<double>(k));
  }
  return values;
}

MATCHER(HasNoStatistics, "is not valid and has no statistics") {
  return !arg.valid && arg.mean == -1.0 && arg.median == -1.0 && arg.std == -1.0 &&
         arg.iqr == -1.0 && arg.min == -1.0 && arg.max == -1.0 && arg.cv == -1.0;
}

// What enters the sample

TEST(BuildParameter, OfNoCyclesIsInsertedWithoutStatistics) {
  const auto parameter = built<GCT>(foot().gct({1.0, 1.1}), {});
  EXPECT_THAT(parameter, HasNoStatistics());
  EXPECT_TRUE(parameter.values.empty());
  EXPECT_EQ(parameter.description, "Cycle duration");
  EXPECT_EQ(parameter.unit, "seconds");
  EXPECT_EQ(parameter.decimals, 3);
  EXPECT_TRUE(parameter.asymmetry_enabled);
  EXPECT_EQ(parameter.asymmetry, -1.0);
}

TEST(BuildParameter, OfValuesThatAreAllMissingHasMissingValuesOnly) {
  const auto parameter = statistics_of({-1.0, -1.0});
  EXPECT_THAT(parameter, HasNoStatistics());
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, -1.0}));
  EXPECT_EQ(parameter.description, "Cycle duration");
}

TEST(BuildParameter, ReportsValuesInTheOrderOfTheIndexListAndKeepsThePlacesOfThoseOutOfRange) {
  const auto parameter = built<GCT>(foot().gct({1.25, 2.0, 3.0}), {5, -1, 2, 0});
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, -1.0, 3.0, 1.25}));
  EXPECT_EQ(parameter.mean, 2.125);
}

TEST(BuildParameter, CountsADuplicateIndexTwice) {
  const auto parameter = built<GCT>(foot().gct({1.0, 4.0}), {1, 0, 1});
  EXPECT_THAT(parameter.values, SameBitsEach({4.0, 1.0, 4.0}));
  EXPECT_EQ(parameter.mean, 3.0);
  EXPECT_EQ(parameter.median, 4.0);
}

TEST(BuildParameter, TakesNothingButExactlyMinusOneForMissing) {
  const std::vector<double> measured = {
      -0.999, std::nextafter(-1.0, 0.0), std::nextafter(-1.0, -2.0), 0.0, -0.0, -5.0, 1.0};
  for (const double value : measured) {
    const auto parameter = statistics_of({value});
    EXPECT_TRUE(parameter.valid) << value;
    EXPECT_THAT(parameter.mean, SameBits(value + 0.0)) << value;
    EXPECT_THAT(parameter.values, SameBitsEach({value}));
  }
}

TEST(BuildParameter, CountsNaNAsMeasured) {
  const auto alone = statistics_of({nan});
  EXPECT_TRUE(alone.valid);
  EXPECT_THAT(alone.values, SameBitsEach({nan}));
  EXPECT_THAT((std::vector<double>{alone.mean, alone.median, alone.iqr, alone.min, alone.max}),
              testing::Each(IsNan()));
  EXPECT_EQ(alone.std, 0.0);

  const auto among_others = statistics_of({1.0, nan, 3.0});
  EXPECT_THAT(among_others.values, SameBitsEach({1.0, nan, 3.0}));
  EXPECT_THAT(among_others.mean, IsNan());
  EXPECT_THAT(among_others.std, IsNan());
}

// The coefficient of variation

TEST(CoefficientOfVariation, MultipliesByHundredBeforeItDivides) {
  int telling = 0;
  for (int n = 10; n < 60; ++n) {
    const auto parameter = statistics_of(ramp(static_cast<std::size_t>(n), 1.0, 0.1));
    ASSERT_THAT(parameter.cv, SameBits(100.0 * parameter.std / parameter.mean));
    telling += parameter.cv != 100.0 * (parameter.std / parameter.mean) ? 1 : 0;
  }
  EXPECT_GT(telling, 0);
}

TEST(CoefficientOfVariation, NeedsTenMeasuredValuesAndAMeanThatIsNotZero) {
  const auto cv = [](const std::vector<double>& values) { return statistics_of(values).cv; };
  std::vector<double> values = ramp(9, 1.0, 1.0);
  EXPECT_EQ(cv(values), -1.0);
  values.push_back(-1.0);
  EXPECT_EQ(cv(values), -1.0) << "a gap is no value";
  values.push_back(10.0);
  EXPECT_THAT(cv(values), SameBits(55.04818825631803));
  EXPECT_THAT(cv({-2, -3, -4, -5, -6, -7, -8, -9, -10, -11}),
              SameBits(-100.0 * 3.0276503540974917 / 6.5));
  EXPECT_EQ(cv({-3, 3, -3, 3, -3, 3, -3, 3, -3, 3}), -1.0);
  EXPECT_THAT(cv(std::vector<double>(10, 2.0)), SameBits(0.0));
}

/// Ten values, not all the same, with exactly this mean.
gait_statistics_parameter ten_values_with_mean(double mean) {
  std::vector<double> sample(10, 0.0);
  sample[0] = 10.0 * mean;
  const auto parameter = statistics_of(sample);
  EXPECT_THAT(parameter.mean, SameBits(mean));
  EXPECT_GT(parameter.std, 0.0);
  return parameter;
}

TEST(CoefficientOfVariation, NeedsAMeanStrictlyAboveTheDoubleEpsilon) {
  const double above = std::nextafter(epsilon, 1.0);
  EXPECT_EQ(ten_values_with_mean(epsilon).cv, -1.0);
  EXPECT_EQ(ten_values_with_mean(-epsilon).cv, -1.0);
  EXPECT_EQ(ten_values_with_mean(epsilon / 2.0).cv, -1.0);
  EXPECT_GT(ten_values_with_mean(above).cv, 300.0);
  EXPECT_LT(ten_values_with_mean(-above).cv, -300.0);
}

// The map

class BuildParameterInto : public testing::Test {
protected:
  void build(const std::vector<double>& durations, const std::string& suffix) {
    gait_statistics_build_parameter<gait_foot_result, GCT>(
        statistics, foot().gct(durations).result(), first_cycles(durations.size()), suffix, GCT{});
  }
  gait_statistics statistics;
};

TEST_F(BuildParameterInto, TheMapAppendsTheSuffixToTheKey) {
  build({1.0}, "_L");
  build({2.0}, "");
  build({3.0}, "_R_again");
  EXPECT_EQ(statistics.parameters.size(), 3U);
  EXPECT_EQ(statistics.parameters.at("gct_L").mean, 1.0);
  EXPECT_EQ(statistics.parameters.at("gct").mean, 2.0);
  EXPECT_EQ(statistics.parameters.at("gct_R_again").mean, 3.0);
}

TEST_F(BuildParameterInto, TheMapLetsTheFirstEntryUnderAKeyWin) {
  statistics.parameters["gct"].description = "mine";
  build({1.0, 2.0}, "_R");
  build({5.0, 6.0, 7.0}, "_R");
  build({1.0}, "");
  EXPECT_EQ(statistics.parameters.size(), 2U);
  EXPECT_THAT(statistics.parameters.at("gct_R").values, SameBitsEach({1.0, 2.0}));
  EXPECT_EQ(statistics.parameters.at("gct").description, "mine");
  EXPECT_FALSE(statistics.parameters.at("gct").valid);
}

// Capacity

TEST(SampleCapacity, IsTheLengthOfTheListInSigned32Bits) {
  constexpr std::size_t two_to_32 = std::size_t{1} << 32U;
  EXPECT_EQ(gait_detail::sample_capacity(0), 0);
  EXPECT_EQ(gait_detail::sample_capacity(28), 28);
  EXPECT_EQ(gait_detail::sample_capacity((std::size_t{1} << 31U) - 1), int_max);
  EXPECT_EQ(gait_detail::sample_capacity(two_to_32), 0);
  EXPECT_EQ(gait_detail::sample_capacity(two_to_32 + 5), 5);
}

TEST(SampleCapacity, OfTwoToThe31ElementsThrowsBadAlloc) {
  EXPECT_THROW(gait_detail::sample_capacity(std::size_t{1} << 31U), std::bad_alloc);
  EXPECT_THROW(gait_detail::sample_capacity((std::size_t{1} << 32U) - 1), std::bad_alloc);
}

}  // namespace

// A caller's own parameters, which no header of the library knows.

struct FIRST_SAMPLE {};
struct LONG_STRIDE_ONLY {};
struct FEET_GCT {};

namespace {

double first_sample(const gait_foot_cycle& cycle) { return cycle.first_sample; }

}  // namespace

template <>
inline constexpr auto gait_catalogue::row_of<FIRST_SAMPLE> = gait_catalogue::foot<FIRST_SAMPLE>(
    "first sample", "First sample", "samples", 0, gait_catalogue::no_ratio, gait_catalogue::no_cv,
    first_sample);

template <>
inline constexpr auto gait_catalogue::row_of<LONG_STRIDE_ONLY> =
    gait_catalogue::foot<LONG_STRIDE_ONLY>("long", "Long strides", "meters", 3,
                                           gait_catalogue::ratio, gait_catalogue::cv,
                                           [](const gait_foot_cycle& c) {
                                             return c.slength > 1.0 ? c.slength : gait_missing;
                                           });

template <>
inline constexpr auto gait_catalogue::row_of<FEET_GCT> =
    gait_catalogue::feet<FEET_GCT>("feet gct", "Duration", "seconds", 3, gait_catalogue::no_ratio,
                                   gait_catalogue::cv, &gait_feet_cycle::gct);

namespace {

TEST(OwnTag, WithAFunctionIsBuiltFromARowOutsideTheLibrary) {
  const auto parameter = built<FIRST_SAMPLE>(foot().cycles(12));
  EXPECT_EQ(parameter.description, "First sample");
  EXPECT_EQ(parameter.unit, "samples");
  EXPECT_EQ(parameter.decimals, 0);
  EXPECT_FALSE(parameter.asymmetry_enabled);
  EXPECT_EQ(parameter.mean, 550.0);
  EXPECT_EQ(parameter.cv, -1.0);
}

TEST(OwnTag, MayLeaveCyclesOutByReturningTheMissingValue) {
  const auto parameter = built<LONG_STRIDE_ONLY>(foot().slength({0.9, 1.5, 0.8, 1.25}));
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, 1.5, -1.0, 1.25}));
  EXPECT_EQ(parameter.mean, 1.375);
}

TEST(OwnTag, MayReadTheTwoFeetTogether) {
  gait_feet_result feet;
  gait_test::fill(feet.cycles, &gait_feet_cycle::gct, {1.0, 2.0});
  EXPECT_EQ(built<FEET_GCT>(feet, {1, 0, 1}).max, 2.0);

  gait_statistics statistics;
  gait_statistics_build_parameter<gait_feet_result, FEET_GCT>(statistics, feet, {0}, "_both",
                                                              FEET_GCT{});
  EXPECT_EQ(statistics.parameters.at("feet gct_both").mean, 1.0);
}

}  // namespace

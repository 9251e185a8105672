#include <gait/gait.h>

#include "bits.h"
#include "builders.h"
#include "by_definition.h"
#include "side.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <list>
#include <new>
#include <random>
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

std::vector<double> ramp(std::size_t count, double first, double step) {
  std::vector<double> values;
  for (std::size_t k = 0; k < count; ++k) {
    values.push_back(first + step * static_cast<double>(k));
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

TEST(BuildParameter, OfAFootWithoutCyclesHasNoStatistics) {
  EXPECT_THAT(built<GCT>(foot(), {0, 1}), HasNoStatistics());
}

TEST(BuildParameter, OfIndicesThatAreAllOutOfRangeHasMissingValuesOnly) {
  const auto parameter = built<GCT>(foot().gct({1.0, 1.1}), {2, -1, 7});
  EXPECT_THAT(parameter, HasNoStatistics());
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, -1.0, -1.0}));
}

TEST(BuildParameter, OfValuesThatAreAllMissingHasMissingValuesOnly) {
  const auto parameter = statistics_of({-1.0, -1.0});
  EXPECT_THAT(parameter, HasNoStatistics());
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, -1.0}));
  EXPECT_EQ(parameter.description, "Cycle duration");
}

TEST(BuildParameter, SkipsIndicesOutOfRangeAndKeepsTheirPositions) {
  const auto parameter = built<GCT>(foot().gct({1.25, 2.0, 3.0}), {5, -1, 0});
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, -1.0, 1.25}));
  EXPECT_EQ(parameter.mean, 1.25);
  EXPECT_EQ(parameter.std, 0.0);
}

TEST(BuildParameter, SkipsAnIndexEqualToTheNumberOfCyclesAndTheExtremesOfInt) {
  const auto parameter = built<GCT>(foot().gct({1.25, 2.0}), {2, int_min, 1, int_max});
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, -1.0, 2.0, -1.0}));
}

TEST(BuildParameter, ReportsValuesInTheOrderOfTheIndexList) {
  EXPECT_THAT(built<GCT>(foot().gct({1.0, 1.1, 1.2}), {2, 0, 1}).values,
              SameBitsEach({1.2, 1.0, 1.1}));
}

TEST(BuildParameter, ReportsValuesInTheOrderOfTheIndexListOverALongWalkToo) {
  // Long lists are walked to several indices at once.
  constexpr int cycle_count = 200;
  std::mt19937_64 random(320);
  for (int round = 0; round < 300; ++round) {
    std::list<int> indices;
    std::vector<double> expected;
    for (auto k = random() % 100; k > 0; --k) {
      const int index = static_cast<int>(random() % (cycle_count + 20)) - 10;
      indices.push_back(index);
      expected.push_back(index < 0 || index >= cycle_count ? -1.0 : 1.0 + index);
    }
    ASSERT_THAT(built<GCT>(foot().gct(ramp(cycle_count, 1.0, 1.0)), indices).values,
                SameBitsEach(expected));
  }
}

TEST(BuildParameter, CountsADuplicateIndexTwice) {
  const auto parameter = built<GCT>(foot().gct({1.0, 4.0}), {1, 0, 1});
  EXPECT_THAT(parameter.values, SameBitsEach({4.0, 1.0, 4.0}));
  EXPECT_EQ(parameter.mean, 3.0);
  EXPECT_EQ(parameter.median, 4.0);
}

TEST(BuildParameter, KeepsMissingValuesInPlaceAndOutOfTheSample) {
  const auto parameter = statistics_of({2.0, -1.0, 4.0});
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.values, SameBitsEach({2.0, -1.0, 4.0}));
  EXPECT_EQ(parameter.mean, 3.0);
  EXPECT_EQ(parameter.min, 2.0);
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

TEST(BuildParameter, CountsInfinityAsMeasured) {
  const auto parameter = statistics_of({1.0, infinity, 2.0, -1.0});
  EXPECT_EQ(parameter.mean, infinity);
  EXPECT_EQ(parameter.median, 2.0);
  EXPECT_EQ(parameter.max, infinity);
  EXPECT_EQ(parameter.min, 1.0);
}

// The statistics

TEST(BuildParameter, OfOneValueHasDeviationZeroAndNoVariation) {
  const auto parameter = statistics_of({1.375});
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT((std::vector<double>{parameter.mean, parameter.median, parameter.min, parameter.max}),
              testing::Each(1.375));
  EXPECT_THAT(parameter.std, SameBits(0.0));
  EXPECT_THAT(parameter.iqr, SameBits(0.0));
  EXPECT_EQ(parameter.cv, -1.0);
}

TEST(BuildParameter, OfTwoValuesDividesByOneLess) {
  const auto parameter = statistics_of({1.0, 3.0});
  EXPECT_THAT(parameter.std, SameBits(std::sqrt(2.0)));
  EXPECT_EQ(parameter.iqr, 2.0);
}

TEST(BuildParameter, OfOneToFour) {
  const auto parameter = statistics_of({1.0, 2.0, 3.0, 4.0});
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.mean, SameBits(2.5));
  EXPECT_THAT(parameter.median, SameBits(2.5));
  EXPECT_THAT(parameter.iqr, SameBits(2.0));
  EXPECT_THAT(parameter.std, SameBits(1.2909944487358056));
  EXPECT_THAT(parameter.min, SameBits(1.0));
  EXPECT_THAT(parameter.max, SameBits(4.0));
  EXPECT_EQ(parameter.cv, -1.0);
}

TEST(BuildParameter, OfOneToTen) {
  const auto parameter = statistics_of(ramp(10, 1.0, 1.0));
  EXPECT_THAT(parameter.mean, SameBits(5.5));
  EXPECT_THAT(parameter.median, SameBits(5.5));
  EXPECT_THAT(parameter.iqr, SameBits(5.0));
  EXPECT_THAT(parameter.std, SameBits(3.0276503540974917));
  EXPECT_THAT(parameter.cv, SameBits(55.04818825631803));
}

TEST(BuildParameter, SumsInSampleOrder) {
  // In any other order some of the large values swallow a small one.
  EXPECT_EQ(statistics_of({1e16, 1.0, -1e16, 1.0}).mean, 0.25);
  EXPECT_EQ(statistics_of({1e16, -1e16, 1.0, 1.0}).mean, 0.5);
  EXPECT_EQ(built<GCT>(foot().gct({1e16, -1e16, 1.0, 1.0}), {0, 2, 1, 3}).mean, 0.25);
}

TEST(BuildParameter, KeepsTheSpreadOfValuesFarFromZero) {
  // A sum of squares without the mean taken off would lose all of it.
  EXPECT_THAT(statistics_of({1e9 + 1.0, 1e9 + 2.0, 1e9 + 3.0}).std, SameBits(1.0));
}

std::vector<double> random_sample(std::mt19937_64& random) {
  std::vector<double> sample(2 + random() % 40);
  std::normal_distribution<double> spread(1.1, 0.2);
  for (double& value : sample) {
    value = spread(random);
  }
  return sample;
}

TEST(BuildParameter, HasTheBitsOfPlainSumsInSampleOrder) {
  std::mt19937_64 random(321);
  for (int round = 0; round < 500; ++round) {
    const std::vector<double> sample = random_sample(random);
    const auto n = static_cast<double>(sample.size());
    double sum = 0.0;
    for (const double x : sample) {
      sum += x;
    }
    double squares = 0.0;
    for (const double x : sample) {
      squares += (x - sum / n) * (x - sum / n);
    }
    const auto parameter = statistics_of(sample);
    ASSERT_THAT(parameter.mean, SameBits(sum / n));
    ASSERT_THAT(parameter.std, SameBits(std::sqrt(squares / (n - 1.0))));
  }
}

TEST(BuildParameter, HasTheQuartilesAndTheMedianOfThePercentile) {
  std::mt19937_64 random(322);
  for (int round = 0; round < 500; ++round) {
    const std::vector<double> sample = random_sample(random);
    const auto quartiles = by_definition::percentile(sample, {25.0, 75.0});
    const auto parameter = statistics_of(sample);
    ASSERT_THAT(parameter.iqr, SameBits(quartiles[1] - quartiles[0]));
    ASSERT_THAT(parameter.median, SameBits(by_definition::percentile(sample, {50.0})[0]));
  }
}

TEST(BuildParameter, FindsTheExtremesWhereverTheyAre) {
  EXPECT_EQ(statistics_of({3.0, 1.0, 2.0}).min, 1.0);
  EXPECT_EQ(statistics_of({3.0, 1.0, 2.0}).max, 3.0);
  EXPECT_EQ(statistics_of({-3.0, -7.0}).max, -3.0);
  EXPECT_EQ(statistics_of({-3.0, -7.0}).min, -7.0);
}

// The coefficient of variation

TEST(CoefficientOfVariation, IsDeliberatelyMissingBelowTenValues) {
  const auto nine = statistics_of(ramp(9, 1.0, 1.0));
  EXPECT_EQ(nine.cv, -1.0);
  EXPECT_GT(nine.std, 0.0);

  const auto ten = statistics_of(ramp(10, 1.0, 1.0));
  EXPECT_THAT(ten.cv, SameBits(100.0 * ten.std / ten.mean));
}

TEST(CoefficientOfVariation, CountsMeasuredValuesAndNotPositions) {
  std::vector<double> nine_and_a_gap = ramp(9, 1.0, 1.0);
  nine_and_a_gap.push_back(-1.0);
  EXPECT_EQ(statistics_of(nine_and_a_gap).cv, -1.0);
  nine_and_a_gap.push_back(10.0);
  EXPECT_THAT(statistics_of(nine_and_a_gap).cv, SameBits(55.04818825631803));
}

TEST(CoefficientOfVariation, MultipliesByHundredBeforeItDivides) {
  std::mt19937_64 random(323);
  int telling = 0;
  for (int round = 0; round < 200; ++round) {
    std::vector<double> sample = random_sample(random);
    sample.resize(10, 1.5);
    const auto parameter = statistics_of(sample);
    ASSERT_THAT(parameter.cv, SameBits(100.0 * parameter.std / parameter.mean));
    telling += parameter.cv != 100.0 * (parameter.std / parameter.mean) ? 1 : 0;
  }
  EXPECT_GT(telling, 0);
}

TEST(CoefficientOfVariation, KeepsTheSignOfTheMean) {
  EXPECT_THAT(statistics_of(ramp(10, -10.0, 1.0 / 2.0)).cv, testing::Lt(0.0));
  EXPECT_THAT(statistics_of({-2, -3, -4, -5, -6, -7, -8, -9, -10, -11}).cv,
              SameBits(-100.0 * 3.0276503540974917 / 6.5));
}

TEST(CoefficientOfVariation, IsMissingForAMeanOfZero) {
  EXPECT_EQ(statistics_of({-3, 3, -3, 3, -3, 3, -3, 3, -3, 3}).cv, -1.0);
  EXPECT_EQ(statistics_of(std::vector<double>(10, 0.0)).cv, -1.0);
  EXPECT_EQ(statistics_of(std::vector<double>(10, -0.0)).cv, -1.0);
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

TEST(CoefficientOfVariation, IsMissingForANaNMean) {
  std::vector<double> sample = ramp(10, 1.0, 1.0);
  sample[4] = nan;
  const auto parameter = statistics_of(sample);
  EXPECT_THAT(parameter.mean, IsNan());
  EXPECT_EQ(parameter.cv, -1.0);
}

TEST(CoefficientOfVariation, OfTenEqualValuesIsZero) {
  EXPECT_THAT(statistics_of(std::vector<double>(10, 2.0)).cv, SameBits(0.0));
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
  build({1.0, 2.0}, "_R");
  build({5.0, 6.0, 7.0}, "_R");
  ASSERT_EQ(statistics.parameters.size(), 1U);
  EXPECT_EQ(statistics.parameters.at("gct_R").mean, 1.5);
  EXPECT_THAT(statistics.parameters.at("gct_R").values, SameBitsEach({1.0, 2.0}));
}

TEST_F(BuildParameterInto, TheMapKeepsAnEntryOfTheCallersOwn) {
  statistics.parameters["gct"].description = "mine";
  build({1.0}, "");
  EXPECT_EQ(statistics.parameters.at("gct").description, "mine");
  EXPECT_FALSE(statistics.parameters.at("gct").valid);
}

TEST_F(BuildParameterInto, TheMapKeepsAnEmptyFirstEntryToo) {
  build({}, "");
  build({1.0}, "");
  EXPECT_FALSE(statistics.parameters.at("gct").valid);
}

TEST_F(BuildParameterInto, TheMapTouchesNothingElse) {
  statistics.info.cycle_count = 77;
  statistics.info.cycles = {4, 5};
  statistics.parameters["swing"].mean = 3.5;
  build({1.0}, "");
  EXPECT_EQ(statistics.info.cycle_count, 77);
  EXPECT_EQ(statistics.info.cycles, (std::list<int>{4, 5}));
  EXPECT_EQ(statistics.info.duration, 0.0);
  EXPECT_EQ(statistics.parameters.at("swing").mean, 3.5);
  EXPECT_EQ(statistics.parameters.size(), 2U);
}

TEST(BuildParameter, DoesNotChangeWhatItReads) {
  const gait_foot_result result = foot().gct({3.0, -1.0, 1.0}).result();
  const std::list<int> cycles = {2, 9, 0, 1};
  built<GCT>(result, cycles);
  EXPECT_EQ(cycles, (std::list<int>{2, 9, 0, 1}));
  std::vector<double> durations;
  for (const auto& cycle : result.cycles) {
    durations.push_back(cycle.gct);
  }
  EXPECT_THAT(durations, SameBitsEach({3.0, -1.0, 1.0}));
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

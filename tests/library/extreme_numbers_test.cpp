#include <gait/gait.h>

#include "bits.h"
#include "builders.h"
#include "by_definition.h"
#include "side.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Numbers that no stride has: nothing guards against them, and what comes out is what the formulas
// give, in their order of operations. The expected figures are worked out by hand, or by the plain
// loops of `expected_statistics`.

namespace {

using namespace gait_test;
using gait_test::nan;  // of <cmath> too

constexpr double largest = std::numeric_limits<double>::max();          // 1.8e308
constexpr double smallest = std::numeric_limits<double>::denorm_min();  // 4.9e-324
constexpr double epsilon = std::numeric_limits<double>::epsilon();      // of 1.0

using sample = std::vector<double>;

/// A list of the same values over and over.
sample repeated(std::size_t times, const sample& values) {
  sample all;
  for (std::size_t i = 0; i < times; ++i) {
    all.insert(all.end(), values.begin(), values.end());
  }
  return all;
}

double sum_of(const sample& values) {
  double sum = 0.0;
  for (const double value : values) {
    sum += value;
  }
  return sum;
}

struct figures {
  double mean, std, median, iqr, min, max, cv;
};

/// The statistics of a sample, from their definitions.
figures expected_statistics(const sample& values) {
  const auto n = static_cast<double>(values.size());
  figures f{};
  f.mean = sum_of(values) / n;
  double squares = 0.0;
  for (const double value : values) {
    squares += (value - f.mean) * (value - f.mean);
  }
  f.std = values.size() < 2 ? 0.0 : std::sqrt(squares / (n - 1.0));
  f.median = by_definition::percentile(values, {50.0})[0];
  const sample quartiles = by_definition::percentile(values, {25.0, 75.0});
  f.iqr = quartiles[1] - quartiles[0];
  f.min = f.max = values.front();
  for (const double value : values) {
    f.min = value < f.min ? value : f.min;
    f.max = value > f.max ? value : f.max;
  }
  f.cv = values.size() >= 10 && (f.mean > 2.220446049250313e-16 || f.mean < -2.220446049250313e-16)
             ? 100.0 * f.std / f.mean
             : -1.0;
  return f;
}

/// The statistics of a sample, which must be those of the plain loops.
gait_statistics_parameter checked(const sample& values) {
  const gait_statistics_parameter parameter = statistics_of(values);
  const figures expected = expected_statistics(values);
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.values, SameBitsEach(values));
  EXPECT_THAT(parameter.mean, SameBits(expected.mean));
  EXPECT_THAT(parameter.std, SameBits(expected.std));
  EXPECT_THAT(parameter.median, SameBits(expected.median));
  EXPECT_THAT(parameter.iqr, SameBits(expected.iqr));
  EXPECT_EQ(parameter.min, expected.min);
  EXPECT_EQ(parameter.max, expected.max);
  EXPECT_THAT(parameter.cv, SameBits(expected.cv));
  return parameter;
}

// Large numbers

TEST(LargeNumbers, WhoseSumOverflowsHaveAnInfiniteMeanAndDeviation) {
  const auto two = checked({1e308, 1e308});
  EXPECT_THAT(two.mean, SameBits(infinity));
  EXPECT_THAT(two.std, SameBits(infinity));
  EXPECT_THAT(two.median, SameBits(infinity)) << "the middle two are added too";
  EXPECT_THAT(two.iqr, SameBits(0.0));
  EXPECT_THAT(two.max, SameBits(1e308));

  const auto three = checked({-1e308, -1e308, -1e308});
  EXPECT_THAT(three.mean, SameBits(-infinity));
  EXPECT_THAT(three.median, SameBits(-1e308));
}

TEST(LargeNumbers, MayCancelOutOnTheWayOfTheSumOrNot) {
  EXPECT_THAT(checked({1e308, -1e308, 1e308, -1e308}).mean, SameBits(0.0));
  EXPECT_THAT(checked({1e308, 1e308, -1e308, -1e308}).mean, SameBits(infinity));
  EXPECT_THAT(checked({-1e308, -1e308, 1e308, 1e308}).mean, SameBits(-infinity));
}

TEST(LargeNumbers, WhoseSquaresOverflowHaveAnInfiniteDeviationAboutAFiniteMean) {
  const auto parameter = checked({1e160, 3e160});
  EXPECT_THAT(parameter.mean, SameBits(2e160));
  EXPECT_THAT(parameter.std, SameBits(infinity));
  EXPECT_THAT(checked({-1e154, 1e154}).std, SameBits(infinity))
      << "each square is finite, their sum is not";
  EXPECT_THAT(checked({-9e153, 9e153}).std, SameBits(0x1.e60992feac3efp+511)) << "just below";
}

TEST(LargeNumbers, WhoseDifferenceOverflowsHaveAnInfiniteRange) {
  const auto parameter = checked({-largest, largest});
  EXPECT_THAT(parameter.mean, SameBits(0.0));
  EXPECT_THAT(parameter.median, SameBits(0.0));
  EXPECT_THAT(parameter.iqr, SameBits(infinity));
  EXPECT_THAT(parameter.min, SameBits(-largest));
  EXPECT_THAT(parameter.max, SameBits(largest));
}

TEST(LargeNumbers, WhoseDifferenceOverflowsInterpolateToInfinity) {
  // Halfway between -1e308 and 1e308 the lower quartile is infinite, and the upper one 1e308.
  EXPECT_THAT(checked({-1e308, 1e308, 1e308, 1e308}).iqr, SameBits(-infinity));
  EXPECT_THAT(checked({-1e308, -1e308, -1e308, 1e308}).iqr, SameBits(infinity));
}

TEST(LargeNumbers, HaveAnInfiniteCoefficientOfVariationWithTheSignOfTheMean) {
  EXPECT_THAT(checked(repeated(5, {1e160, 3e160})).cv, SameBits(infinity));
  EXPECT_THAT(checked(repeated(5, {-1e160, -3e160})).cv, SameBits(-infinity));
  EXPECT_THAT(checked(sample(10, 1e308)).cv, SameBits(nan)) << "infinity by infinity";
}

// Small numbers

TEST(SmallNumbers, AreNotFlushedToZero) {
  const auto parameter = checked({smallest, 3.0 * smallest});
  EXPECT_THAT(parameter.mean, SameBits(2.0 * smallest));
  EXPECT_THAT(parameter.median, SameBits(2.0 * smallest));
  EXPECT_THAT(parameter.iqr, SameBits(2.0 * smallest));
  EXPECT_THAT(parameter.min, SameBits(smallest));
  EXPECT_THAT(parameter.max, SameBits(3.0 * smallest));
}

TEST(SmallNumbers, RoundToTheNearestOfTheirOwn) {
  EXPECT_THAT(checked({smallest, 2.0 * smallest}).mean, SameBits(2.0 * smallest))
      << "1.5 goes to the even one";
  EXPECT_THAT(checked({smallest, smallest, 0.0}).mean, SameBits(smallest)) << "0.67 goes to 1";
  EXPECT_THAT(checked({smallest, 0.0, 0.0}).mean, SameBits(0.0)) << "0.33 goes to 0";
}

TEST(SmallNumbers, WhoseSquaresUnderflowHaveNoDeviation) {
  EXPECT_THAT(checked({1e-170, 3e-170}).std, SameBits(0.0));
  EXPECT_THAT(checked({0.0, 1e-161}).std, SameBits(0x1.94c583ada5b53p-536))
      << "5 of the smallest number each";
  EXPECT_THAT(checked({smallest, 3.0 * smallest}).std, SameBits(0.0));
}

TEST(SmallNumbers, HaveNoCoefficientOfVariation) {
  EXPECT_THAT(checked(repeated(5, {1e-100, 3e-100})).cv, SameBits(-1.0));
  EXPECT_THAT(checked(repeated(5, {-1e-16, -3e-16})).cv, SameBits(-1.0)) << "a mean of -2e-16";
  EXPECT_LT(checked(repeated(5, {-1e-16, -4e-16})).cv, -60.0) << "a mean of -2.5e-16";
  EXPECT_GT(checked(repeated(5, {1e-16, 4e-16})).cv, 60.0);
}

TEST(SmallNumbers, BesideLargeOnesAreLostInTheMeanButNotInTheExtremes) {
  const auto parameter = checked({smallest, 1e308, -smallest});
  EXPECT_THAT(parameter.mean, SameBits(1e308 / 3.0));
  EXPECT_THAT(parameter.median, SameBits(smallest));
  EXPECT_THAT(parameter.min, SameBits(-smallest));
}

// Equal numbers, and neighbours

TEST(EqualNumbers, FourHundredOfThemHaveTheDeviationThatTheRoundedMeanLeaves) {
  const auto exact = checked(sample(400, 2.0));
  EXPECT_THAT(exact.mean, SameBits(2.0));
  EXPECT_THAT(exact.std, SameBits(0.0));
  EXPECT_THAT(exact.cv, SameBits(0.0));

  const auto tenths = checked(sample(400, 0.1));
  EXPECT_THAT(tenths.mean, SameBits(0x1.99999999999cfp-4)) << "above 0.1";
  EXPECT_THAT(tenths.std, SameBits(0x1.a887ef57a60ccp-51));
  EXPECT_THAT(tenths.cv, SameBits(0x1.9e94bfbb98251p-41));

  const auto durations = checked(sample(400, 1.07));
  EXPECT_THAT(durations.mean, SameBits(0x1.11eb851eb8505p+0)) << "below 1.07";
  EXPECT_THAT(durations.std, SameBits(0x1.a0855ec042502p-48));
  EXPECT_THAT(durations.cv, SameBits(0x1.301e63631ae46p-41));
}

TEST(EqualNumbers, HaveNoInterquartileRangeAndThemselvesForAMedian) {
  for (const double value : {0.1, 1.07, -2.5, 1e300, smallest, -smallest, largest / 2.0}) {
    for (const std::size_t n : {2U, 3U, 4U, 5U, 10U, 399U, 400U}) {
      const auto parameter = checked(sample(n, value));
      EXPECT_THAT(parameter.median, SameBits(value)) << n;
      EXPECT_THAT(parameter.iqr, SameBits(0.0)) << n;
    }
  }
}

TEST(EqualNumbers, ThatAreLargeHaveAnInfiniteDeviationAllTheSame) {
  // What the mean is off by has a square that overflows.
  const auto parameter = checked(sample(400, 1e300));
  EXPECT_THAT(parameter.mean, SameBits(0x1.7e43c880075cdp+996));
  EXPECT_THAT(parameter.std, SameBits(infinity));
}

TEST(NeighbouringNumbers, AreToldApart) {
  const auto two = checked({1.0, 1.0 + epsilon});
  EXPECT_THAT(two.mean, SameBits(1.0)) << "halfway goes to the even one";
  EXPECT_THAT(two.std, SameBits(epsilon));
  EXPECT_THAT(two.iqr, SameBits(epsilon));
  EXPECT_THAT(two.max, SameBits(1.0 + epsilon));

  const auto four = checked({1.0 + 3.0 * epsilon, 1.0, 1.0 + 2.0 * epsilon, 1.0 + epsilon});
  // Q1 = 1 + epsilon / 2 and Q3 = 1 + 2.5 epsilon both go to the even one.
  EXPECT_THAT(four.iqr, SameBits(2.0 * epsilon));
}

TEST(NeighbouringNumbers, AmongFourHundredAreTheExtremes) {
  sample values(400, 1.1);
  values[123] = std::nextafter(1.1, 2.0);
  values[321] = std::nextafter(1.1, 1.0);
  const auto parameter = checked(values);
  EXPECT_THAT(parameter.min, SameBits(std::nextafter(1.1, 1.0)));
  EXPECT_THAT(parameter.max, SameBits(std::nextafter(1.1, 2.0)));
  EXPECT_THAT(parameter.median, SameBits(1.1));
  EXPECT_THAT(parameter.iqr, SameBits(0.0));
}

// Infinities, NaN and signed zeros

TEST(InfiniteNumbers, MakeTheMeanInfiniteAndTheDeviationNaN) {
  const auto parameter = checked({1.0, infinity, 2.0, 3.0, 4.0});
  EXPECT_THAT(parameter.mean, SameBits(infinity));
  EXPECT_THAT(parameter.std, SameBits(nan));
  EXPECT_THAT(parameter.median, SameBits(3.0));
  EXPECT_THAT(parameter.iqr, SameBits(infinity)) << "Q3 lies between 4 and infinity";
}

TEST(InfiniteNumbers, OfBothSignsHaveNoMean) {
  const auto parameter = checked({-infinity, infinity});
  EXPECT_THAT(parameter.mean, SameBits(nan));
  EXPECT_THAT(parameter.median, SameBits(nan));
  EXPECT_THAT(parameter.iqr, SameBits(infinity));
  EXPECT_THAT(parameter.min, SameBits(-infinity));
  EXPECT_THAT(parameter.max, SameBits(infinity));
}

TEST(InfiniteNumbers, DoNotInterpolateBetweenOneAnother) {
  EXPECT_THAT(checked({1.0, 2.0, infinity, infinity}).iqr, SameBits(nan));
  EXPECT_THAT(checked({1.0, 2.0, 3.0, infinity}).iqr, SameBits(infinity));
}

TEST(InfiniteNumbers, HaveACoefficientOfVariationOfNaN) {
  sample values(9, 1.0);
  values.push_back(infinity);
  EXPECT_THAT(checked(values).cv, SameBits(nan)) << "the infinite mean is above the threshold";
}

TEST(NaN, AmongFourHundredValuesLeavesNoCoefficientOfVariation) {
  sample values(400, 1.5);
  values[200] = nan;
  const auto parameter = statistics_of(values);
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.mean, SameBits(nan));
  EXPECT_THAT(parameter.std, SameBits(nan));
  EXPECT_THAT(parameter.cv, SameBits(-1.0));
}

TEST(SignedZeros, AddUpToPositiveZero) {
  const auto parameter = checked({-0.0, -0.0, -0.0});
  EXPECT_THAT(parameter.mean, SameBits(0.0)) << "the sum starts from 0.0";
  EXPECT_THAT(parameter.std, SameBits(0.0));
  EXPECT_THAT(parameter.median, SameBits(-0.0));
  EXPECT_THAT(parameter.min, SameBits(-0.0));
}

// All of it at random

/// A finite or infinite number of any magnitude, of the largest, of the smallest, or a neighbour of
/// 1.1.
double random_number(std::mt19937_64& random, std::uint64_t kind) {
  const std::uint64_t sign = (random() & 1U) << 63U;
  const std::uint64_t any = random() & 0x7FFF'FFFF'FFFF'FFFFU;
  const std::uint64_t infinite = 0x7FF0'0000'0000'0000U;
  std::uint64_t pattern = sign | any % (infinite + 1);
  if (kind == 1) {
    pattern = sign | (infinite - any % (std::uint64_t{1} << 56U));
  } else if (kind == 2) {
    pattern = sign | any % (std::uint64_t{1} << 53U);
  } else if (kind == 3) {
    pattern = bits(1.1) + any % 5 - 2;
  }
  double number = 0.0;
  std::memcpy(&number, &pattern, sizeof number);
  return number;
}

TEST(ExtremeNumbers, HaveTheBitsOfThePlainLoops) {
  std::mt19937_64 random(341);
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    sample values(1 + random() % 40);
    for (double& value : values) {
      value = random_number(random, static_cast<std::uint64_t>(round) % 4);
    }
    SCOPED_TRACE("round " + std::to_string(round));
    checked(values);
  }
}

// Sums of the accounting

gait_statistics_info info_of(walk w) { return w.analyse().statistics.info; }

TEST(IndexSums, OverflowToInfinity) {
  const auto info = info_of(one_foot(foot().slength({1e308, 1e308, 1.0})).excluded_1({1}));
  EXPECT_THAT(info.total_distance, SameBits(infinity));
  EXPECT_THAT(info.included_distance, SameBits(1e308));
}

TEST(IndexSums, MayCancelOutOnTheirWayOrNot) {
  EXPECT_THAT(info_of(one_foot(foot().slength({1e308, -1e308, 1e308}))).total_distance,
              SameBits(1e308));
  EXPECT_THAT(info_of(one_foot(foot().slength({1e308, 1e308, -1e308}))).total_distance,
              SameBits(infinity));
  EXPECT_THAT(info_of(one_foot(foot().slength({infinity, 1.0, -infinity}))).total_distance,
              SameBits(nan));
}

TEST(IndexSums, KeepTheSmallestNumbers) {
  const auto info = info_of(one_foot(foot().gct({smallest, 3.0 * smallest, -0.0})));
  EXPECT_THAT(info.included_gct_sum, SameBits(4.0 * smallest));
  EXPECT_THAT(info_of(one_foot(foot().gct({-0.0, -0.0}))).included_gct_sum, SameBits(0.0));
}

TEST(IndexSums, LeaveOutMinusOneAndNoneOfItsNeighbours) {
  const double above = std::nextafter(-1.0, 0.0);
  const double below = std::nextafter(-1.0, -2.0);
  EXPECT_THAT(info_of(one_foot(foot().gct({-1.0, above, -1.0}))).included_gct_sum, SameBits(above));
  EXPECT_THAT(info_of(one_foot(foot().gct({below, -1.0, -1.0}))).included_gct_sum, SameBits(below));
}

TEST(IndexSums, OfAnInfiniteExclusionLeaveNoFiniteDuration) {
  const auto w = one_foot(foot().gct({1e308, 1e308, 1.0}).samples(0, 299));
  EXPECT_THAT(info_of(walk(w).excluded_1({0, 1})).included_duration, SameBits(-infinity));
  EXPECT_THAT(info_of(one_foot(foot().gct({infinity, -infinity})).excluded_1({0}).excluded_2({1}))
                  .included_duration,
              SameBits(nan));
}

TEST(IndexSums, OfFourHundredEqualDurationsRoundAtEveryStep) {
  const sample durations(400, 0.1);
  const auto info = info_of(one_foot(foot().gct(durations)));
  EXPECT_THAT(info.included_gct_sum, SameBits(sum_of(durations)));
  EXPECT_NE(info.included_gct_sum, 400 * 0.1);
}

TEST(RecordingDuration, OfMoreSamplesThanADoubleCountsIsRounded) {
  constexpr auto all = std::numeric_limits<std::uint64_t>::max();
  const auto duration = [](std::uint64_t samples) {
    return info_of(one_foot(foot().cycles(1).sample_counts(samples, all).rate(1)))
        .recording_duration;
  };
  EXPECT_THAT(duration(all), SameBits(0x1p64));
  EXPECT_THAT(duration((std::uint64_t{1} << 53U) + 1), SameBits(0x1p53));
  EXPECT_THAT(duration((std::uint64_t{1} << 53U) + 3), SameBits(0x1p53 + 4.0));
}

// Left and right

struct sides {
  double left;
  double right;
};

/// The ratios of two feet whose durations have these means.
sides ratios_of(double left, double right) {
  walk w = two_feet(foot().gct({left}), foot().gct({right}));
  const auto& parameters = w.analyse().statistics.parameters;
  return {parameters.at("gct_L").asymmetry, parameters.at("gct_R").asymmetry};
}

TEST(ExtremeRatios, OverflowAndUnderflow) {
  EXPECT_THAT(ratios_of(smallest, 1.0).right, SameBits(infinity));
  EXPECT_THAT(ratios_of(smallest, 1.0).left, SameBits(0.0));
  EXPECT_THAT(ratios_of(1.0, smallest).right, SameBits(smallest));
  EXPECT_THAT(ratios_of(1.0, smallest).left, SameBits(infinity));
  EXPECT_THAT(ratios_of(1e200, 1e-200).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(1e200, 1e-200).left, SameBits(infinity))
      << "the reciprocal of a ratio that underflowed";
  EXPECT_THAT(ratios_of(1e200, -1e-200).left, SameBits(-infinity));
}

TEST(ExtremeRatios, OfInfiniteMeans) {
  EXPECT_THAT(ratios_of(infinity, infinity).right, SameBits(nan));
  EXPECT_THAT(ratios_of(infinity, 1.0).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(infinity, 1.0).left, SameBits(infinity));
  EXPECT_THAT(ratios_of(1.0, -infinity).left, SameBits(-0.0));
}

TEST(ExtremeRatios, TakeTheSmallestNumberForAMeanThatIsNotZero) {
  EXPECT_THAT(ratios_of(smallest, smallest).right, SameBits(1.0));
  EXPECT_THAT(ratios_of(-smallest, smallest).right, SameBits(-1.0));
  EXPECT_THAT(ratios_of(0.0, smallest).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(-0.0, smallest).left, SameBits(infinity));
}

struct swing_asymmetry {
  gait_statistics_parameter parameter;
  bool flagged;
};

swing_asymmetry swing_asymmetry_of(const sample& left, const sample& right) {
  walk w = two_feet(foot().swing(left), foot().swing(right));
  const gait_result& result = w.analyse();
  return {result.statistics.parameters.at("asymmetry"),
          (result.quality_flags & gait_quality_swing_asymmetry) != 0};
}

TEST(ExtremeSwingAsymmetry, OverflowsInItsStepsToInfinityZeroOrNaN) {
  const auto index = [](double left, double right) {
    return swing_asymmetry_of({left}, {right}).parameter.mean;
  };
  EXPECT_THAT(index(1e308, 1.0), SameBits(infinity)) << "the product with the sampling rate";
  EXPECT_THAT(index(1.0, 1e308), SameBits(-infinity));
  EXPECT_THAT(index(1e308, 1e308), SameBits(0.0)) << "the sum alone";
  EXPECT_THAT(index(1.7e308, 1e308), SameBits(nan)) << "both";
  EXPECT_THAT(index(2.0 * smallest, smallest), SameBits(100.0 / 3.0)) << "neither";
}

TEST(ExtremeSwingAsymmetry, ThatIsInfiniteRaisesItsFlagAndThatIsNaNDoesNot) {
  EXPECT_TRUE(swing_asymmetry_of({1e308, 50.0}, {1.0, 50.0}).flagged);
  EXPECT_FALSE(swing_asymmetry_of({1.7e308, 60.0}, {1e308, 30.0}).flagged);
}

TEST(ExtremeSwingAsymmetry, RaisesItsFlagFromTwentyOnToTheLastBit) {
  const double less = std::nextafter(60.0, 0.0);
  EXPECT_LT(((less - 40.0) * 100.0) / (less + 40.0), 20.0);
  EXPECT_FALSE(swing_asymmetry_of({less}, {40.0}).flagged);
  EXPECT_TRUE(swing_asymmetry_of({60.0}, {40.0}).flagged);
  EXPECT_FALSE(swing_asymmetry_of({40.0}, {less}).flagged);
  EXPECT_TRUE(swing_asymmetry_of({40.0}, {60.0}).flagged);
}

TEST(ExtremeSwingAsymmetry, OfFourHundredEqualStridesRaisesItsFlagWhereTheMeanIsRounded) {
  // 25 adds up exactly. 22.8 does not, and the deviation that this leaves is not 0.0.
  const auto exact = swing_asymmetry_of(sample(400, 62.5), sample(400, 37.5));
  EXPECT_THAT(exact.parameter.std, SameBits(0.0));
  EXPECT_FALSE(exact.flagged);

  const auto rounded = swing_asymmetry_of(sample(400, 61.4), sample(400, 38.6));
  const double index = ((61.4 - 38.6) * 100.0) / (61.4 + 38.6);
  EXPECT_THAT(rounded.parameter.mean, SameBits(sum_of(sample(400, index)) / 400.0));
  EXPECT_NE(rounded.parameter.mean, index);
  EXPECT_GT(rounded.parameter.std, 0.0);
  EXPECT_TRUE(rounded.flagged);
}

// Speeds at the limits

TEST(SpeedAtTheLimit, IsPlausibleIfTheRoundedMeanIs) {
  for (const double limit : {0.31, 1.8}) {
    int flagged = 0;
    for (std::size_t strides = 5; strides <= 60; ++strides) {
      const sample speeds(strides, limit);
      const double mean = sum_of(speeds) / static_cast<double>(strides);
      const bool plausible = mean >= 0.31 && mean <= 1.8;
      ASSERT_EQ(one_foot(foot().speed(speeds)).analyse().quality_flags, plausible ? 0 : 4)
          << strides;
      flagged += plausible ? 0 : 1;
    }
    EXPECT_EQ(flagged, limit == 0.31 ? 20 : 12)
        << "numbers of strides whose mean is off the limit by a last bit";
  }
}

}  // namespace

#include "bits.h"
#include "builders.h"
#include "by_definition.h"
#include "side.h"

#include <algorithm>
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

// The statistics of one sample. Nothing guards against numbers that no stride has: what comes out
// is what the formulas give, in their order of operations.

namespace {

using namespace gait_test;
using gait_test::nan;  // of <cmath> too

constexpr double largest = std::numeric_limits<double>::max();      // 1.8e308
constexpr double tiny = std::numeric_limits<double>::denorm_min();  // 4.9e-324
constexpr double epsilon_of_one = std::numeric_limits<double>::epsilon();

using sample = std::vector<double>;

/// A list of the same values over and over.
sample repeated(std::size_t times, const sample& values) {
  sample all;
  for (std::size_t i = 0; i < times; ++i) {
    all.insert(all.end(), values.begin(), values.end());
  }
  return all;
}

struct sample_and_statistics {
  const char* what;
  sample values;
  double mean, std, median, iqr;
};

class SampleStatistics : public testing::TestWithParam<sample_and_statistics> {};

TEST_P(SampleStatistics, AreThoseOfTheFormulas) {
  const auto& expected = GetParam();
  const gait_statistics_parameter parameter = statistics_of(expected.values);
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.values, SameBitsEach(expected.values));
  EXPECT_EQ(parameter.min, *std::min_element(expected.values.begin(), expected.values.end()));
  EXPECT_EQ(parameter.max, *std::max_element(expected.values.begin(), expected.values.end()));
  EXPECT_THAT(parameter.mean, SameBits(expected.mean));
  EXPECT_THAT(parameter.std, SameBits(expected.std));
  EXPECT_THAT(parameter.median, SameBits(expected.median));
  EXPECT_THAT(parameter.iqr, SameBits(expected.iqr));
}

INSTANTIATE_TEST_SUITE_P(
    Samples, SampleStatistics,
    testing::ValuesIn(std::vector<sample_and_statistics>{
        // what it shows, the sample; mean, deviation, median, interquartile range
        {"OneValue", {1.375}, 1.375, 0.0, 1.375, 0.0},
        {"OneToFour", {1.0, 2.0, 3.0, 4.0}, 2.5, 1.2909944487358056, 2.5, 2.0},
        {"OneToTen", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 5.5, 3.0276503540974917, 5.5, 5.0},
        // In any other order of the sum some of the large values swallow a small one.
        {"SampleOrder", {1e16, 1.0, -1e16, 1.0}, 0.25, std::sqrt(2e32 / 3.0), 1.0, 1e16},
        // A sum of squares without the mean taken off would lose all of the spread.
        {"FarFromZero", {1e9 + 1.0, 1e9 + 2.0, 1e9 + 3.0}, 1e9 + 2.0, 1.0, 1e9 + 2.0, 1.5},
        {"SumOverflows", {1e308, 1e308}, infinity, infinity, infinity, 0.0},
        {"SumCancelsOut", {1e308, -1e308, 1e308, -1e308}, 0.0, infinity, 0.0, infinity},
        {"SumCancelsTooLate", {1e308, 1e308, -1e308, -1e308}, infinity, infinity, 0.0, infinity},
        {"SquaresOverflow", {1e160, 3e160}, 2e160, infinity, 2e160, 3e160 - 1e160},
        {"SquaresJustFit", {-9e153, 9e153}, 0.0, 0x1.e60992feac3efp+511, 0.0, 18e153},
        {"DifferenceOverflows", {-largest, largest}, 0.0, infinity, 0.0, infinity},
        // Between -1e308 and 1e308 the lower quartile is infinite, and the upper one 1e308.
        {"QuartileOverflows", {-1e308, 1e308, 1e308}, 1e308 / 3.0, infinity, 1e308, -infinity},
        {"SmallestNumbers", {tiny, 3.0 * tiny}, 2.0 * tiny, 0.0, 2.0 * tiny, 2.0 * tiny},
        {"SmallestHalf", {tiny, 2.0 * tiny}, 2.0 * tiny, 0.0, 2.0 * tiny, tiny},
        {"Neighbours", {1.0, 1.0 + epsilon_of_one}, 1.0, epsilon_of_one, 1.0, epsilon_of_one},
        // The mean is rounded, and the deviation is what that leaves.
        {"EqualNumbers", sample(400, 0.1), 0x1.99999999999cfp-4, 0x1.a887ef57a60ccp-51, 0.1, 0.0},
        {"EqualLargeNumbers", sample(400, 1e300), 0x1.7e43c880075cdp+996, infinity, 1e300, 0.0},
        {"Infinity", {1.0, infinity, 2.0, 3.0, 4.0}, infinity, nan, 3.0, infinity},
        {"InfinityTwice", {1.0, 2.0, infinity, infinity}, infinity, nan, infinity, nan},
        {"BothInfinities", {-infinity, infinity}, nan, nan, nan, infinity},
        // The sum starts from 0.0.
        {"NegativeZeros", {-0.0, -0.0, -0.0}, 0.0, 0.0, -0.0, 0.0}}),
    [](const auto& tested) { return std::string(tested.param.what); });

TEST(CoefficientOfVariation, OfExtremeNumbersHasTheSignOfTheMeanAndNeedsOneAboveEpsilon) {
  const auto cv = [](const sample& values) { return statistics_of(repeated(5, values)).cv; };
  EXPECT_THAT(cv({1e160, 3e160}), SameBits(infinity));
  EXPECT_THAT(cv({-1e160, -3e160}), SameBits(-infinity));
  EXPECT_THAT(cv({1e308, 1e308}), SameBits(nan)) << "infinity by infinity";
  EXPECT_THAT(cv({1.0, infinity}), SameBits(nan)) << "the infinite mean is above the threshold";
  EXPECT_THAT(cv({1e-100, 3e-100}), SameBits(-1.0));
  EXPECT_THAT(cv({1.0, nan}), SameBits(-1.0));
}

double sum_of(const sample& values) {
  double sum = 0.0;
  for (const double value : values) {
    sum += value;
  }
  return sum;
}

double deviation_of(const sample& values, double mean) {
  sample squares;
  for (const double value : values) {
    squares.push_back((value - mean) * (value - mean));
  }
  return values.size() < 2
             ? 0.0
             : std::sqrt(sum_of(squares) / (static_cast<double>(values.size()) - 1.0));
}

/// A number like a stride's duration, of any magnitude up to infinity, of the largest, or of the
/// smallest.
double random_number(std::mt19937_64& random, int kind) {
  if (kind == 0) {
    return std::normal_distribution<double>(1.1, 0.2)(random);
  }
  const std::uint64_t sign = (random() & 1U) << 63U;
  const std::uint64_t any = random() & 0x7FFF'FFFF'FFFF'FFFFU;
  const std::uint64_t infinite = 0x7FF0'0000'0000'0000U;
  const std::uint64_t pattern = sign | (kind == 1   ? any % (infinite + 1)
                                        : kind == 2 ? infinite - any % (std::uint64_t{1} << 56U)
                                                    : any % (std::uint64_t{1} << 53U));
  double number = 0.0;
  std::memcpy(&number, &pattern, sizeof number);
  return number;
}

TEST(SampleStatistics, HaveTheBitsOfPlainLoopsInSampleOrder) {
  std::mt19937_64 random(341);
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    sample values(1 + random() % 40);
    for (double& value : values) {
      value = random_number(random, round % 4);
    }
    SCOPED_TRACE("round " + std::to_string(round));
    const gait_statistics_parameter parameter = statistics_of(values);
    const sample quartiles = by_definition::percentile(values, {25.0, 75.0});
    EXPECT_THAT(parameter.mean, SameBits(sum_of(values) / static_cast<double>(values.size())));
    EXPECT_THAT(parameter.std, SameBits(deviation_of(values, parameter.mean)));
    EXPECT_THAT(parameter.median, SameBits(by_definition::percentile(values, {50.0})[0]));
    EXPECT_THAT(parameter.iqr, SameBits(quartiles[1] - quartiles[0]));
  }
}

}  // namespace

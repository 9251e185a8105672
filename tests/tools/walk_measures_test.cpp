// The measures of plain values: worked examples, and when each is left out.

#include "mean_precision.h"
#include "quantiles.h"
#include "symmetry.h"

#include <gait/statistics.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using gait_measures::direction_in_words;
using gait_measures::precision_of_mean;
using gait_measures::quantiles_of;
using gait_measures::swing_asymmetry_in_percent;
using gait_measures::symmetry_index;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::Optional;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// 1, 2, ..., count.
std::vector<double> whole_numbers(std::size_t count) {
  std::vector<double> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 1.0);
  return numbers;
}

/// first, first + step, ...
std::vector<int> positions_from(int first, std::size_t count, int step = 1) {
  std::vector<int> positions;
  positions.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    positions.push_back(first + static_cast<int>(i) * step);
  }
  return positions;
}

/// Ten strides of 0 and ten of 1. Their squared deviations add up to 5, and the products at a lag
/// of k strides to (20 - 3 k) / 4.
std::vector<double> slower_then_faster() {
  std::vector<double> values(20, 0.0);
  std::fill(values.begin() + 10, values.end(), 1.0);
  return values;
}

// ---- Quantiles

TEST(Quantiles, InterpolateBetweenValuesHalfAPlaceIn) {
  const auto quantiles = quantiles_of(whole_numbers(20));
  EXPECT_EQ(quantiles.p5, 1.5);
  EXPECT_EQ(quantiles.q1, 5.5);
  EXPECT_EQ(quantiles.q3, 15.5);
  EXPECT_EQ(quantiles.p95, 19.5);
}

TEST(Quantiles, LeaveMissingValuesOut) {
  std::vector<double> values = whole_numbers(20);
  values.insert(values.begin() + 7, 5, gait_missing);
  EXPECT_EQ(quantiles_of(values).q1, 5.5);
  EXPECT_EQ(quantiles_of({gait_missing, gait_missing}).q1, std::nullopt);
}

TEST(Quantiles, HaveOuterPercentilesFromTwentyMeasuredValuesOn) {
  std::vector<double> values = whole_numbers(19);
  values.push_back(gait_missing);
  EXPECT_NE(quantiles_of(values).q1, std::nullopt);
  EXPECT_EQ(quantiles_of(values).p5, std::nullopt);
  EXPECT_EQ(quantiles_of(values).p95, std::nullopt);
}

TEST(Quantiles, OfOneValueAreThatValue) {
  EXPECT_EQ(quantiles_of({3.25}).q1, 3.25);
  EXPECT_EQ(quantiles_of({3.25}).q3, 3.25);
}

TEST(Quantiles, AreNotGivenBesideAValueThatIsNotFinite) {
  for (const double value : {infinity, -infinity, nan}) {
    EXPECT_EQ(quantiles_of({1.0, value, 2.0, 3.0, 4.0}).q1, std::nullopt);
  }
}

// ---- Symmetry index

TEST(SymmetryIndex, HasTheValuesOfAWorkedTable) {
  const std::vector<std::pair<double, double>> table = {
      {1.05, 4.88}, {1.10, 9.52}, {1.20, 18.18}, {1.50, 40.00}, {2.00, 66.67}, {0.50, -66.67}};
  for (const auto& [ratio, index] : table) {
    EXPECT_NEAR(*symmetry_index(ratio, 1.0), index, 0.005) << ratio;
    EXPECT_NEAR(*symmetry_index(ratio * 0.4, 0.4), index, 0.005) << ratio;
  }
}

TEST(SymmetryIndex, OfNegativeMeansIsAboveZeroWhereTheRightIsFurtherFromZero) {
  EXPECT_THAT(symmetry_index(-60.0, -40.0), Optional(DoubleEq(40.0)));
}

TEST(SymmetryIndex, NeedsTwoMeansOfOneSign) {
  EXPECT_EQ(symmetry_index(1.0, 1.0), 0.0);
  for (const auto& [right, left] : std::vector<std::pair<double, double>>{{1.0, -2.0},
                                                                          {-1.0, 2.0},
                                                                          {0.0, 1.0},
                                                                          {1.0, 0.0},
                                                                          {0.0, -1.0},
                                                                          {-1.0, 0.0},
                                                                          {0.0, 0.0}}) {
    EXPECT_EQ(symmetry_index(right, left), std::nullopt) << right << " " << left;
  }
}

TEST(SymmetryIndex, NeedsFiniteMeans) {
  for (const double mean : {infinity, nan}) {
    EXPECT_EQ(symmetry_index(mean, 1.0), std::nullopt);
    EXPECT_EQ(symmetry_index(1.0, mean), std::nullopt);
    EXPECT_EQ(symmetry_index(mean, mean), std::nullopt);
  }
}

// ---- Swing asymmetry

TEST(SwingAsymmetryInPercent, IsLeftAgainstRightOfEachStride) {
  const auto asymmetry = swing_asymmetry_in_percent({40.0, 30.0}, {60.0, 20.0});
  EXPECT_THAT(asymmetry.values, ElementsAre(20.0, -20.0));
  EXPECT_EQ(asymmetry.n, 2U);
  EXPECT_EQ(asymmetry.mean, 0.0);
  EXPECT_THAT(asymmetry.sd, Optional(DoubleEq(std::sqrt(800.0))));
}

TEST(SwingAsymmetryInPercent, KeepsThePlaceOfAStrideThatLacksASwing) {
  const auto asymmetry =
      swing_asymmetry_in_percent({gait_missing, 40.0, 0.0, 40.0, nan, 40.0, infinity, 20.0},
                                 {38.0, gait_missing, 38.0, 0.0, 38.0, nan, 38.0, 30.0});
  std::vector<std::optional<double>> expected(8);
  expected.back() = 20.0;
  EXPECT_EQ(asymmetry.values, expected);
  EXPECT_EQ(asymmetry.n, 1U);
  EXPECT_EQ(asymmetry.mean, 20.0);
  EXPECT_EQ(asymmetry.sd, std::nullopt);
}

TEST(SwingAsymmetryInPercent, OfNoStrideHasNoMean) {
  EXPECT_EQ(swing_asymmetry_in_percent({gait_missing}, {38.0}).mean, std::nullopt);
  EXPECT_TRUE(swing_asymmetry_in_percent({}, {}).values.empty());
}

TEST(SwingAsymmetryInPercent, EndsWithTheShorterSide) {
  EXPECT_EQ(swing_asymmetry_in_percent({40.0}, {40.0, 40.0}).values.size(), 1U);
  EXPECT_EQ(swing_asymmetry_in_percent({40.0, 40.0}, {40.0}).values.size(), 1U);
}

TEST(SwingAsymmetry, SaysItsDirectionInWords) {
  EXPECT_EQ(direction_in_words(0.5), "left swing longer");
  EXPECT_EQ(direction_in_words(-0.5), "right swing longer");
  EXPECT_EQ(direction_in_words(0.0), "both swings equally long");
  EXPECT_EQ(direction_in_words(nan), "");
}

// ---- Effective number of strides, standard error

TEST(EffectiveStrides, EndTheirSumBeforeThePairOfLagsThatIsNotPositive) {
  const auto precision = precision_of_mean(slower_then_faster(), positions_from(0, 20));
  // 1 + 0.85, 0.7 + 0.55, 0.4 + 0.25, 0.1 - 0.05; then -0.2 - 0.35.
  const double autocorrelation_time = 2.0 * 3.8 - 1.0;
  EXPECT_DOUBLE_EQ(precision->effective_strides, 20.0 / autocorrelation_time);
  EXPECT_DOUBLE_EQ(precision->standard_error,
                   std::sqrt(5.0 / 19.0) / std::sqrt(20.0 / autocorrelation_time));
}

TEST(EffectiveStrides, CountOnlyPairsThatAreThatManyStridesApart) {
  std::vector<int> positions = positions_from(7, 10);
  const std::vector<int> after_a_gap = positions_from(22, 10);
  positions.insert(positions.end(), after_a_gap.begin(), after_a_gap.end());
  // 1 + 0.9, 0.8 + 0.7, 0.6 + 0.5, 0.35 + 0.2; then 0.05 - 0.1.
  EXPECT_DOUBLE_EQ(precision_of_mean(slower_then_faster(), positions)->effective_strides,
                   20.0 / (2.0 * 5.05 - 1.0));
}

TEST(EffectiveStrides, TakeAMissingValueForAGap) {
  std::vector<double> values = slower_then_faster();
  values.insert(values.begin() + 10, 5, gait_missing);
  std::vector<int> positions = positions_from(7, 25);
  EXPECT_DOUBLE_EQ(precision_of_mean(values, positions)->effective_strides,
                   20.0 / (2.0 * 5.05 - 1.0));
  // Where a missing stride would stand does not matter.
  positions[12] = -1;
  EXPECT_DOUBLE_EQ(precision_of_mean(values, positions)->effective_strides,
                   20.0 / (2.0 * 5.05 - 1.0));
}

TEST(EffectiveStrides, PassOverLagsAtWhichNoTwoStridesWereMeasured) {
  // At lags of 3, 6, ... strides: 0.85, 0.7, 0.55, 0.4, 0.25, 0.1; then -0.05.
  EXPECT_DOUBLE_EQ(
      precision_of_mean(slower_then_faster(), positions_from(0, 20, 3))->effective_strides,
      20.0 / (2.0 * 3.85 - 1.0));
}

TEST(EffectiveStrides, AreNeverMoreThanTheStrides) {
  std::vector<double> alternating = whole_numbers(21);
  for (std::size_t i = 0; i < alternating.size(); ++i) {
    alternating[i] = i % 2 == 0 ? 1.0 : 2.0;
  }
  const auto precision = precision_of_mean(alternating, positions_from(0, 21));
  EXPECT_EQ(precision->effective_strides, 21.0);
  EXPECT_DOUBLE_EQ(precision->standard_error, std::sqrt(110.0 / 21.0 / 20.0 / 21.0));
}

TEST(EffectiveStrides, AreGivenFromTwentyMeasuredStridesOn) {
  std::vector<double> values = whole_numbers(20);
  EXPECT_NE(precision_of_mean(values, positions_from(0, 20)), std::nullopt);
  values[4] = gait_missing;
  EXPECT_EQ(precision_of_mean(values, positions_from(0, 20)), std::nullopt);
  EXPECT_EQ(precision_of_mean(std::vector<double>(40, gait_missing), positions_from(0, 40)),
            std::nullopt);
}

TEST(EffectiveStrides, NeedValuesThatDiffer) {
  // The rounded mean of these differs from them.
  EXPECT_EQ(precision_of_mean(std::vector<double>(30, 0.1), positions_from(0, 30)), std::nullopt);
}

TEST(EffectiveStrides, NeedFiniteValues) {
  for (const double value : {infinity, nan}) {
    std::vector<double> values = whole_numbers(30);
    values[9] = value;
    EXPECT_EQ(precision_of_mean(values, positions_from(0, 30)), std::nullopt);
  }
}

TEST(EffectiveStrides, NeedSquaresThatADoubleHolds) {
  for (const double scale : {1e-200, 1e200}) {
    std::vector<double> values = whole_numbers(30);
    for (double& value : values) {
      value *= scale;
    }
    EXPECT_EQ(precision_of_mean(values, positions_from(0, 30)), std::nullopt);
  }
}

TEST(EffectiveStrides, NeedStridesInTimeOrderEachOnce) {
  const std::vector<double> values = whole_numbers(30);
  std::vector<int> positions = positions_from(0, 30);
  positions[8] = positions[7];
  EXPECT_EQ(precision_of_mean(values, positions), std::nullopt);
  std::swap(positions[20], positions[21]);
  positions[8] = 8;
  EXPECT_EQ(precision_of_mean(values, positions), std::nullopt);
}

TEST(EffectiveStrides, RefusePositionsThatAreNotThoseOfTheValues) {
  EXPECT_THROW(precision_of_mean(whole_numbers(30), positions_from(0, 29)), std::invalid_argument);
}

}  // namespace

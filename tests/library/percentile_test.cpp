#include <gait/eigen.h>

#include "bits.h"
#include "by_definition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <random>
#include <tuple>
#include <vector>

namespace {

using Eigen::Array2d;
using Eigen::ArrayXd;
using Eigen::VectorXd;
using gait_test::infinity;
using gait_test::nan;
using gait_test::SameBitsEach;

using one_percentage = Eigen::Array<double, 1, 1>;
VectorXd vector_of(const std::vector<double>& values) {
  return Eigen::Map<const VectorXd>(values.data(), static_cast<Eigen::Index>(values.size()));
}

double median(const VectorXd& values) {
  return values.percentile(one_percentage::Constant(50.0))[0];
}
double at(double percentage, const VectorXd& values) {
  return values.percentile(one_percentage::Constant(percentage))[0];
}
Array2d at(double first, double second, const VectorXd& values) {
  return values.percentile(Array2d(first, second));
}
/// The percentage `places` doubles above `percentage`, or below it.
double neighbour(double percentage, int places) {
  for (; places > 0; --places) {
    percentage = std::nextafter(percentage, 1000.0);
  }
  for (; places < 0; ++places) {
    percentage = std::nextafter(percentage, -1000.0);
  }
  return percentage;
}

template <class Values>
std::vector<double> list_of(const Eigen::DenseBase<Values>& values) {
  return {values.begin(), values.end()};
}

/// Two percentiles, to the bit.
MATCHER_P2(AreBits, first, second,
           "are " + gait_test::exact(first) + " and " + gait_test::exact(second)) {
  *result_listener << "which are " << gait_test::exact(arg[0]) << " and "
                   << gait_test::exact(arg[1]);
  return gait_test::same_bits(arg[0], first) && gait_test::same_bits(arg[1], second);
}

TEST(Percentile, IsThatOfTheHazenDefinition) {
  struct sample {
    std::vector<double> values;
    double median, first_quartile, third_quartile;
  };
  const std::vector<sample> samples = {{{7.25}, 7.25, 7.25, 7.25},
                                       {{1.0, 3.0}, 2.0, 1.0, 3.0},
                                       {{1.0, 2.0, 3.0, 4.0}, 2.5, 1.5, 3.5},
                                       {{5.0, 1.0, 4.0, 2.0, 3.0}, 3.0, 1.75, 4.25},
                                       {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 5.5, 3.0, 8.0}};
  for (const auto& [values, expected_median, q1, q3] : samples) {
    EXPECT_EQ(median(vector_of(values)), expected_median);
    EXPECT_THAT(at(50.0, 50.0, vector_of(values)), AreBits(expected_median, expected_median));
    EXPECT_THAT(at(25.0, 75.0, vector_of(values)), AreBits(q1, q3));
    EXPECT_THAT(at(75.0, 25.0, vector_of(values)), AreBits(q3, q1));
  }
}

TEST(Percentile, OfOneValueDoesNotLookAtTheRequest) {
  EXPECT_THAT(at(nan, -50.0, vector_of({-0.0})), AreBits(-0.0, -0.0));
}

TEST(Percentile, DoesNotChangeTheReceiver) {
  const std::vector<double> before = {5.0, -0.0, 4.0, 0.0, 3.0};
  const VectorXd receiver = vector_of(before);
  std::ignore = at(25.0, 75.0, receiver);
  EXPECT_THAT(list_of(receiver), SameBitsEach(before));
}

TEST(Percentile, ClampsToTheOuterValuesOutsideLoAndHi) {
  const VectorXd four = vector_of({1.0, 2.0, 3.0, 4.0});  // lo = 12.5, hi = 87.5
  EXPECT_THAT(at(12.5, 87.5, four), AreBits(1.0, 4.0));
  EXPECT_THAT(at(3.0, 12.5, four), AreBits(1.0, 1.0));
  EXPECT_THAT(at(87.5, 99.0, four), AreBits(4.0, 4.0));
  EXPECT_GT(at(12.6, four), 1.0);
  EXPECT_LT(at(87.4, four), 4.0);
  EXPECT_THAT(at(-1.0, 101.0, four), AreBits(1.0, 4.0));
  EXPECT_THAT(at(infinity, -1e300, four), AreBits(4.0, 1.0));
  EXPECT_THAT(at(-infinity, infinity, four), AreBits(1.0, 4.0));
}

TEST(Percentile, DoesNotInterpolateWithinATrillionthOfAPosition) {
  // Position 1 of four lies at 37.5 percent. Its neighbour above is infinite, so any interpolation
  // shows.
  const VectorXd values = vector_of({1.0, 2.0, infinity, infinity});
  EXPECT_EQ(at(37.5, values), 2.0);
  EXPECT_EQ(at(37.5 + 2e-11, values), 2.0);
  EXPECT_EQ(at(37.5 + 3e-11, values), infinity);
}

TEST(Percentile, ReadsNothingAfterTheLargestValue) {
  // The last percentage below hi, for sizes at which the position is rounded most.
  for (const int n : {2, 3, 7, 1000, 8191, 8192, 100001}) {
    const VectorXd values = VectorXd::LinSpaced(n, 1.0, 2.0);
    const double hi = ((0.5 + n) + (-1.0)) * 100.0 / n;
    for (int places = -3; places <= 1; ++places) {
      ASSERT_LE(at(neighbour(hi, places), values), 2.0) << n;
      ASSERT_GE(at(neighbour(hi, places), values), 2.0 - 1e-9) << n;
    }
  }
}

// Two values so far apart that the slightest interpolation between them shows. Their median is 0.
const std::vector<double> far_apart = {-1e6, 1e6};

TEST(PercentileTolerance, OfAWholeRequestAroundFiftyIsRelative) {
  const VectorXd values = vector_of(far_apart);
  constexpr int within = 7036;  // doubles next to 50 within 50 * 1e-12
  EXPECT_EQ(at(neighbour(50.0, within), values), 0.0);
  EXPECT_EQ(at(neighbour(50.0, -within), values), 0.0);
  EXPECT_GT(at(neighbour(50.0, within + 1), values), 0.0);
  EXPECT_LT(at(neighbour(50.0, -within - 1), values), 0.0);
}

TEST(PercentileTolerance, OfASinglePercentageAroundFiftyIsAbsolute) {
  const VectorXd values = vector_of(far_apart);
  constexpr int within = 140;  // doubles next to 50 within 1e-12
  const auto beside_the_minimum = [&](int places) {
    return at(neighbour(50.0, places), 0.0, values)[0];
  };
  EXPECT_EQ(beside_the_minimum(within), 0.0);
  EXPECT_EQ(beside_the_minimum(-within), 0.0);
  EXPECT_GT(beside_the_minimum(within + 1), 0.0);
  EXPECT_LT(beside_the_minimum(-within - 1), 0.0);
}

TEST(PercentileTolerance, AroundFiftyDependsDeliberatelyOnTheCompanyOfAPercentage) {
  const VectorXd values = vector_of(far_apart);
  const double near_fifty = 50.0 + 2e-11;
  EXPECT_EQ(at(near_fifty, 50.0, values)[0], 0.0);
  EXPECT_GT(at(near_fifty, 75.0, values)[0], 0.0);
}

TEST(PercentileReceiver, MayBeAnyExpressionThatIsAVector) {
  const VectorXd five = vector_of({5.0, 1.0, 4.0, 2.0, 3.0});
  const VectorXd padded = vector_of({90.0, 5.0, 1.0, 4.0, 2.0, 3.0, 99.0});
  const Eigen::MatrixXd as_column = five.replicate(1, 3);
  const std::vector<double> strided = {5.0, 0.0, 1.0, 0.0, 4.0, 0.0, 2.0, 0.0, 3.0, 0.0};
  const Array2d request(25.0, 75.0);
  const auto are_the_quartiles = AreBits(1.75, 4.25);

  EXPECT_THAT(five.percentile(request), are_the_quartiles);
  EXPECT_THAT(five.array().percentile(request), are_the_quartiles);
  EXPECT_THAT(ArrayXd(five).percentile(request), are_the_quartiles);
  EXPECT_THAT(five.transpose().percentile(request), are_the_quartiles);
  EXPECT_THAT(Eigen::RowVectorXd(five.transpose()).percentile(request), are_the_quartiles);
  EXPECT_THAT((Eigen::Matrix<double, 5, 1>(five)).percentile(request), are_the_quartiles);
  EXPECT_THAT(padded.segment(1, 5).percentile(request), are_the_quartiles);
  EXPECT_THAT(as_column.col(1).percentile(request), are_the_quartiles);
  EXPECT_THAT(as_column.transpose().row(2).percentile(request), are_the_quartiles);
  EXPECT_THAT((five * 2.0 - five).percentile(request), are_the_quartiles);
  EXPECT_THAT(five.reverse().percentile(request), are_the_quartiles);
  EXPECT_THAT(
      (Eigen::Map<const VectorXd, 0, Eigen::InnerStride<2>>(strided.data(), 5).percentile(request)),
      are_the_quartiles);
}

TEST(PercentileReceiver, MayBeAProduct) {
  const VectorXd five = vector_of({5.0, 1.0, 4.0, 2.0, 3.0});
  const Array2d request(25.0, 75.0);
  const Eigen::MatrixXd identity = Eigen::MatrixXd::Identity(5, 5);
  EXPECT_THAT((identity * five).percentile(request), AreBits(1.75, 4.25));
  EXPECT_THAT((identity * five + five).percentile(request), AreBits(3.5, 8.5));
  EXPECT_THAT(((identity + identity) * five).percentile(request), AreBits(3.5, 8.5));
  EXPECT_THAT((Eigen::MatrixXd::Identity(5, 5) * five).percentile(request), AreBits(1.75, 4.25));
  EXPECT_THAT((identity.triangularView<Eigen::Upper>() * five).percentile(request),
              AreBits(1.75, 4.25));
  EXPECT_THAT((five.transpose() * identity).percentile(request), AreBits(1.75, 4.25));
  EXPECT_THAT((Eigen::RowVector2d(2.0, 3.0) * Eigen::Vector2d(4.0, 5.0)).percentile(request),
              AreBits(23.0, 23.0));
}

TEST(PercentileReceiver, OfFloatsGivesFloats) {
  const Eigen::VectorXf four = Eigen::Vector4f(4.0F, 1.0F, 3.0F, 2.0F);
  const Eigen::Array2f result = four.percentile(Array2d(25.0, 50.0));
  EXPECT_EQ(result[0], 1.5F);
  EXPECT_EQ(result[1], 2.5F);
  EXPECT_EQ(four.percentile(Eigen::Array2f(75.0F, 100.0F))[0], 3.5F);
}

TEST(PercentileReceiver, TooLargeToCopyThrowsBadAlloc) {
  const auto endless = ArrayXd::Constant(std::numeric_limits<Eigen::Index>::max() / 2, 1.0);
  EXPECT_THROW(std::ignore = endless.percentile(Array2d(25.0, 75.0)), std::bad_alloc);
}

TEST(PercentileRequest, MayHaveAnyLengthAndShape) {
  const VectorXd four = vector_of({4.0, 2.0, 3.0, 1.0});
  const ArrayXd dynamic = four.percentile(vector_of({0.0, 25.0, 50.0, 75.0, 100.0}).array());
  EXPECT_THAT(list_of(dynamic), SameBitsEach({1.0, 1.5, 2.5, 3.5, 4.0}));

  const Eigen::Array<double, 1, 3> row = four.percentile(Eigen::RowVector3d(75.0, 50.0, 25.0));
  EXPECT_THAT(list_of(row), SameBitsEach({3.5, 2.5, 1.5}));

  EXPECT_EQ(four.percentile(ArrayXd()).size(), 0);
  EXPECT_EQ(vector_of({7.0}).percentile(ArrayXd()).size(), 0);
}

TEST(PercentileRequest, MayBeAnExpression) {
  const VectorXd four = vector_of({4.0, 2.0, 3.0, 1.0});
  EXPECT_THAT(four.percentile(Array2d(0.25, 0.75) * 100.0), AreBits(1.5, 3.5));
  EXPECT_THAT(four.percentile(Eigen::Vector2i(25, 75)), AreBits(1.5, 3.5));
  EXPECT_EQ(four.percentile(one_percentage::Constant(25.0))[0], 1.5);
  EXPECT_EQ(four.percentile(one_percentage(25.0))[0], 1.5);
}

TEST(Percentile, WithNaNsInTheSampleReturnsAllTheSame) {
  for (std::size_t size = 1; size < 30; ++size) {
    for (std::size_t position = 0; position < size; ++position) {
      std::vector<double> values(size, 1.0);
      values[position] = nan;
      ASSERT_EQ(at(25.0, 75.0, vector_of(values)).size(), 2);
    }
  }
}

/// A sample with many equal values, and signed zeros among them.
std::vector<double> random_sample(std::mt19937_64& random) {
  static const std::vector<double> common = {0.0, -0.0, 1.0, -1.0, 0.1, 2.5};
  std::normal_distribution<double> spread(0.0, 1.0);
  const auto size = 1 + random() % 45;
  const bool few_values = random() % 2 == 0;
  std::vector<double> values;
  while (values.size() < size) {
    values.push_back(few_values || random() % 3 == 0 ? common[random() % common.size()]
                                                     : spread(random));
  }
  return values;
}

/// A percentage, often one at which a rule begins or ends for a sample of n.
double random_percentage(std::mt19937_64& random, std::size_t size) {
  const auto n = static_cast<double>(size);
  const double hi = ((0.5 + n) + (-1.0)) * 100.0 / n;
  const int doubles = static_cast<int>(random() % 400) - 200;
  const std::vector<double> choice = {
      25.0,
      75.0,
      50.0,
      neighbour(50.0, doubles),
      50.0 + doubles * 0.5e-12,
      neighbour(50.0 / n, doubles % 2),
      neighbour(hi, doubles % 2),
      neighbour(100.0 * (static_cast<double>(random() % size) + 0.5) / n, doubles % 4),
      std::uniform_real_distribution<double>(-10.0, 110.0)(random)};
  return choice[random() % choice.size()];
}

TEST(Percentile, HasTheBitsOfItsDefinitionOnRandomSamplesAndRequests) {
  std::mt19937_64 random(301);
  for (int round = 0; round < 20000; ++round) {
    const std::vector<double> sample = random_sample(random);
    std::vector<double> request(1 + random() % 4);
    for (double& percentage : request) {
      percentage = random_percentage(random, sample.size());
    }
    const ArrayXd result = vector_of(sample).percentile(vector_of(request));
    ASSERT_THAT(list_of(result), SameBitsEach(by_definition::percentile(sample, request)))
        << "round " << round;
  }
}

}  // namespace

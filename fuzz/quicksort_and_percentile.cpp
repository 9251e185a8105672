/// \file
/// The sort against that of the standard library, and percentiles against their definition, on any
/// doubles.

#include <gait/eigen.h>

#include "bits.h"
#include "by_steps.h"
#include "check.h"
#include "input.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <vector>

namespace {

using fuzz::check;
using gait_test::same_bits;
using index_type = std::ptrdiff_t;
using numbers = std::vector<double>;

bool has_nan(const numbers& values) {
  return std::any_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
}

std::vector<std::uint64_t> sorted_bits(const numbers& values) {
  std::vector<std::uint64_t> patterns;
  std::transform(values.begin(), values.end(), std::back_inserter(patterns), gait_test::bits);
  std::sort(patterns.begin(), patterns.end());
  return patterns;
}

bool same_bits_each(const numbers& a, const numbers& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same_bits);
}

/// Values in memory that ends where they do, so that the address sanitizer sees a step beside them.
void check_whole_sort(const numbers& values) {
  numbers sorted = values;
  _kalvio_eigen_quicksort(sorted.data(), index_type{0}, static_cast<index_type>(sorted.size()) - 1);
  check(sorted_bits(sorted) == sorted_bits(values),
        "the sort moves values, and changes no bit of any");
  if (has_nan(values)) {
    return;
  }
  numbers expected = values;
  std::sort(expected.begin(), expected.end());
  check(sorted == expected, "the sort orders as that of the standard library does");

  numbers by_steps = values;
  by_steps::quicksort(by_steps, 0, static_cast<index_type>(by_steps.size()) - 1);
  check(same_bits_each(sorted, by_steps), "the steps of the sort fix the order of zeros");
}

void check_partial_sort(const numbers& values, index_type left, index_type right) {
  numbers sorted = values;
  _kalvio_eigen_quicksort(sorted.data(), left, right);
  const auto split = [&](const numbers& all) {
    const numbers before(all.begin(), all.begin() + left);
    const numbers range(all.begin() + left, all.begin() + std::max(left, right + 1));
    const numbers after(all.begin() + std::max(left, right + 1), all.end());
    return std::array<numbers, 3>{before, range, after};
  };
  const auto [before, range, after] = split(sorted);
  const auto [before_given, range_given, after_given] = split(values);
  check(same_bits_each(before, before_given) && same_bits_each(after, after_given),
        "the sort leaves alone what is not in range");
  check(sorted_bits(range) == sorted_bits(range_given), "the sort of a range keeps its values");
  check(has_nan(range) || std::is_sorted(range.begin(), range.end()),
        "the sort of a range sorts it");
}

/// A percentage, often one at which a rule begins or ends for a sample of n.
double percentage(fuzz::input& input, double n) {
  const auto beside = [&](double value) {
    for (int steps = static_cast<int>(input.below(16)) - 8; steps != 0;
         steps += steps < 0 ? 1 : -1) {
      value = std::nextafter(value, steps < 0 ? -1e9 : 1e9);
    }
    return value;
  };
  switch (input.below(9)) {
    case 0:
      return 25.0;
    case 1:
      return 75.0;
    case 2:
      return 50.0;
    case 3:
      return beside(50.0);
    case 4:
      return 50.0 + (input.byte() - 128) * 1e-12;
    case 5:
      return beside(50.0 / n);
    case 6:
      return beside(((0.5 + n) + (-1.0)) * 100.0 / n);
    case 7:
      return beside(100.0 * (input.byte() + 0.5) / n);
    default:
      return input.number();
  }
}

/// The definition in its own words: the i-th smallest lies at 100 * (i + 0.5) / n percent, between
/// is a straight line.
double interpolated(const numbers& sorted, double percentage) {
  const auto last = static_cast<double>(sorted.size() - 1);
  const double position = std::min(std::max(percentage / 100.0 * (last + 1.0) - 0.5, 0.0), last);
  const double below = std::floor(position);
  const double share = position - below;
  return (1.0 - share) * sorted.at(static_cast<std::size_t>(below)) +
         share * sorted.at(static_cast<std::size_t>(std::ceil(position)));
}

bool is_computable(const numbers& values) {
  return std::all_of(values.begin(), values.end(),
                     [](double value) { return std::fabs(value) < 1e300; });
}

void check_near_definition(const numbers& values, const numbers& request, const numbers& results) {
  numbers sorted = values;
  std::sort(sorted.begin(), sorted.end());
  const double largest = std::max(std::fabs(sorted.front()), std::fabs(sorted.back()));
  // A request within 1e-12 of 50, as a share, may be taken for the median: 1e-8 is that in a sample
  // of 2000 and more.
  const double tolerance = 1e-8 * largest + std::numeric_limits<double>::denorm_min();
  for (std::size_t i = 0; i < request.size(); ++i) {
    check(std::fabs(results[i] - interpolated(sorted, request[i])) <= tolerance,
          "a percentile is that of its definition");
  }
}

void check_percentiles(const numbers& values, const numbers& request) {
  // What the sample is compared with when all is done.
  const numbers before = values;  // NOLINT(performance-unnecessary-copy-initialization)
  const Eigen::Map<const Eigen::VectorXd> sample(values.data(),
                                                 static_cast<Eigen::Index>(values.size()));
  const Eigen::Map<const Eigen::ArrayXd> asked(request.data(),
                                               static_cast<Eigen::Index>(request.size()));
  const Eigen::ArrayXd array = sample.percentile(asked);
  const numbers results(array.data(), array.data() + array.size());
  check(results.size() == request.size(), "as many percentiles come as are asked for");
  check(std::memcmp(values.data(), before.data(), values.size() * sizeof(double)) == 0,
        "a percentile leaves the sample alone");

  const Eigen::Array2d quartiles = sample.percentile(Eigen::Array2d(25.0, 75.0));
  if (has_nan(values)) {
    return;
  }
  check(same_bits_each({quartiles[0], quartiles[1]}, by_steps::percentile(values, {25.0, 75.0})),
        "the quartiles are those of the steps");
  if (has_nan(request)) {
    return;
  }
  check(same_bits_each(results, by_steps::percentile(values, request)),
        "a percentile is that of its steps, to the bit");
  if (is_computable(values)) {
    check_near_definition(values, request, results);
  }
}

}  // namespace

// The fuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  // Orders made for the purpose sort in quadratic time, with as many calls within one another as
  // there are values.
  constexpr std::size_t most_values = 1000;

  fuzz::input input(bytes, size);
  numbers request(input.below(5));
  const std::size_t left = input.byte();
  const std::size_t length = input.byte();
  fuzz::input percentages = input;
  for (std::size_t i = 0; i < 4 * request.size(); ++i) {
    input.byte();
  }
  numbers values;
  while (!input.is_empty() && values.size() < most_values) {
    values.push_back(input.number());
  }
  values.shrink_to_fit();

  check_whole_sort(values);
  if (values.empty()) {
    return 0;
  }
  const auto first = static_cast<index_type>(left % values.size());
  check_partial_sort(
      values, first,
      std::min(first + static_cast<index_type>(length), static_cast<index_type>(values.size())) -
          1);
  for (double& one : request) {
    one = percentage(percentages, static_cast<double>(values.size()));
  }
  check_percentiles(values, request);
  return 0;
}

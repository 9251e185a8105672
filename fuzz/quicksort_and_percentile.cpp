/// \file
/// The sort and the percentiles on any doubles, NaN among them, in memory that ends where the
/// values do.

#include <gait/eigen.h>

#include "bits.h"
#include "by_definition.h"
#include "check.h"
#include "input.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using fuzz::check;
using index_type = std::ptrdiff_t;
using numbers = std::vector<double>;

bool has_nan(const numbers& values) {
  return std::any_of(values.begin(), values.end(), [](double value) { return std::isnan(value); });
}

std::vector<std::uint64_t> sorted_bits(const numbers& values) {
  std::vector<std::uint64_t> patterns(values.size());
  std::transform(values.begin(), values.end(), patterns.begin(), gait_test::bits);
  std::sort(patterns.begin(), patterns.end());
  return patterns;
}

bool same_bits_each(const numbers& a, const numbers& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), gait_test::same_bits);
}

/// Sorts the elements from `left` to `right`; the rest must stay.
void check_sort(const numbers& values, index_type left, index_type right) {
  numbers sorted = values;
  _kalvio_eigen_quicksort(sorted.data(), left, right);
  check(sorted_bits(sorted) == sorted_bits(values),
        "the sort moves values, and changes no bit of any");
  const auto end = std::max(left, right + 1);
  check(std::equal(values.begin(), values.begin() + left, sorted.begin(), gait_test::same_bits) &&
            std::equal(values.begin() + end, values.end(), sorted.begin() + end,
                       gait_test::same_bits),
        "the sort leaves alone what is not in its range");
  const numbers range(sorted.begin() + left, sorted.begin() + end);
  check(has_nan(range) || std::is_sorted(range.begin(), range.end()), "the sort sorts");
}

void check_percentiles(const numbers& values, const numbers& request) {
  const Eigen::Map<const Eigen::VectorXd> sample(values.data(),
                                                 static_cast<Eigen::Index>(values.size()));
  const Eigen::Map<const Eigen::ArrayXd> asked(request.data(),
                                               static_cast<Eigen::Index>(request.size()));
  const numbers before = values;  // NOLINT(performance-unnecessary-copy-initialization)
  const Eigen::ArrayXd results = sample.percentile(asked);
  check(same_bits_each(values, before), "a percentile leaves the sample alone");
  check(results.size() == asked.size(), "as many percentiles come as are asked for");
  if (!has_nan(values) && !has_nan(request)) {
    check(same_bits_each(numbers(results.begin(), results.end()),
                         by_definition::percentile(values, request)),
          "a percentile is that of its definition, to the bit");
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
  for (double& percentage : request) {
    // Often a quartile, or the median.
    const std::size_t kind = input.below(8);
    percentage = kind < 5 ? 25.0 * static_cast<double>(kind) : input.number();
  }
  numbers values;
  while (!input.is_empty() && values.size() < most_values) {
    values.push_back(input.number());
  }
  values.shrink_to_fit();

  const auto last = static_cast<index_type>(values.size()) - 1;
  check_sort(values, 0, last);
  if (!values.empty()) {
    const auto first = static_cast<index_type>(left % values.size());
    check_sort(values, first, std::min(first + static_cast<index_type>(length) - 1, last));
    check_percentiles(values, request);
  }
  return 0;
}

#ifndef TOOLS_WALK_MEASURES_QUANTILES_H
#define TOOLS_WALK_MEASURES_QUANTILES_H

/// \file
/// Quartiles and outer percentiles of a parameter's values. The library's record holds the median
/// and the interquartile range alone.

#include <cstddef>
#include <optional>
#include <vector>

namespace gait_measures {

/// From so many measured values on, one of them lies beyond the 5th and one beyond the 95th
/// percentile. Of fewer, both say little but the smallest and the largest value; below 11 they are
/// these.
inline constexpr std::size_t fewest_values_for_outer_percentiles = 20;

/// Percentiles of a parameter's values, in its unit.
struct quantiles {
  std::optional<double> q1;   ///< 25th percentile
  std::optional<double> q3;   ///< 75th percentile; q3 - q1 is the record's `iqr`, to the last bit
  std::optional<double> p5;   ///< 5th percentile
  std::optional<double> p95;  ///< 95th percentile
};

/// The percentiles of the values that are not missing, by the library's own definition
/// (DenseBase::percentile: R. J. Hyndman and Y. Fan, "Sample quantiles in statistical packages",
/// The American Statistician 50(4), 1996, 361-365, definition 5).
///
/// \param values  a record's `values`; gait_missing where a stride has none
///
/// Without a measured value there are none, nor with one that is infinite or NaN. `p5` and `p95`
/// need fewest_values_for_outer_percentiles values. Of one value, q1 and q3 are that value; of two,
/// they are both of them. O(n log n) on average.
quantiles quantiles_of(const std::vector<double>& values);

}  // namespace gait_measures

#endif

#ifndef GAIT_BUILD_PARAMETER_H
#define GAIT_BUILD_PARAMETER_H

/// \file
/// The descriptive statistics of one gait parameter of one side: gather, describe, emplace.

#include <gait/eigen.h>

#include <gait/catalogue.h>
#include <gait/cycle_access.h>
#include <gait/sample.h>
#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <list>
#include <numeric>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace gait_detail {

/// The values of one parameter over a cycle index list, and the sample: those of them that are not
/// missing.
struct gathered_values {
  gait_detail::sample sample;
  std::vector<double> values;
};

/// Reads the parameter of every indexed cycle; an index out of range leaves its position missing.
template <class Row, class ResultT>
gathered_values gather(const Row& row, const ResultT& result, const std::list<int>& cycles) {
  const Eigen::Index capacity = sample_capacity(cycles.size());
  gathered_values gathered{sample(capacity),
                           std::vector<double>(static_cast<std::size_t>(capacity), gait_missing)};
  for_each_cycle(result.cycles, cycles, [&](std::size_t position, const auto& cycle) {
    const double value = row.value(cycle);
    gathered.values[position] = value;
    if (!gait_is_missing(value)) {
      gathered.sample.push_back(value);
    }
  });
  gathered.sample.shrink();
  return gathered;
}

/// 100 * deviation / mean (percent), with the signed mean; missing for a short sample, and for a
/// mean too near 0.
///
/// The relative spread of a handful of strides says little, so that fewer than ten values get none.
inline double coefficient_of_variation(Eigen::Index n, double mean, double deviation) {
  constexpr Eigen::Index fewest_values = 10;
  // A NaN mean is not above the threshold either.
  if (n >= fewest_values && std::abs(mean) > std::numeric_limits<double>::epsilon()) {
    return 100.0 * deviation / mean;
  }
  return gait_missing;
}

/// The standard deviation of at least one value about their mean, with divisor n - 1; 0.0 for a
/// single value.
inline double standard_deviation(const sample& sample, double mean) {
  if (sample.size() < 2) {
    return 0.0;
  }
  const double squares =
      std::accumulate(sample.begin(), sample.end(), 0.0,
                      [&](double sum, double x) { return sum + (x - mean) * (x - mean); });
  return std::sqrt(squares / (static_cast<double>(sample.size()) - 1.0));
}

/// Writes the statistics of a sample into a record; an empty sample leaves them missing.
///
/// The sums run in sample order, so that every compiler gives the same bits. Among two or more
/// values, a NaN makes the mean and the deviation NaN, and leaves the median, the interquartile
/// range and the extremes unspecified; a single NaN is its own mean, median and extremes, with a
/// deviation of 0.0.
inline void describe(const sample& sample, gait_catalogue::variation spread,
                     gait_statistics_parameter& record) {
  record.valid = sample.size() != 0;
  if (!record.valid) {
    return;
  }
  const Eigen::Array2d quartiles = sample.vector().percentile(Eigen::Array2d(25.0, 75.0));
  record.iqr = quartiles[1] - quartiles[0];
  record.median = sample.vector().percentile(Eigen::Array<double, 1, 1>::Constant(50.0))[0];
  record.mean =
      std::accumulate(sample.begin(), sample.end(), 0.0) / static_cast<double>(sample.size());
  record.std = standard_deviation(sample, record.mean);
  const auto [min, max] = std::minmax_element(sample.begin(), sample.end());
  record.min = *min;
  record.max = *max;
  if (spread == gait_catalogue::cv) {
    record.cv = coefficient_of_variation(sample.size(), record.mean, record.std);
  }
}

}  // namespace gait_detail

/// Computes the statistics of one parameter over the indexed cycles, and emplaces them in
/// `stats.parameters`.
///
/// The key is the parameter's, followed by `suffix`. If the key is present, the entry that is there
/// stays and the new one is dropped. An empty sample gets an entry too, with `valid` false. See
/// gait_statistics_parameter for what each statistic is, and DenseBase::percentile for the
/// definition of the quartiles and the median.
///
/// \param result  the result that the tag's row reads: one foot, or the two feet together
/// \param cycles  the cycles that count, in the order in which values are reported; an index out of
///                range is skipped, one that occurs twice counts twice
/// \param suffix  "_R", "_L", or empty
///
/// Throws std::bad_alloc or std::length_error when memory runs out; the map is then unchanged. O(n
/// * k) steps to reach k cycles of n, and O(k log k) on average to sort. Calls may run at the same
/// time on different `stats`; `result` and `cycles` are only read.
template <class ResultT, class Tag>
void gait_statistics_build_parameter(gait_statistics& stats, const ResultT& result,
                                     const std::list<int>& cycles, const std::string& suffix,
                                     Tag /*tag*/) {
  constexpr const auto& row = gait_catalogue::row_of<Tag>;
  static_assert(std::is_same_v<ResultT, typename std::decay_t<decltype(row)>::result_type>,
                "this parameter is read from the other result type: see its row in the catalogue");

  gait_detail::gathered_values gathered = gait_detail::gather(row, result, cycles);

  gait_statistics_parameter record;
  record.description = row.description;
  record.unit = row.unit;
  record.decimals = row.decimals;
  record.asymmetry_enabled = row.sides == gait_catalogue::ratio;
  gait_detail::describe(gathered.sample, row.spread, record);
  record.values = std::move(gathered.values);

  stats.parameters.emplace(std::string(row.key).append(suffix), std::move(record));
}

#endif

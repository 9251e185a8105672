#ifndef BENCHMARKS_ACCESS_SUMS_H
#define BENCHMARKS_ACCESS_SUMS_H

/// \file
/// The same sum over indexed cycles, by the library's access function and by one std::next after
/// another. Neither becomes part of the loop that times it: on a short list, which of them did
/// would decide.

#include <gait/cycle_access.h>
#include <gait/result.h>

#include <cstddef>
#include <iterator>
#include <list>

[[gnu::noinline]] inline double sum_with_std_next(const std::list<gait_foot_cycle>& cycles,
                                                  const std::list<int>& indices) {
  double sum = 0.0;
  for (const int index : indices) {
    if (index >= 0 && static_cast<std::size_t>(index) < cycles.size()) {
      const double value = std::next(cycles.begin(), index)->gct;
      if (!gait_is_missing(value)) {
        sum += value;
      }
    }
  }
  return sum;
}

[[gnu::noinline]] inline double sum_with_library(const std::list<gait_foot_cycle>& cycles,
                                                 const std::list<int>& indices) {
  return gait_detail::index_sum(cycles, indices, &gait_foot_cycle::gct);
}

#endif

#ifndef GAIT_TESTS_LIBRARY_SIDE_H
#define GAIT_TESTS_LIBRARY_SIDE_H

/// \file
/// The parameters of one side, built without a whole walk around them.

#include <gait/build_parameter.h>

#include "builders.h"

#include <cstddef>
#include <list>
#include <numeric>
#include <string>
#include <vector>

namespace gait_test {

/// 0 to count - 1: every cycle counts.
inline std::list<int> first_cycles(std::size_t count) {
  std::list<int> cycles(count);
  std::iota(cycles.begin(), cycles.end(), 0);
  return cycles;
}

/// The two-feet result with these values of double support.
inline gait_feet_result feet_with_ds(const std::vector<double>& values) {
  gait_feet_result feet;
  fill(feet.cycles, &gait_feet_cycle::ds, values);
  return feet;
}

/// The one parameter of a tag over the indexed cycles.
template <class Tag, class ResultT>
gait_statistics_parameter built(const ResultT& result, const std::list<int>& cycles) {
  gait_statistics statistics;
  gait_statistics_build_parameter<ResultT, Tag>(statistics, result, cycles, "", Tag{});
  return statistics.parameters.begin()->second;
}

template <class Tag>
gait_statistics_parameter built(const foot& side, const std::list<int>& cycles) {
  return built<Tag>(side.result(), cycles);
}

/// The same over all cycles.
template <class Tag>
gait_statistics_parameter built(const foot& side) {
  return built<Tag>(side, first_cycles(side.cycle_list().size()));
}

/// The statistics of a sample of cycle durations.
inline gait_statistics_parameter statistics_of(const std::vector<double>& sample) {
  return built<GCT>(foot().gct(sample));
}

}  // namespace gait_test

#endif

#include "call_cost.h"

#include "parameter_list.h"

#include <gait/cycle_access.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <iterator>
#include <list>
#include <numeric>
#include <string>
#include <vector>

namespace gait_program {
namespace {

/// The processor time used so far (s): the same on a busy machine, where the clock on the wall runs
/// on.
double processor_time() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// The shortest of three times that some work takes (s): the first brings the lists into the
/// caches, as far as they fit.
template <class Work>
double time_of(Work work) {
  std::array<double, 3> seconds{};
  for (double& time : seconds) {
    const double start = processor_time();
    work();
    time = processor_time() - start;
  }
  return *std::min_element(seconds.begin(), seconds.end());
}

/// Some indices of a list: runs of as many as the library walks to side by side, evenly spread.
struct index_sample {
  std::list<int> indices;
  double share = 0.0;  ///< of all indices; 0 where there are none
};

index_sample sample_of(const std::list<int>& all) {
  constexpr std::size_t run = gait_detail::traversals_side_by_side;
  constexpr std::size_t runs = 8;
  const std::size_t stretch = std::max(run, all.size() / runs);
  const std::size_t before = (stretch - run) / 2;
  index_sample sample;
  std::size_t position = 0;
  for (const int index : all) {
    const std::size_t in_stretch = position % stretch;
    if (in_stretch >= before && in_stretch < before + run) {
      sample.indices.push_back(index);
    }
    ++position;
  }
  if (!all.empty()) {
    sample.share = static_cast<double>(sample.indices.size()) / static_cast<double>(all.size());
  }
  return sample;
}

/// The time to walk to each of the indices once (s).
template <class Cycle>
double walking_time(const std::list<Cycle>& cycles, const std::list<int>& indices) {
  const index_sample sample = sample_of(indices);
  if (sample.indices.empty()) {
    return 0.0;
  }
  const double seconds = time_of([&] {
    // Otherwise the compiler drops the walk, whose end nobody reads.
    volatile const void* reached = nullptr;
    gait_detail::for_each_cycle(cycles, sample.indices,
                                [&](std::size_t, const Cycle& cycle) { reached = &cycle; });
    static_cast<void>(reached);
  });
  return seconds / sample.share;
}

/// The time to look each of the indices up in a list of excluded ones (s).
double exclusion_time(const std::list<int>& indices, const std::list<int>& excluded) {
  const index_sample sample = sample_of(indices);
  if (sample.indices.empty() || excluded.empty()) {
    return 0.0;
  }
  const double seconds = time_of([&] {
    volatile bool found = false;
    for (const int index : sample.indices) {
      found = std::find(excluded.begin(), excluded.end(), index) != excluded.end();
    }
    static_cast<void>(found);
  });
  return seconds / sample.share;
}

std::list<int> all_indices(std::size_t count) {
  std::list<int> indices(count);
  std::iota(indices.begin(), indices.end(), 0);
  return indices;
}

/// The cycles of `count` that neither list excludes. The library's own way takes long where the
/// lists are long.
std::list<int> included_of(std::size_t count, const gait_result& result) {
  std::vector<bool> excluded(count, false);
  for (const auto* list : {&result.excluded_1, &result.excluded_2}) {
    for (const int index : *list) {
      if (index >= 0 && static_cast<std::size_t>(index) < count) {
        excluded[static_cast<std::size_t>(index)] = true;
      }
    }
  }
  std::list<int> included = all_indices(count);
  included.remove_if([&](int index) { return excluded[static_cast<std::size_t>(index)]; });
  return included;
}

/// The time of all that is done in the list of the analysed cycles but for the parameters (s).
template <class Cycle>
double accounting_time(const std::list<Cycle>& cycles, const std::list<int>& all,
                       const std::list<int>& included, const gait_result& result) {
  double seconds = walking_time(cycles, all) + walking_time(cycles, included);
  for (const auto* excluded : {&result.excluded_1, &result.excluded_2}) {
    seconds += exclusion_time(all, *excluded) + 2.0 * walking_time(cycles, *excluded);
  }
  for (const auto* fallback : {&result.excluded_1_fallback, &result.excluded_2_fallback}) {
    seconds += 2.0 * walking_time(cycles, *fallback);
  }
  return seconds;
}

/// The indices of one foot's cycles that belong to two-feet cycles: what the library looks up in
/// its list.
std::list<int> linked_cycles(const gait_feet_result& feet, const std::list<int>& included,
                             gait_foot_cycle* gait_feet_cycle::*side) {
  std::list<int> linked;
  auto next = included.begin();
  int index = 0;
  for (const gait_feet_cycle& cycle : feet.cycles) {
    if (next != included.end() && *next == index) {
      linked.push_back(cycle.*side != nullptr ? (cycle.*side)->index : -1);
      ++next;
    }
    ++index;
  }
  return linked;
}

double foot_parameters() { return static_cast<double>(list_parameters_of(false).size()); }

double expected_seconds_of_single_foot(const gait_result& result) {
  const auto& cycles = result.foot_results.front().cycles;
  const std::list<int> all = all_indices(cycles.size());
  const std::list<int> included = included_of(cycles.size(), result);
  // Beside the parameters, the distances: of all cycles, which is among the accounting, and of
  // those included.
  return accounting_time(cycles, all, included, result) +
         (foot_parameters() + 1.0) * walking_time(cycles, included);
}

double expected_seconds_of_both_feet(const gait_result& result) {
  const auto& feet = result.feet_result;
  const std::list<int> all = all_indices(feet.cycles.size());
  const std::list<int> included = included_of(feet.cycles.size(), result);
  const std::list<int> right = linked_cycles(feet, included, &gait_feet_cycle::right_cycle);
  const std::list<int> left = linked_cycles(feet, included, &gait_feet_cycle::left_cycle);
  // Beside the parameters: two distances along the right foot; along the feet, the links to each
  // foot and the double support of each side.
  return accounting_time(feet.cycles, all, included, result) +
         4.0 * walking_time(feet.cycles, included) +
         (foot_parameters() + 2.0) * walking_time(result.right_foot->cycles, right) +
         foot_parameters() * walking_time(result.left_foot->cycles, left);
}

}  // namespace

double expected_seconds(const gait_result& result) {
  return result.foot_results.size() == 1 ? expected_seconds_of_single_foot(result)
                                         : expected_seconds_of_both_feet(result);
}

std::string rough_duration(double seconds) {
  struct unit {
    double seconds;
    const char* name;
  };
  constexpr std::array<unit, 4> units = {
      {{86400.0, "days"}, {3600.0, "hours"}, {60.0, "minutes"}, {1.0, "seconds"}}};
  // Below two of a unit, the next smaller one says more.
  const auto* unit = std::find_if(units.begin(), units.end(),
                                  [&](const auto& u) { return seconds >= 2.0 * u.seconds; });
  if (unit == units.end()) {
    unit = std::prev(units.end());
  }
  return std::to_string(std::lround(seconds / unit->seconds)) + " " + unit->name;
}

}  // namespace gait_program

#ifndef GAIT_MATCHING_CYCLES_H
#define GAIT_MATCHING_CYCLES_H

/// \file
/// Which cycles of one foot belong to cycles of the two feet together.

#include <gait/cycle_access.h>
#include <gait/result.h>

#include <cstddef>
#include <list>

/// The indices of one foot's cycles that belong to the selected two-feet cycles, position by
/// position; -1 where a two-feet cycle has no cycle of that foot.
///
/// What it returns for `gait_statistics_info::cycles` is the cycle index list of that foot's side:
/// the parameters of the side are built over it, and the distances of two-feet mode are summed over
/// the right foot's. An index is that of the cycle pointed to, as its `index` says.
///
/// \param feet      the two-feet result
/// \param selected  indices of two-feet cycles; one that is out of range adds no entry
/// \param side      the link to follow: `&gait_feet_cycle::right_cycle` or `left_cycle`
///
/// Throws std::bad_alloc when memory runs out. O(n * k) for k indices over n two-feet cycles.
inline std::list<int> gait_matching_cycles(const gait_feet_result& feet,
                                           const std::list<int>& selected,
                                           gait_foot_cycle* gait_feet_cycle::*side) {
  std::list<int> matching;
  gait_detail::for_each_cycle(
      feet.cycles, selected, [&](std::size_t /*position*/, const gait_feet_cycle& cycle) {
        matching.push_back(cycle.*side != nullptr ? (cycle.*side)->index : -1);
      });
  return matching;
}

#endif

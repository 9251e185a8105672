#ifndef GAIT_CYCLE_ACCESS_H
#define GAIT_CYCLE_ACCESS_H

/// \file
/// How a cycle is reached from an index: the one place where it is written.

#include <gait/statistics.h>

#include <cstddef>
#include <iterator>
#include <list>

namespace gait_detail {

/// Calls `visit(position, cycle)` for every index of `indices` that lies within `cycles`, in list order.
///
/// `position` counts the elements of `indices` from 0, those that are skipped included. An index that is
/// negative or not below the number of cycles is skipped; an index that occurs twice is visited twice.
///
/// Every cycle is reached afresh from the front of its list: no table is built and no position is carried
/// from one index to the next, so that indices may come in any order. O(n * k) steps for k indices over n
/// cycles; no allocation; throws only what `visit` throws.
template <class Cycle, class Visit>
void for_each_cycle(const std::list<Cycle>& cycles, const std::list<int>& indices, Visit visit) {
  std::size_t position = 0;
  for (const int index : indices) {
    if (index >= 0 && static_cast<std::size_t>(index) < cycles.size()) {
      visit(position, *std::next(cycles.begin(), index));
    }
    ++position;
  }
}

/// The sum of a field over the indexed cycles, from 0.0 and in list order: the same bits with every compiler.
///
/// A cycle whose field is missing adds nothing; a NaN makes the sum NaN.
template <class Cycle>
double index_sum(const std::list<Cycle>& cycles, const std::list<int>& indices, double Cycle::*field) {
  double sum = 0.0;
  for_each_cycle(cycles, indices, [&](std::size_t, const Cycle& cycle) {
    if (!is_missing(cycle.*field)) {
      sum += cycle.*field;
    }
  });
  return sum;
}

}  // namespace gait_detail

#endif

#ifndef BENCHMARKS_COUNT_ALLOCATIONS_H
#define BENCHMARKS_COUNT_ALLOCATIONS_H

/// \file
/// Counts what a piece of code asks of the heap.

#include <cstddef>

/// Calls of malloc and realloc by this program so far, those of operator new and of Eigen among
/// them.
std::size_t allocations_so_far();

/// The number of allocations that `run` makes.
template <class Run>
std::size_t count_allocations(Run run) {
  const std::size_t before = allocations_so_far();
  run();
  return allocations_so_far() - before;
}

#endif

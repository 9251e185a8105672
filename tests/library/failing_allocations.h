#ifndef GAIT_TESTS_LIBRARY_FAILING_ALLOCATIONS_H
#define GAIT_TESTS_LIBRARY_FAILING_ALLOCATIONS_H

/// \file
/// Lets memory run out, and counts what is asked of it: by every form of operator new, and by
/// malloc, calloc, realloc and aligned_alloc where the objects of this program call them, the
/// templates of Eigen among them.

namespace gait_test {

/// How many allocations still succeed on this thread before one fails; none fails while it is
/// negative.
extern thread_local long allocations_left;

/// Whether every allocation after the first that fails does so too. If not, that one alone fails.
extern thread_local bool memory_stays_short;

// What this thread did since it started.
extern thread_local long allocations_tried;   ///< those that failed among them
extern thread_local long allocations_failed;  ///< on demand
extern thread_local long live_allocations;    ///< made and not released yet

}  // namespace gait_test

#endif

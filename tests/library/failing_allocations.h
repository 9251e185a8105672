#ifndef GAIT_TESTS_LIBRARY_FAILING_ALLOCATIONS_H
#define GAIT_TESTS_LIBRARY_FAILING_ALLOCATIONS_H

namespace gait_test {

/// How many allocations by operator new still succeed on this thread before every further one fails; none fails
/// while it is negative.
extern thread_local long allocations_left;

}  // namespace gait_test

#endif

#ifndef TOOLS_PROGRAM_IN_ORDER_H
#define TOOLS_PROGRAM_IN_ORDER_H

/// \file
/// Many things at a time, and their results in order.

#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace gait_program {

/// The stack that each of some threads is given (bytes): as much as the system lets the main thread
/// have, so that a walk which one thread can compute, any can. The sort of the percentiles may be
/// as many calls deep as there are strides; a GiB is enough for any walk that can be waited for.
/// Less where so much address space cannot be had.
std::size_t stack_of_each(std::size_t threads);

/// How many results there are at a time for each job, made or being made. Where one takes long, so
/// many others can be made meanwhile, and wait for it.
inline constexpr std::size_t results_per_job = 4;

/// Calls `make(i)` for every i below `count`, up to `jobs` of them at the same time, and `use` with
/// each result, one after the other in the order of i. With one job, or one thing to make, no
/// thread is started.
///
/// An exception of `make` or of `use` ends the calls, and is thrown when those that run are over.
template <class Make, class Use>
void make_and_use_in_order(std::size_t count, std::size_t jobs, Make make, Use use) {
  jobs = std::min(jobs, count);
  if (jobs < 2) {
    for (std::size_t i = 0; i < count; ++i) {
      use(make(i));
    }
    return;
  }
  using result = decltype(make(std::size_t{0}));
  using control = tbb::global_control;
  const control stack(control::thread_stack_size, stack_of_each(jobs));
  const control threads(control::max_allowed_parallelism, jobs);
  std::size_t next = 0;
  const auto number = tbb::make_filter<void, std::size_t>(tbb::filter_mode::serial_in_order,
                                                          [&](tbb::flow_control& flow) {
                                                            if (next == count) {
                                                              flow.stop();
                                                            }
                                                            return next++;
                                                          });
  const auto making = tbb::make_filter<std::size_t, result>(tbb::filter_mode::parallel,
                                                            [&](std::size_t i) { return make(i); });
  const auto using_it = tbb::make_filter<result, void>(
      tbb::filter_mode::serial_in_order, [&](result&& made) { use(std::move(made)); });
  tbb::task_arena arena(static_cast<int>(jobs));
  arena.execute(
      [&] { tbb::parallel_pipeline(results_per_job * jobs, number & making & using_it); });
}

}  // namespace gait_program

#endif

#ifndef TOOLS_PROGRAM_IN_ORDER_H
#define TOOLS_PROGRAM_IN_ORDER_H

/// \file
/// Many things at a time, and their results in order.

#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace gait_program {

/// The stack that each of some threads is given (bytes): as much as the system lets the main thread
/// have, so that a walk which one thread can compute, any can. The sort of the percentiles may be
/// as many calls deep as there are strides; a GiB is enough for any walk that can be waited for.
/// Less where so much address space cannot be had.
std::size_t stack_of_each(std::size_t threads);

/// How many results there are at a time for each job, made or being made. Where one takes long, so
/// many others can be made meanwhile, and wait for it.
inline constexpr std::size_t results_per_job = 4;

/// The results that there are at a time. Result i is made in the place in which an earlier one was
/// used. oneTBB keeps the order of all this; the atomics only show it to the thread sanitizer,
/// which cannot see into oneTBB.
template <class Result>
struct in_order_results {
  struct place {
    std::optional<Result> made;
    std::atomic<bool> is_made = false;
  };

  /// Comes after the use before, and before the next.
  class use_of_one {
  public:
    explicit use_of_one(in_order_results& results) : used_(results.used) {
      static_cast<void>(used_.load());
    }
    use_of_one(const use_of_one&) = delete;
    use_of_one(use_of_one&&) = delete;
    use_of_one& operator=(const use_of_one&) = delete;
    use_of_one& operator=(use_of_one&&) = delete;
    ~use_of_one() { ++used_; }

  private:
    std::atomic<std::size_t>& used_;
  };

  explicit in_order_results(std::size_t at_a_time) : places(at_a_time) {}
  in_order_results(const in_order_results&) = delete;
  in_order_results(in_order_results&&) = delete;
  in_order_results& operator=(const in_order_results&) = delete;
  in_order_results& operator=(in_order_results&&) = delete;
  ~in_order_results() {
    static_cast<void>(numbered.load() + used.load());
    for (std::size_t i = 0; i < places.size(); ++i) {
      static_cast<void>(of(i));
    }
  }

  place& of(std::size_t i) {
    place& found = places[i % places.size()];
    static_cast<void>(found.is_made.load());
    return found;
  }

  std::vector<place> places;
  std::atomic<std::size_t> numbered = 0;
  std::atomic<std::size_t> used = 0;
};

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
  const std::size_t at_a_time = results_per_job * jobs;
  in_order_results<result> results(at_a_time);
  const auto number = tbb::make_filter<void, std::size_t>(
      tbb::filter_mode::serial_in_order, [&](tbb::flow_control& flow) {
        // The last call, too, ends with a write that ~in_order_results sees.
        const std::size_t end = count;
        const std::size_t i = results.numbered++;
        if (i >= end) {
          flow.stop();
        }
        return i;
      });
  const auto making =
      tbb::make_filter<std::size_t, std::size_t>(tbb::filter_mode::parallel, [&](std::size_t i) {
        auto& place = results.of(i);
        place.made.emplace(make(i));
        place.is_made = true;
        return i;
      });
  const auto using_it =
      tbb::make_filter<std::size_t, void>(tbb::filter_mode::serial_in_order, [&](std::size_t i) {
        const typename in_order_results<result>::use_of_one now(results);
        auto& place = results.of(i);
        use(*std::move(place.made));
        place.made.reset();
        place.is_made = false;
      });
  tbb::task_arena arena(static_cast<int>(jobs));
  arena.execute([&] { tbb::parallel_pipeline(at_a_time, number & making & using_it); });
}

}  // namespace gait_program

#endif

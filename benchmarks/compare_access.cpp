// How many times faster the library reaches the indices 0 to n - 1 than one std::next after another
// does, in one run. A program of its own, without any library, so that it can be compiled in every
// way that a consumer may.

#include "access_sums.h"
#include "scatter.h"

#include <gait/result.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <list>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using clock_type = std::chrono::steady_clock;

/// The time of one sum (s), over as many as take some milliseconds. Prints to stderr, and ends, if
/// a sum is wrong.
template <class Sum>
double time_of(Sum sum, const std::list<gait_foot_cycle>& cycles, const std::list<int>& indices,
               double expected) {
  const std::size_t runs = std::max<std::size_t>(1, 4'000'000 / (cycles.size() * cycles.size()));
  bool right = true;
  const auto start = clock_type::now();
  for (std::size_t run = 0; run < runs; ++run) {
    right = sum(cycles, indices) == expected && right;
    asm volatile("" : : : "memory");  // the next sum is not known to be the same
  }
  const std::chrono::duration<double> elapsed = clock_type::now() - start;
  if (!right) {
    std::fputs("The sums differ.\n", stderr);
    std::exit(1);
  }
  return elapsed.count() / static_cast<double>(runs);
}

struct ratios {
  double least, median, greatest;
};

ratios compare(std::size_t count, bool scattered) {
  std::list<gait_foot_cycle> cycles(count);
  if (scattered) {
    scatter(cycles);
  }
  double value = 1.0;
  for (gait_foot_cycle& cycle : cycles) {
    cycle.gct = value += 0.001;
  }
  std::list<int> indices(count);
  std::iota(indices.begin(), indices.end(), 0);

  const double expected = sum_with_std_next(cycles, indices);
  std::vector<double> found;
  for (int round = 0; round < 15; ++round) {
    const double before = time_of(sum_with_std_next, cycles, indices, expected);
    found.push_back(before / time_of(sum_with_library, cycles, indices, expected));
  }
  std::sort(found.begin(), found.end());
  return {found.front(), found[found.size() / 2], found.back()};
}

struct ring_node {
  ring_node* next;
};

/// The time of a load (ns) in `sizeof...(Member)` traversals of a small ring, side by side and in
/// the first-level cache.
template <std::size_t... Member>
double time_of_load(std::index_sequence<Member...> /*members*/) {
  std::vector<ring_node> ring(64);
  for (std::size_t i = 0; i < ring.size(); ++i) {
    ring[i].next = &ring[(i + 1) % ring.size()];
  }
  constexpr int loads = 1'000'000;
  const auto traverse = [](auto... at) {
    for (int left = loads; left > 0; --left) {
      ((at = at->next), ...);
    }
    return (reinterpret_cast<std::uintptr_t>(at) ^ ...);
  };
  double least = std::numeric_limits<double>::max();
  for (int round = 0; round < 9; ++round) {
    const auto start = clock_type::now();
    const volatile std::uintptr_t end = traverse(&ring[Member]...);
    static_cast<void>(end);
    const std::chrono::duration<double, std::nano> elapsed = clock_type::now() - start;
    least = std::min(least, elapsed.count() / loads / sizeof...(Member));
  }
  return least;
}

}  // namespace

int main() {
  // Twelve fit into the registers of an x86-64 processor.
  std::printf(
      "A load from the first-level cache: %.2f ns one after another, %.2f ns in twelve traversals "
      "side by side.\n\n",
      time_of_load(std::make_index_sequence<1>{}), time_of_load(std::make_index_sequence<12>{}));
  std::puts("| cycles | nodes in order | nodes scattered |\n| ---: | ---: | ---: |");
  constexpr std::size_t counts[] = {20, 100, 400, 1000, 4000, 10000};
  for (const std::size_t count : counts) {
    std::printf("| %zu |", count);
    for (const bool scattered : {false, true}) {
      const ratios found = compare(count, scattered);
      std::printf(" %.2f (%.2f to %.2f) |", found.median, found.least, found.greatest);
    }
    std::puts("");
    std::fflush(stdout);
  }
}

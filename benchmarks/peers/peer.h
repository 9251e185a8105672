#ifndef BENCHMARKS_PEERS_PEER_H
#define BENCHMARKS_PEERS_PEER_H

/// \file
/// What the C++ peers share: the walk as columns, and the clock.

#include "walk_folder.h"

#include <gait/build_parameters.h>
#include <gait/catalogue.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <type_traits>
#include <vector>

/// The values of one parameter of one side, gait_missing where there is none.
using column = std::vector<double>;

/// Both feet's foot parameters, and double support once for each side, as the library reports it.
inline std::vector<column> columns_of(const gait_walk::walk& walk) {
  std::vector<column> columns;
  for (const auto& foot : {walk.right, walk.left}) {
    gait_catalogue::for_each_row([&](const auto& row) {
      using row_type = std::decay_t<decltype(row)>;
      if constexpr (std::is_same_v<typename row_type::result_type, gait_foot_result>) {
        if (!gait_catalogue::is_built(row.when, true)) {
          return;
        }
        column& values = columns.emplace_back();
        for (const gait_foot_cycle& cycle : foot->cycles) {
          values.push_back(row.value(cycle));
        }
      }
    });
    column& double_support = columns.emplace_back();
    for (const auto& cycle : walk.feet) {
      double_support.push_back(cycle.ds);
    }
  }
  return columns;
}

/// The values that were measured.
inline column measured(const column& values) {
  column sample;
  std::copy_if(values.begin(), values.end(), std::back_inserter(sample),
               [](double value) { return value != gait_missing; });
  return sample;
}

/// Runs `pass` for a fifth of a second or more, and prints the median of its times (s).
template <class Pass>
void print_time_of(Pass pass) {
  using clock = std::chrono::steady_clock;
  std::vector<double> times;
  const auto end = clock::now() + std::chrono::milliseconds(200);
  do {
    const auto start = clock::now();
    pass();
    times.push_back(std::chrono::duration<double>(clock::now() - start).count());
  } while (clock::now() < end || times.size() < 3);
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                   times.end());
  std::printf("%.9f\n", times[times.size() / 2]);
}

/// Keeps a result from being optimised away.
inline void keep(double value) { asm volatile("" : : "x"(value) : "memory"); }

#endif

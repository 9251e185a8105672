#ifndef BENCHMARKS_WALKS_H
#define BENCHMARKS_WALKS_H

/// \file
/// The walks that are measured: modelled ones, so that every size can be had.

#include "walk.h"
#include "walk_model.h"

#include <cstdint>
#include <vector>

/// How the nodes of a cycle list lie in memory: in the order of the list, or anywhere.
enum class nodes { in_order, scattered };

/// The sizes that a recording has, from a short test to a day: cycles of each foot.
inline const std::vector<std::int64_t> cycle_counts = {20, 100, 400, 1000, 4000, 10000};

/// A walk with every cycle included and every value measured.
inline gait_walk::walk modelled_walk(std::int64_t cycles) {
  gait_walk::walk_settings settings;
  settings.strides = static_cast<int>(cycles);
  settings.turns = 0;
  gait_walk::walk walk = gait_walk::make_walk(settings);
  walk.exclusions.clear();
  return walk;
}

#endif

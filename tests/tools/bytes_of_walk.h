#ifndef TESTS_TOOLS_BYTES_OF_WALK_H
#define TESTS_TOOLS_BYTES_OF_WALK_H

/// \file
/// Walks as bytes, to see whether two are the same to the last bit.

#include "text_of.h"
#include "walk.h"

#include <string>

namespace tool_tests {

/// All of a walk but its name and the lines of its cycles.
inline std::string bytes_of(const gait_walk::walk& walk) {
  gait_test::byte_writer bytes;
  const auto add = [&](const auto&... members) { (bytes.add("", members), ...); };
  for (const auto* foot : {&walk.left, &walk.right}) {
    add(foot->has_value());
    if (*foot) {
      add((*foot)->sampling_rate, (*foot)->cycles.size());
      for (const auto& samples : {(*foot)->signal_1_samples, (*foot)->signal_2_samples}) {
        add(samples.has_value(), samples.value_or(0));
      }
      for (const gait_foot_cycle& cycle : (*foot)->cycles) {
        gait_test::write_fields(bytes, cycle);
      }
    }
  }
  add(walk.feet.size());
  for (const gait_walk::feet_cycle& cycle : walk.feet) {
    add(cycle.gct, cycle.ds, cycle.right_index.value_or(-1), cycle.left_index.value_or(-1));
  }
  for (const gait_walk::exclusion& exclusion : walk.exclusions) {
    add(exclusion.cycles, exclusion.list, exclusion.index, exclusion.reason);
  }
  for (const gait_walk::about_row& row : walk.about) {
    add(row.name, row.value);
  }
  return bytes.result();
}

}  // namespace tool_tests

#endif

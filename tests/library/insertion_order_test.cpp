#include <gait/gait.h>

#include "builders.h"
#include "catalogue_keys.h"
#include "failing_allocations.h"
#include "side.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <new>
#include <string>
#include <vector>

// A hash map does not show in which order its entries came. Memory that runs out ever later does.

namespace {

using gait_test::foot;
using gait_test::keys_of_side;

/// Runs `build` into new statistics with ever more allocations until they suffice, and shows those
/// that it left each time that they did not.
template <class Build, class Visit>
void let_memory_run_out(Build build, Visit visit) {
  for (long allowed = 0;; ++allowed) {
    gait_statistics statistics;
    bool ran_out = false;
    gait_test::allocations_left = allowed;
    try {
      build(statistics);
    } catch (const std::bad_alloc&) {
      ran_out = true;
    }
    gait_test::allocations_left = -1;
    if (!ran_out) {
      ASSERT_GT(allowed, 0);
      return;
    }
    visit(statistics);
  }
}

TEST(BuildParameter, LeavesTheMapUnchangedWhenMemoryRunsOut) {
  const gait_foot_result result = foot().gct({1.0, 1.1, 1.2}).result();
  const std::list<int> cycles = {0, 1, 2};
  const std::string suffix = "_a suffix too long to be held without an allocation";
  int failures = 0;
  let_memory_run_out(
      [&](gait_statistics& s) {
        gait_statistics_build_parameter<gait_foot_result, GCT>(s, result, cycles, suffix, GCT{});
      },
      [&](const gait_statistics& s) {
        ++failures;
        ASSERT_TRUE(s.parameters.empty());
      });
  EXPECT_GE(failures, 3);  // the values, the key and the entry
}

/// The keys of a side in the order in which they are inserted, but for the last: when that is in,
/// nothing fails.
std::vector<std::string> order_of_insertion(gait_feet_result* feet) {
  const gait_foot_result result = foot().ramp(3, 1.0, 0.25).result();
  const std::list<int> cycles = {0, 1, 2};
  std::vector<std::string> order;
  let_memory_run_out(
      [&](gait_statistics& s) {
        gait_statistics_build_parameters(s, result, cycles, "_R", feet, &cycles);
      },
      [&](const gait_statistics& statistics) {
        for (const auto& [key, parameter] : statistics.parameters) {
          if (std::find(order.begin(), order.end(), key) == order.end()) {
            order.push_back(key);
          }
        }
        ASSERT_EQ(order.size(), statistics.parameters.size());
      });
  return order;
}

std::vector<std::string> all_but_the_last(std::vector<std::string> keys) {
  keys.pop_back();
  return keys;
}

TEST(BuildParameters, InsertsInTheOrderOfTheCatalogueWithDoubleSupportAfterPushing) {
  gait_feet_result feet = gait_test::feet_with_ds({20.0});
  EXPECT_EQ(order_of_insertion(&feet), all_but_the_last(keys_of_side(true, "_R")));
}

TEST(BuildParameters, InsertsInTheSameOrderWithoutDoubleSupport) {
  EXPECT_EQ(order_of_insertion(nullptr), all_but_the_last(keys_of_side(false, "_R")));
}

}  // namespace

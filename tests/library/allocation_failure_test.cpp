#include "builders.h"
#include "failing_allocations.h"
#include "text_of.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>

#include <cstddef>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace {

using namespace gait_test;

/// Runs with only so many allocations. Returns whether that was enough.
bool runs_with(long allocations, const std::function<void()>& run) {
  gait_test::allocations_left = allocations;
  try {
    run();
    gait_test::allocations_left = -1;
    return true;
  } catch (const std::bad_alloc&) {
    gait_test::allocations_left = -1;
    return false;
  }
}

/// Runs on statistics of its own for each allocation that can fail, and hands over what the failure left. Address
/// sanitizer tells whether anything of the call stayed behind.
void let_memory_run_out(const std::function<void(gait_statistics&)>& run,
                        const std::function<void(const gait_statistics&)>& see_what_is_left) {
  for (long allocations = 0; allocations < 100000; ++allocations) {
    gait_statistics statistics;
    if (runs_with(allocations, [&] { run(statistics); })) {
      EXPECT_GT(allocations, 0) << "nothing was allocated";
      return;
    }
    see_what_is_left(statistics);
  }
  FAIL() << "memory never sufficed";
}

/// Every entry that is there is as it would be with memory enough.
void expect_complete_entries(const gait_statistics& left, const gait_statistics& complete) {
  for (const auto& [key, parameter] : left.parameters) {
    gait_statistics_parameter expected = complete.parameters.at(key);
    expected.asymmetry = parameter.asymmetry;  // a later stage's
    EXPECT_EQ(difference(text_of(parameter), text_of(expected)), "") << key;
  }
}

/// The entry on a copy of the walk's result, which shares feet and recordings with it.
void expect_failures_to_pass(walk w) {
  const gait_statistics complete = w.excluded_1({1}).analyse().statistics;
  const gait_result& original = w.result();
  const std::string input = text_of_input(original);
  gait_result result = original;
  const std::string input_of_copy = text_of_input(result);
  let_memory_run_out(
      [&](gait_statistics& statistics) {
        result.statistics = {};
        try {
          gait_generate_statistics(result, {});
        } catch (const std::bad_alloc&) {
          std::swap(statistics, result.statistics);
          throw;
        }
      },
      [&](const gait_statistics& left) {
        expect_complete_entries(left, complete);
        ASSERT_EQ(difference(text_of_input(result), input_of_copy), "");
      });
  EXPECT_EQ(difference(text_of_input(original), input), "");
}

TEST(GenerateStatisticsShortOfMemory, LetsTheExceptionOfOneFootPass) {
  expect_failures_to_pass(one_foot(foot().ramp(4, 1.0, 0.5)));
}

TEST(GenerateStatisticsShortOfMemory, LetsTheExceptionOfTwoFeetPass) {
  expect_failures_to_pass(two_feet(foot().ramp(4, 1.0, 0.5), foot().ramp(4, 2.0, 0.5)));
}

TEST(GenerateStatisticsShortOfMemory, BuildsTheRightSideBeforeTheLeft) {
  walk w = two_feet(foot().ramp(4, 1.0, 0.5));
  const gait_result original = w.result();
  bool left_seen = false;
  for (long allocations = 0;; ++allocations) {
    gait_result result = original;
    if (runs_with(allocations, [&] { gait_generate_statistics(result, {}); })) {
      break;
    }
    const auto& parameters = result.statistics.parameters;
    if (parameters.count("gct_L") != 0 && !left_seen) {
      left_seen = true;
      EXPECT_EQ(parameters.size(), 28U + 1U) << "all of the right side, and the first of the left";
    }
  }
  EXPECT_TRUE(left_seen);
}

}  // namespace

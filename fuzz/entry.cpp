/// \file
/// The entry on whole walks of any values: it comes to its end, leaves alone what it only reads,
/// and its accounting adds up. The figures themselves are the model's to check.

#include <gait/generate_statistics.h>

#include "bits.h"
#include "check.h"
#include "fuzzed_walk.h"
#include "input.h"
#include "text_of.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace {

using fuzz::check;
using gait_test::same_bits;

void check_accounting(const gait_result& result) {
  const gait_statistics_info& info = result.statistics.info;
  const std::size_t cycles = result.foot_results.size() == 1
                                 ? result.foot_results.front().cycles.size()
                                 : result.feet_result.cycles.size();
  check(info.cycle_count == static_cast<int>(cycles), "every analysed cycle is counted");
  check(info.cycle_count == info.excluded_count + static_cast<int>(info.cycles.size()),
        "a cycle is included or excluded");
  check(info.included_count == info.cycle_count - static_cast<int>(info.excluded_1_count) -
                                   static_cast<int>(info.excluded_2_count),
        "included_count is cycle_count less both kinds of exclusion");
  check(same_bits(info.included_duration,
                  info.duration - (info.excluded_2_duration + info.excluded_1_duration)),
        "included_duration is duration less both kinds of exclusion");
}

/// Beyond the largest value, differences and sums of two values may be infinite.
void check_order(const gait_statistics_parameter& p) {
  const double largest = std::numeric_limits<double>::max() / 4;
  for (const double value : p.values) {
    if (!(std::fabs(value) < largest)) {
      return;
    }
  }
  check(p.min <= p.median && p.median <= p.max, "min <= median <= max");
  check(p.iqr >= 0.0 && p.std >= 0.0, "a spread is not negative");
}

void check_parameters(const gait_result& result, const gait_statistics& before) {
  for (const auto& [key, parameter] : result.statistics.parameters) {
    if (before.parameters.count(key) == 0 && key != "asymmetry" && parameter.valid) {
      check_order(parameter);
    }
  }
  for (const auto& [key, parameter] : before.parameters) {
    gait_statistics_parameter kept = result.statistics.parameters.at(key);
    kept.asymmetry = parameter.asymmetry;
    check(bool(gait_test::are_the_same(kept, parameter)), "an entry that was there is kept");
  }
}

bool lacks_a_signal(const gait_foot_result& foot) {
  return foot.recording->signals.count(1) == 0 || foot.recording->signals.count(2) == 0;
}

/// Whether the entry comes to its end on this walk, and not to a signal that is not there.
bool has_every_signal(const gait_result& result) {
  return result.foot_results.size() == 1
             ? !lacks_a_signal(result.foot_results.front())
             : !lacks_a_signal(*result.left_foot) && !lacks_a_signal(*result.right_foot);
}

void analyse(fuzz::fuzzed_walk& walk) {
  const std::string input = gait_test::bytes_of_input(walk.result);
  const gait_statistics before = walk.result.statistics;
  const int flags = walk.result.quality_flags;
  const bool has_feet = !walk.result.foot_results.empty();
  try {
    check(gait_generate_statistics(walk.result, walk.settings), "the call returns true");
    check(!has_feet || has_every_signal(walk.result), "a signal that is not there is an exception");
    if (has_feet) {
      check_accounting(walk.result);
      check_parameters(walk.result, before);
    }
  } catch (const std::out_of_range&) {
    check(!has_every_signal(walk.result), "with every signal there, the call throws nothing");
  }
  if (!has_feet || !has_every_signal(walk.result)) {
    check(bool(gait_test::are_the_same(walk.result.statistics, before)) &&
              walk.result.quality_flags == flags,
          "a call that computes nothing writes nothing");
  }
  check(gait_test::bytes_of_input(walk.result) == input, "the call leaves its input as it is");
}

void check_same_output(const gait_result& now, const gait_result& expected, const char* what) {
  const testing::AssertionResult same =
      gait_test::are_the_same(expected.statistics, now.statistics);
  if (!same || now.quality_flags != expected.quality_flags) {
    fuzz::fail(std::string(what) + same.message());
  }
}

}  // namespace

// The fuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::fuzzed_walk walk(fuzz::input(bytes, size));
  analyse(walk);

  fuzz::fuzzed_walk same(fuzz::input(bytes, size));
  analyse(same);
  check_same_output(same.result, walk.result,
                    "the same walk elsewhere in memory gives the same:\n");
  analyse(same);
  check_same_output(same.result, walk.result, "a second call changes nothing:\n");

  // The parameters of the call before are now those that are kept.
  walk.result.excluded_1.swap(walk.result.excluded_2);
  walk.result.excluded_1_fallback.swap(walk.result.excluded_2_fallback);
  analyse(walk);
  return 0;
}

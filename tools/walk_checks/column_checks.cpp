#include "walk_rules.h"

#include "bounds.h"
#include "values.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;

constexpr std::size_t strides_of_one_value = 10;
/// Rounded values repeat; only of durations is it known how often.
constexpr std::size_t durations_of_few_values = 30;
constexpr std::size_t values_of_durations = 10;
constexpr std::size_t percent_of_values = 5;

/// How many different values there are; those beyond `most` are not counted.
std::size_t count_distinct(const std::vector<double>& values, std::size_t most) {
  std::vector<double> distinct;
  distinct.reserve(most);
  for (auto value = values.begin(); value != values.end() && distinct.size() < most; ++value) {
    if (std::find(distinct.begin(), distinct.end(), *value) == distinct.end()) {
      distinct.push_back(*value);
    }
  }
  return distinct.size();
}

/// Whether so few different values are too few.
bool is_stuck(std::string_view column, std::size_t strides, std::size_t distinct) {
  const bool are_few = strides >= durations_of_few_values && distinct < values_of_durations &&
                       100 * distinct <= percent_of_values * strides;
  return (column == "gct" && are_few) || (strides >= strides_of_one_value && distinct == 1);
}

std::vector<finding> stuck_column(const checked_walk& walk, const value_filter& usable,
                                  alarm /*when*/) {
  std::vector<finding> all;
  for (const checked_foot& foot : walk.feet) {
    for (const bounds& row : bounds_table()) {
      // Pushing is 0 throughout where no rise of the heel is found, and clearances that are rounded
      // to a centimetre may well be the same in every stride.
      if (row.field == nullptr || row.column == "pur" || row.dim == dimension::length) {
        continue;
      }
      const std::vector<double> values = values_of(foot, usable, row.column, row.field);
      const std::size_t distinct = count_distinct(values, values_of_durations);
      if (is_stuck(row.column, values.size(), distinct)) {
        all.push_back(of_the_walk(
            foot_cycles_table, row.column, included_strides, values.size(),
            "found " + std::to_string(distinct) + " different value" + (distinct == 1 ? "" : "s") +
                " in " + std::to_string(values.size()) + " strides of the " +
                std::string(foot.name) + " foot, expected a value of its own for almost each"));
      }
    }
  }
  return all;
}

constexpr double least_sample_tolerance = 0.25;

/// By how much rounding may have moved a duration (s): half of the coarsest step that all of them
/// are multiples of.
double rounding_of(const std::vector<double>& durations) {
  for (const double steps_per_second : {10.0, 100.0, 1000.0}) {
    const bool are_multiples =
        std::all_of(durations.begin(), durations.end(), [&](double duration) {
          const double steps = duration * steps_per_second;
          return !differs(steps, std::round(steps), 1e-6);
        });
    if (are_multiples) {
      return 0.5 / steps_per_second;
    }
  }
  return 0.0;
}

/// Whether every stride has a sample more than its duration, as far as rounding lets it be seen,
/// and some stride has more than rounding could add to a sound one.
bool has_one_sample_too_many(const std::vector<double>& excess, double tolerance) {
  const bool one_more_explains_all =
      std::none_of(excess.begin(), excess.end(),
                   [&](double samples) { return differs(samples, 1.0, tolerance); });
  const bool rounding_explains_all = std::all_of(
      excess.begin(), excess.end(), [&](double samples) { return samples <= tolerance; });
  return one_more_explains_all && !rounding_explains_all;
}

std::vector<finding> one_sample_too_many(const checked_walk& walk, const value_filter& usable,
                                         alarm /*when*/) {
  constexpr std::size_t fewest_strides = 5;
  std::vector<finding> all;
  for (const checked_foot& foot : walk.feet) {
    const usable_values is_usable = usable("gct");
    std::vector<double> excess;  // of a stride's samples over those of its duration
    for (const included_stride& included : foot.included) {
      if (is_usable(*included.stride)) {
        excess.push_back(samples_of(*included.stride) - included.stride->gct * foot.rate);
      }
    }
    // A little more than half a step, for halves that are rounded either way.
    const double rounding =
        1.05 * foot.rate * rounding_of(values_of(foot, usable, "gct", &cycle::gct));
    if (excess.size() >= fewest_strides &&
        has_one_sample_too_many(excess, std::max(least_sample_tolerance, rounding))) {
      all.push_back(of_the_walk(
          foot_cycles_table, "last_sample", included_strides, excess.size(),
          "found one sample more than gct in every stride of the " + std::string(foot.name) +
              " foot, expected last_sample to be the last one of the stride"));
    }
  }
  return all;
}

/// No angle in radians is larger than half a turn.
constexpr double above_pi = 3.2;

std::vector<finding> angles_in_radians(const checked_walk& walk, const value_filter& usable,
                                       alarm /*when*/) {
  constexpr std::size_t fewest_strides = 5;
  std::vector<finding> all;
  for (const bounds& row : bounds_table()) {
    if (row.dim != dimension::angle) {
      continue;
    }
    const usable_values is_usable = usable(row.column);
    std::vector<double> sizes;
    for (const checked_foot& foot : walk.feet) {
      for (const cycle* stride : foot.strides) {
        if (is_usable(*stride)) {
          sizes.push_back(std::abs(stride->*row.field));
        }
      }
    }
    if (sizes.size() < fewest_strides) {
      continue;
    }
    const double largest = *std::max_element(sizes.begin(), sizes.end());
    // Angles that are small as a rule may all lie below: somebody who walks straight on turns by
    // less than three degrees a stride, but not by less than a tenth of a degree.
    const bool is_small = row.typical > above_pi || median(sizes) < 0.1;
    if (largest < above_pi && is_small && largest > 0.0) {
      all.push_back(of_the_walk(foot_cycles_table, row.column, "strides", sizes.size(),
                                "found no angle beyond " + number(largest) +
                                    ", expected degrees, some beyond " + number(above_pi),
                                "radians?"));
    }
  }
  return all;
}

}  // namespace

std::vector<walk_rule> column_rules() {
  const std::string one_value =
      "one value in " + std::to_string(strides_of_one_value) + " strides; of gct, fewer than " +
      std::to_string(values_of_durations) + " in " + std::to_string(durations_of_few_values) +
      ", and no more than " + std::to_string(percent_of_values) + " % of them";
  // clang-format off
  return {
      {"stuck_column", "values differ from stride to stride", one_value, alarm::any, stuck_column,
       "a column that is stuck, or filled down", "170 measured walks: the one that breaks it has a sensor fault"},
      {"one_sample_too_many", "last_sample - first_sample + 1 is not one more than gct x sampling rate throughout (samples)", number(least_sample_tolerance) + " samples, or what rounding of gct explains", alarm::any, one_sample_too_many,
       "a last_sample that is too large by one, the first sample of the next stride: subtract 1", "170 measured walks, none of whose strides breaks it"},
      {"angles_in_radians", "the largest angle of the walk (deg)", "more than " + number(above_pi), alarm::any, angles_in_radians,
       "radians instead of degrees", "94 measured walks: the largest lift-off, strike and eversion angles are at least 50, 17.5 and 6.6 degrees"},
  };
  // clang-format on
}

}  // namespace gait_checks

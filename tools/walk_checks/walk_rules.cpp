#include "walk_rules.h"

#include "tally.h"

#include <gait/statistics.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;

double samples_of(const cycle& stride) {
  return static_cast<double>(stride.last_sample) - stride.first_sample + 1.0;
}

bool differs(double found, double expected, double tolerance) {
  // A NaN never breaks a check: it is for the reader to refuse.
  return std::abs(found - expected) > tolerance;
}

std::string found_and_expected(double found, double expected, const std::string& unit) {
  return "found " + number(found) + unit + ", expected " + number(expected) + unit;
}

void append(std::vector<finding>& all, std::vector<finding> more) {
  all.insert(all.end(), more.begin(), more.end());
}

/// A finding about the walk as a whole.
finding of_the_walk(std::string_view table, std::string_view column, std::size_t compared,
                    std::string text, std::string guess = "") {
  finding found;
  found.table = table;
  found.column = column;
  found.broken = compared;
  found.compared = compared;
  found.counted = table == feet_cycles_table ? included_pairs : included_strides;
  found.text = std::move(text);
  found.guess = std::move(guess);
  return found;
}

std::vector<finding> strides_in_time_order(const checked_walk& walk, const usable& /*usable*/) {
  std::vector<finding> all;
  for (const checked_foot& foot : walk.feet) {
    tally tally(foot_cycles_table, "first_sample", strides_of(foot.name));
    for (std::size_t i = 1; i < foot.strides.size(); ++i) {
      const cycle& before = *foot.strides[i - 1];
      const cycle& stride = *foot.strides[i];
      const bool rises = stride.first_sample > before.first_sample;
      const bool hs_rises =
          gait_is_missing(stride.hs) || gait_is_missing(before.hs) || stride.hs > before.hs;
      tally.add(rises && hs_rises, {foot.name, stride.index}, [&] {
        return rises ? "found a heel strike (hs) at " + number(stride.hs) +
                           " s, expected later than the one before, " + number(before.hs) + " s"
                     : "found first_sample " + std::to_string(stride.first_sample) +
                           ", expected more than that of the stride before, " +
                           std::to_string(before.first_sample);
      });
    }
    std::vector<finding> findings = tally.findings(alarm::any);
    if (!findings.empty() && tally.broken() == tally.compared() && tally.compared() > 1) {
      findings.front().guess = "rows or index in reverse?";
    }
    append(all, findings);
  }
  return all;
}

std::vector<finding> links_in_order(const checked_walk& walk, const usable& /*usable*/) {
  std::vector<finding> all;
  for (const bool is_right : {true, false}) {
    tally tally(feet_cycles_table, is_right ? "right_index" : "left_index", all_pairs);
    const cycle* before = nullptr;
    for (const checked_pair& pair : walk.links) {
      const cycle* stride = is_right ? pair.right : pair.left;
      if (stride == nullptr) {
        continue;
      }
      if (before != nullptr) {
        tally.add(stride->index > before->index, {"", pair.index}, [&] {
          return "found " + std::to_string(stride->index) +
                 ", expected more than the link before, " + std::to_string(before->index);
        });
      }
      before = stride;
    }
    append(all, tally.findings(alarm::any));
  }
  return all;
}

std::vector<finding> linked_strides_overlap(const checked_walk& walk, const usable& /*usable*/) {
  tally tally(feet_cycles_table, "right_index", included_pairs);
  for (const checked_pair& pair : walk.pairs) {
    if (pair.right == nullptr || pair.left == nullptr) {
      continue;
    }
    const double shorter = std::min(samples_of(*pair.right), samples_of(*pair.left));
    const double overlap = std::min(pair.right->last_sample, pair.left->last_sample) -
                           std::max<double>(pair.right->first_sample, pair.left->first_sample) +
                           1.0;
    tally.add(overlap >= 0.25 * shorter, {"", pair.index}, [&] {
      return "found strides right " + std::to_string(pair.right->index) + " and left " +
             std::to_string(pair.left->index) + " with " +
             number(std::max(0.0, 100.0 * overlap / shorter)) +
             " % of the shorter in common, expected at least 25 %";
    });
  }
  return tally.findings(alarm::any);
}

std::vector<finding> unlinked_strides(const checked_walk& walk, const usable& /*usable*/) {
  std::vector<finding> all;
  if (walk.feet.size() < 2) {
    return all;
  }
  for (const bool is_right : {true, false}) {
    const checked_foot& foot = walk.feet[is_right ? 0 : 1];
    std::set<const cycle*> linked;
    for (const checked_pair& pair : walk.links) {
      linked.insert(is_right ? pair.right : pair.left);
    }
    tally tally(foot_cycles_table, "index", strides_of(foot.name));
    for (const cycle* stride : foot.strides) {
      tally.add(linked.count(stride) != 0, {foot.name, stride->index}, [&] {
        return "found a stride that no cycle of both feet links, expected a link in "
               "feet_cycles.csv: it enters no statistic";
      });
    }
    append(all, tally.findings(alarm::any));
  }
  return all;
}

/// What the two-feet cycles last as long as.
struct durations_of_pairs {
  tally neither{feet_cycles_table, "gct", included_pairs};
  std::size_t right = 0;  ///< cycles as long as the right stride alone
  std::size_t left = 0;   ///< cycles as long as the left stride alone
};

durations_of_pairs compare_durations(const checked_walk& walk, const usable& usable) {
  durations_of_pairs result;
  for (const checked_pair& pair : walk.pairs) {
    const bool has_right = pair.right != nullptr && usable("gct", *pair.right);
    const bool has_left = pair.left != nullptr && usable("gct", *pair.left);
    if (gait_is_missing(pair.cycle->gct) || !has_right) {
      continue;
    }
    const double tolerance = 0.01 * std::abs(pair.cycle->gct);
    const bool is_right = !differs(pair.right->gct, pair.cycle->gct, tolerance);
    const bool is_left = has_left && !differs(pair.left->gct, pair.cycle->gct, tolerance);
    result.right += static_cast<std::size_t>(is_right && !is_left);
    result.left += static_cast<std::size_t>(is_left && !is_right);
    result.neither.add(is_right || is_left, {"", pair.index}, [&] {
      return found_and_expected(pair.cycle->gct, pair.right->gct, " s") +
             ", the duration of its right stride";
    });
  }
  return result;
}

std::vector<finding> feet_cycle_duration(const checked_walk& walk, const usable& usable) {
  return compare_durations(walk, usable).neither.findings(alarm::any);
}

std::vector<finding> feet_swapped(const checked_walk& walk, const usable& usable) {
  const durations_of_pairs durations = compare_durations(walk, usable);
  // Where more cycles have a duration of their own, the links or rows are wrong, and not the feet.
  const bool follow_a_foot = 20 * durations.neither.broken() <= durations.neither.compared();
  if (durations.left < 2 || durations.left <= 3 * durations.right || !follow_a_foot) {
    return {};
  }
  finding found =
      of_the_walk(feet_cycles_table, "gct", durations.neither.compared(),
                  "found cycles of both feet that last as long as their left stride (" +
                      std::to_string(durations.left) + ") and not as their right one (" +
                      std::to_string(durations.right) + "), expected the right one",
                  "left and right swapped?");
  found.broken = durations.left;
  return {found};
}

std::vector<finding> double_support_and_stances(const checked_walk& walk, const usable& usable) {
  std::vector<double> measured;
  std::vector<double> expected_values;
  for (const checked_pair& pair : walk.pairs) {
    if (pair.right != nullptr && pair.left != nullptr && !gait_is_missing(pair.cycle->ds) &&
        usable("ds", *pair.right) && usable("stance", *pair.right) &&
        usable("stance", *pair.left)) {
      measured.push_back(pair.cycle->ds);
      expected_values.push_back(pair.right->stance + pair.left->stance - 100.0);
    }
  }
  constexpr std::size_t fewest_pairs = 5;
  if (measured.size() < fewest_pairs) {
    return {};
  }
  std::vector<double> deviations;
  for (std::size_t i = 0; i < measured.size(); ++i) {
    deviations.push_back(measured[i] - expected_values[i]);
  }
  if (std::abs(median(deviations)) <= 5.0) {
    return {};
  }
  const double found = median(measured);
  const double wanted = median(expected_values);
  std::string guess;
  if (!differs(found, wanted / 100.0, 0.05)) {
    guess = "a fraction?";
  } else if (!differs(found, wanted / 2.0, 3.0)) {
    guess = "one of its two phases?";
  } else if (!differs(found, 100.0 - wanted, 5.0)) {
    guess = "single support?";
  }
  return {of_the_walk(feet_cycles_table, "ds", measured.size(),
                      "found a median of " + number(found) +
                          " %, expected that of stance right + stance left - 100, " +
                          number(wanted) + " %, within 5 points",
                      guess)};
}

/// A right stride, its left partner, and the right stride that follows it.
struct stride_of_two_steps {
  int index;
  const cycle* right;
  const cycle* left;
  const cycle* next_right;
};

std::vector<stride_of_two_steps> strides_of_two_steps(const checked_walk& walk) {
  std::vector<stride_of_two_steps> strides;
  const auto& included = walk.feet.front().included;
  const std::set<const cycle*> is_included(included.begin(), included.end());
  for (const checked_pair& pair : walk.pairs) {
    if (pair.right == nullptr || pair.left == nullptr) {
      continue;
    }
    const auto& rights = walk.feet.front().strides;
    const auto next = static_cast<std::size_t>(pair.right->index) + 1;
    if (next < rights.size() && is_included.count(rights[next]) != 0 &&
        rights[next]->first_sample == std::int64_t{pair.right->last_sample} + 1) {
      strides.push_back({pair.index, pair.right, pair.left, rights[next]});
    }
  }
  return strides;
}

/// Compares a value of a right stride with the sum over the two steps that it consists of.
std::vector<finding> compare_with_steps(const checked_walk& walk, const usable& usable,
                                        std::string_view whole, double cycle::*whole_field,
                                        std::string_view step, double cycle::*step_field,
                                        double absolute, double relative, std::string_view unit) {
  tally tally(foot_cycles_table, step, included_strides);
  for (const stride_of_two_steps& stride : strides_of_two_steps(walk)) {
    if (!usable(whole, *stride.right) || !usable(step, *stride.left) ||
        !usable(step, *stride.next_right)) {
      continue;
    }
    const double found = stride.left->*step_field + stride.next_right->*step_field;
    const double wanted = stride.right->*whole_field;
    tally.add(!differs(found, wanted, std::max(absolute, relative * std::abs(wanted))),
              {"right", stride.right->index}, [&] {
                std::string text = "found a left and a right step of " + number(found);
                text.append(unit).append(" together, expected ").append(number(wanted));
                return text.append(unit).append(", the right stride");
              });
  }
  return tally.findings(alarm::many);
}

std::vector<finding> step_times_of_a_stride(const checked_walk& walk, const usable& usable) {
  return compare_with_steps(walk, usable, "gct", &cycle::gct, "step_time", &cycle::step_time, 0.02,
                            0.0, " s");
}

std::vector<finding> step_lengths_of_a_stride(const checked_walk& walk, const usable& usable) {
  return compare_with_steps(walk, usable, "slength", &cycle::slength, "step_length",
                            &cycle::step_length, 0.0, 0.1, " m");
}

std::vector<double> values_of(const checked_foot& foot, const usable& usable,
                              std::string_view column, double cycle::*field) {
  std::vector<double> values;
  for (const cycle* stride : foot.included) {
    if (usable(column, *stride)) {
      values.push_back(stride->*field);
    }
  }
  return values;
}

std::vector<finding> durations_of_both_feet(const checked_walk& walk, const usable& usable) {
  if (walk.feet.size() < 2) {
    return {};
  }
  const std::vector<double> right = values_of(walk.feet[0], usable, "gct", &cycle::gct);
  const std::vector<double> left = values_of(walk.feet[1], usable, "gct", &cycle::gct);
  constexpr std::size_t fewest_strides = 5;
  if (right.size() < fewest_strides || left.size() < fewest_strides) {
    return {};
  }
  const double ratio = median(left) / median(right);
  if (ratio >= 0.9 && ratio <= 1.1) {
    return {};
  }
  return {of_the_walk(foot_cycles_table, "gct", right.size() + left.size(),
                      "found medians of " + number(median(left)) + " s left and " +
                          number(median(right)) +
                          " s right, expected no more than a tenth between the feet")};
}

std::vector<finding> stuck_column(const checked_walk& walk, const usable& usable) {
  std::vector<finding> all;
  for (const checked_foot& foot : walk.feet) {
    for (const bounds& row : bounds_table()) {
      // Pushing is 0 throughout where no rise of the heel is found, and clearances that are rounded
      // to a centimetre may well be the same in every stride.
      if (row.field == nullptr || row.column == "pur" || row.dim == dimension::length) {
        continue;
      }
      const std::vector<double> values = values_of(foot, usable, row.column, row.field);
      const std::size_t distinct = std::set<double>(values.begin(), values.end()).size();
      // Rounded values repeat; only of durations is it known how often.
      const bool few = row.column == "gct" && values.size() >= 30 && distinct < 10 &&
                       20 * distinct <= values.size();
      if (few || (values.size() >= 10 && distinct == 1)) {
        all.push_back(of_the_walk(
            foot_cycles_table, row.column, values.size(),
            "found " + std::to_string(distinct) + " different value" + (distinct == 1 ? "" : "s") +
                " in " + std::to_string(values.size()) + " strides of the " +
                std::string(foot.name) + " foot, expected a value of its own for almost each"));
      }
    }
  }
  return all;
}

std::vector<finding> one_sample_too_many(const checked_walk& walk, const usable& usable) {
  std::vector<finding> all;
  for (const checked_foot& foot : walk.feet) {
    std::size_t compared = 0;
    std::size_t too_many = 0;
    for (const cycle* stride : foot.included) {
      if (usable("gct", *stride)) {
        ++compared;
        too_many += static_cast<std::size_t>(
            !differs(samples_of(*stride) - stride->gct * foot.rate, 1.0, 0.25));
      }
    }
    constexpr std::size_t fewest_strides = 5;
    if (compared >= fewest_strides && too_many == compared) {
      all.push_back(of_the_walk(
          foot_cycles_table, "last_sample", compared,
          "found one sample more than gct in every stride of the " + std::string(foot.name) +
              " foot, expected last_sample to be the last one of the stride"));
    }
  }
  return all;
}

std::vector<finding> angles_in_radians(const checked_walk& walk, const usable& usable) {
  struct angle {
    std::string_view column;
    double cycle::*field;
  };
  constexpr std::array<angle, 4> angles = {{{"ta", &cycle::ta},
                                            {"top", &cycle::top},
                                            {"hsp", &cycle::hsp},
                                            {"strike_eversion", &cycle::strike_eversion}}};
  constexpr std::size_t fewest_strides = 5;
  constexpr double above_pi = 3.2;
  std::vector<finding> all;
  for (const angle& angle : angles) {
    std::vector<double> sizes;
    for (const checked_foot& foot : walk.feet) {
      for (const cycle* stride : foot.strides) {
        if (usable(angle.column, *stride)) {
          sizes.push_back(std::abs(stride->*angle.field));
        }
      }
    }
    if (sizes.size() < fewest_strides) {
      continue;
    }
    const double largest = *std::max_element(sizes.begin(), sizes.end());
    // Somebody who walks straight on turns by less than three degrees a stride, but not by less
    // than a tenth of a degree.
    const bool is_small = angle.column != "ta" || median(sizes) < 0.1;
    if (largest < above_pi && is_small && largest > 0.0) {
      all.push_back(of_the_walk(
          foot_cycles_table, angle.column, sizes.size(),
          "found no angle beyond " + number(largest) + ", expected degrees, some beyond 3.2",
          "radians?"));
      all.back().counted = "strides";
    }
  }
  return all;
}

}  // namespace

const std::vector<walk_rule>& walk_rules() {
  constexpr std::string_view of_170_walks = "170 measured walks, none of which breaks it";
  // clang-format off
  static const std::vector<walk_rule> rules = {
      {"strides_in_time_order", "first_sample and hs rise from stride to stride of a foot", "none", strides_in_time_order,
       "unsorted or reversed rows, an index by another key, or rows of two walks joined",
       "170 measured walks: 18 of 32,070 strides break it, whose times were made up"},
      {"links_in_order", "right_index and left_index rise from one cycle of both feet to the next", "none", links_in_order,
       "cycles sorted by another key", of_170_walks},
      {"linked_strides_overlap", "strides that one cycle of both feet links are made at the same time", "25 % of the shorter", linked_strides_overlap,
       "links that are shifted by some rows, feet with different clocks, or the feet's rows swapped", of_170_walks},
      {"unlinked_strides", "every stride is linked by a cycle of both feet", "none", unlinked_strides,
       "a stride before or after all of the other foot, one of the other foot that was not found, or links that are missing", "the statistics of both feet rest on the linked strides alone"},
      {"feet_cycle_duration", "gct of a cycle of both feet = gct of its right or left stride (s)", "1 %", feet_cycle_duration,
       "wrong links, or the feet's rows swapped", of_170_walks},
      {"feet_swapped", "cycles of both feet last as long as their right stride", "none", feet_swapped,
       "left and right swapped; switch the check off where cycles of both feet are made from left strides", of_170_walks},
      {"double_support_and_stances", "median of ds = stance right + stance left - 100 (%)", "5 points", double_support_and_stances,
       "one of the two phases alone, a fraction, seconds, or single support", "170 measured walks: their medians differ by 2.5 points at most"},
      {"step_times_of_a_stride", "step_time left + step_time of the next right stride = gct right (s)", "20 ms", step_times_of_a_stride,
       "step times that belong to the step that follows, or to the other foot", "170 measured walks: 3 of 1,121 strides break it"},
      {"step_lengths_of_a_stride", "step_length left + step_length of the next right stride = slength right (m)", "10 %", step_lengths_of_a_stride,
       "step lengths of the other foot, in centimetres, or measured along the diagonal", of_170_walks},
      {"durations_of_both_feet", "median gct of left and right", "a tenth", durations_of_both_feet,
       "strides of one foot that were regularly missed, step times on one side, or a stuck channel", "170 measured walks: 166 of 168 lie within 0.97 to 1.05"},
      {"stuck_column", "values differ from stride to stride", "one value in 10 strides; of gct, a twentieth in 30", stuck_column,
       "a column that is stuck, or filled down", "170 measured walks: the one that breaks it has a sensor fault"},
      {"one_sample_too_many", "last_sample belongs to the stride", "a quarter of a sample", one_sample_too_many,
       "a last_sample that is the first sample of the next stride: subtract 1", "170 measured walks, none of whose strides breaks it"},
      {"angles_in_radians", "some angle of the walk is larger than 3.2 (deg)", "none", angles_in_radians,
       "radians instead of degrees", "94 measured walks: the largest lift-off, strike and eversion angles are at least 50, 17.5 and 6.6 degrees"},
  };
  // clang-format on
  return rules;
}

}  // namespace gait_checks

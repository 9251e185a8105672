#include "walk_rules.h"

#include "values.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;

constexpr std::size_t fewest_for_a_median = 5;
constexpr double duration_percent = 1.0;
constexpr double double_support_points = 5.0;
constexpr double step_time_ms = 20.0;
constexpr double step_length_percent = 10.0;
constexpr interval ratio_of_durations = {0.9, 1.1};  // left / right

std::vector<finding> feet_cycle_duration(const checked_walk& walk, const value_filter& usable,
                                         alarm when) {
  tally neither(feet_cycles_table, "gct", included_pairs);
  const usable_values has_gct = usable("gct");
  std::size_t right = 0;  // cycles as long as the right stride alone
  std::size_t left = 0;   // cycles as long as the left stride alone
  for (const checked_pair& pair : walk.pairs) {
    const bool has_left = pair.left != nullptr && has_gct(*pair.left);
    const double gct = pair.cycle->gct;
    if (gait_is_missing(gct) || pair.right == nullptr || !has_gct(*pair.right)) {
      continue;
    }
    const double tolerance = duration_percent / 100.0 * std::abs(gct);
    const bool is_right = !differs(pair.right->gct, gct, tolerance);
    const bool is_left = has_left && !differs(pair.left->gct, gct, tolerance);
    right += static_cast<std::size_t>(is_right && !is_left);
    left += static_cast<std::size_t>(is_left && !is_right);
    neither.add(is_right || is_left, {"", pair.index, pair.index}, [&] {
      return "found " + number(gct) + ", expected " + number(pair.right->gct) +
             " s, the duration of its right stride";
    });
  }
  // Where more cycles have a duration of their own, the links or rows are wrong, and not the feet.
  const bool follow_a_foot = 20 * neither.broken() <= neither.compared();
  if (left < fewest_of_many || left <= 3 * right || !follow_a_foot) {
    return neither.findings(when);
  }
  finding swapped = of_the_walk(
      foot_cycles_table, "foot", included_pairs, neither.compared(),
      "found cycles of both feet that last as long as their left stride (" + std::to_string(left) +
          ") and not as their right one (" + std::to_string(right) + "), expected the right one",
      feet_swapped);
  swapped.broken = left;
  return {swapped};
}

/// What a median of double support gives away, where another one was expected (%).
std::string_view guess_double_support(double found, double expected) {
  if (!differs(found, expected / 100.0, 0.05)) {
    return "a fraction?";
  }
  if (!differs(found, expected / 2.0, 3.0)) {
    return "one of its two phases?";
  }
  return differs(found, 100.0 - expected, 5.0) ? "" : "single support?";
}

std::vector<finding> double_support_and_stances(const checked_walk& walk,
                                                const value_filter& usable, alarm /*when*/) {
  const usable_values has_ds = usable("ds");
  const usable_values has_stance = usable("stance");
  std::vector<double> measured;
  std::vector<double> expected_values;
  std::vector<double> deviations;
  for (const checked_pair& pair : walk.pairs) {
    if (pair.right != nullptr && pair.left != nullptr && !gait_is_missing(pair.cycle->ds) &&
        has_ds(*pair.right) && has_stance(*pair.right) && has_stance(*pair.left)) {
      measured.push_back(pair.cycle->ds);
      expected_values.push_back(pair.right->stance + pair.left->stance - 100.0);
      deviations.push_back(measured.back() - expected_values.back());
    }
  }
  if (measured.size() < fewest_for_a_median ||
      !differs(median(deviations), 0.0, double_support_points)) {
    return {};
  }
  const double found = median(measured);
  const double expected = median(expected_values);
  return {of_the_walk(feet_cycles_table, "ds", included_pairs, measured.size(),
                      "found a median of " + number(found) +
                          " %, expected that of stance right + stance left - 100, " +
                          number(expected) + " %, within " + number(double_support_points) +
                          " points",
                      guess_double_support(found, expected))};
}

/// A right stride, its left partner, and the right stride that follows it.
struct stride_of_two_steps {
  int cycle_of_feet;
  const cycle* right;
  const cycle* left;
  const cycle* next_right;
};

std::vector<stride_of_two_steps> strides_of_two_steps(const checked_walk& walk) {
  std::vector<stride_of_two_steps> strides;
  std::vector<const cycle*> right_strides;
  right_strides.reserve(walk.pairs.size());
  for (const checked_pair& pair : walk.pairs) {
    right_strides.push_back(pair.right);
  }
  const stride_set included(std::move(right_strides));
  for (const checked_pair& pair : walk.pairs) {
    if (pair.right == nullptr || pair.left == nullptr) {
      continue;
    }
    const auto& rights = walk.feet.front().strides;
    const auto next = static_cast<std::size_t>(pair.right->index) + 1;
    if (next < rights.size() && included.has(rights[next]) &&
        rights[next]->first_sample == std::int64_t{pair.right->last_sample} + 1) {
      strides.push_back({pair.index, pair.right, pair.left, rights[next]});
    }
  }
  return strides;
}

/// A value of a stride that is the sum over its two steps.
struct sum_of_steps {
  std::string_view whole;
  double cycle::*whole_field;
  std::string_view step;
  double cycle::*step_field;
  std::string_view unit;
};

/// Compares a value of a right stride with the sum over the two steps that it consists of.
/// `tolerance` gives that of the value.
template <class Tolerance>
std::vector<finding> compare_with_steps(const checked_walk& walk, const value_filter& usable,
                                        const sum_of_steps& sum, alarm when, Tolerance tolerance) {
  tally tally(foot_cycles_table, sum.step, included_strides);
  const usable_values has_whole = usable(sum.whole);
  const usable_values has_step = usable(sum.step);
  for (const stride_of_two_steps& stride : strides_of_two_steps(walk)) {
    if (!has_whole(*stride.right) || !has_step(*stride.left) || !has_step(*stride.next_right)) {
      continue;
    }
    const double found = stride.left->*sum.step_field + stride.next_right->*sum.step_field;
    const double expected = stride.right->*sum.whole_field;
    tally.add(!differs(found, expected, tolerance(expected)),
              {"right", stride.right->index, stride.cycle_of_feet}, [&] {
                return "found " + std::string(sum.step) + " left + " + std::string(sum.step) +
                       " of the next right stride = " + number(found) + ", expected " +
                       number(expected) + " " + std::string(sum.unit) + " (" +
                       std::string(sum.whole) + ")";
              });
  }
  return tally.findings(when);
}

std::vector<finding> step_times_of_a_stride(const checked_walk& walk, const value_filter& usable,
                                            alarm when) {
  const sum_of_steps sum = {"gct", &cycle::gct, "step_time", &cycle::step_time, "s"};
  return compare_with_steps(walk, usable, sum, when,
                            [](double /*expected*/) { return step_time_ms / 1000.0; });
}

std::vector<finding> step_lengths_of_a_stride(const checked_walk& walk, const value_filter& usable,
                                              alarm when) {
  const sum_of_steps sum = {"slength", &cycle::slength, "step_length", &cycle::step_length, "m"};
  return compare_with_steps(walk, usable, sum, when, [](double expected) {
    return step_length_percent / 100.0 * std::abs(expected);
  });
}

std::vector<finding> durations_of_both_feet(const checked_walk& walk, const value_filter& usable,
                                            alarm /*when*/) {
  if (walk.feet.size() < 2) {
    return {};
  }
  const std::vector<double> right = values_of(walk.feet[0], usable, "gct", &cycle::gct);
  const std::vector<double> left = values_of(walk.feet[1], usable, "gct", &cycle::gct);
  if (right.size() < fewest_for_a_median || left.size() < fewest_for_a_median ||
      ratio_of_durations.holds(median(left) / median(right))) {
    return {};
  }
  return {of_the_walk(foot_cycles_table, "gct", included_strides, right.size() + left.size(),
                      "found medians of " + number(median(left)) + " s left and " +
                          number(median(right)) + " s right, expected left / right of " +
                          in_words(ratio_of_durations, ""))};
}

}  // namespace

std::vector<walk_rule> both_feet_rules() {
  constexpr std::string_view of_170_walks = "170 measured walks, none of which breaks it";
  // clang-format off
  return {
      {"feet_cycle_duration", "gct of a cycle of both feet = gct of its right stride (s)", number(duration_percent) + " %", alarm::any, feet_cycle_duration,
       "wrong links, or feet swapped: column foot; --without-check feet_cycle_duration where the left foot leads", of_170_walks},
      {"double_support_and_stances", "median of ds = stance right + stance left - 100 (%)", number(double_support_points) + " points", alarm::any, double_support_and_stances,
       "one of the two phases alone, a fraction, seconds, or single support", "170 measured walks: their medians differ by 2.5 points at most"},
      {"step_times_of_a_stride", "step_time left + step_time of the next right stride = gct right (s)", number(step_time_ms) + " ms", alarm::many, step_times_of_a_stride,
       "step times that belong to the step that follows, or feet swapped: column foot", "170 measured walks: 3 of 1,121 strides break it"},
      {"step_lengths_of_a_stride", "step_length left + step_length of the next right stride = slength right (m)", number(step_length_percent) + " %", alarm::many, step_lengths_of_a_stride,
       "step lengths of the other foot, in centimetres, or measured along the diagonal", of_170_walks},
      {"durations_of_both_feet", "median gct of left / right", in_words(ratio_of_durations, ""), alarm::any, durations_of_both_feet,
       "strides of one foot that were regularly missed, step times on one side, or a stuck channel", "170 measured walks: 166 of 168 lie within 0.97 to 1.05"},
  };
  // clang-format on
}

}  // namespace gait_checks

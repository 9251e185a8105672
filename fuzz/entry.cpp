/// \file
/// The entry on whole walks of any values: what must hold of its output, whatever it is given.

#include <gait/catalogue.h>
#include <gait/generate_statistics.h>

#include "bits.h"
#include "by_steps.h"
#include "bytes_of.h"
#include "catalogue_keys.h"
#include "check.h"
#include "fuzzed_walk.h"
#include "input.h"
#include "text_of.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <list>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace {

using fuzz::check;
using gait_test::same_bits;
using indices = std::list<int>;
using numbers = std::vector<double>;
using parameters = std::unordered_map<std::string, gait_statistics_parameter>;

bool is_single_foot(const gait_result& result) { return result.foot_results.size() == 1; }

double sampling_rate(const gait_result& result) {
  return result.foot_results.front().recording->sampling_rate;
}

bool is_in(const indices& list, int index) {
  return std::find(list.begin(), list.end(), index) != list.end();
}

int wrapped(std::int64_t value) {
  return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

// ---- Values

/// The values over an index list, -1.0 where an index is out of range.
template <class Cycle, class ValueOf>
numbers values_over(const std::list<Cycle>& cycles, const indices& list, ValueOf value_of) {
  numbers all;
  std::transform(cycles.begin(), cycles.end(), std::back_inserter(all), value_of);
  numbers values;
  for (const int index : list) {
    const bool in_range = index >= 0 && static_cast<std::size_t>(index) < all.size();
    values.push_back(in_range ? all[static_cast<std::size_t>(index)] : -1.0);
  }
  return values;
}

numbers measured(numbers values) {
  values.erase(std::remove(values.begin(), values.end(), -1.0), values.end());
  return values;
}

double sum_of(const numbers& values) {
  double sum = 0.0;
  for (const double value : values) {
    sum += value;
  }
  return sum;
}

double squares_about(const numbers& values, double mean) {
  double sum = 0.0;
  for (const double value : values) {
    sum += by_steps::product(value - mean, value - mean);
  }
  return sum;
}

template <class Cycle>
double sum_over(const std::list<Cycle>& cycles, const indices& list, double Cycle::*field) {
  return sum_of(
      measured(values_over(cycles, list, [&](const Cycle& cycle) { return cycle.*field; })));
}

bool same_bits_each(const numbers& a, const numbers& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same_bits);
}

// ---- The accounting

/// The indices of all of `count` cycles, or of those that are not excluded.
indices cycles_of(std::size_t count, const gait_result& result, bool with_excluded) {
  indices list;
  for (int index = 0; static_cast<std::size_t>(index) < count; ++index) {
    if (with_excluded || (!is_in(result.excluded_1, index) && !is_in(result.excluded_2, index))) {
      list.push_back(index);
    }
  }
  return list;
}

indices linked(const gait_result& result, const indices& feet_cycles,
               gait_foot_cycle* gait_feet_cycle::*side) {
  indices list;
  for (const int index : feet_cycles) {
    const gait_foot_cycle* cycle = (*std::next(result.feet_result.cycles.begin(), index)).*side;
    list.push_back(cycle != nullptr ? cycle->index : -1);
  }
  return list;
}

/// The durations that the exclusions of a walk add up to. `cycles` are those that are analysed.
template <class Cycle>
void check_durations(const gait_result& result, const std::list<Cycle>& cycles) {
  const gait_statistics_info& info = result.statistics.info;
  const auto duration = [&](const indices& list) { return sum_over(cycles, list, &Cycle::gct); };
  const double fallback_1 = duration(result.excluded_1_fallback);
  const double fallback_2 = duration(result.excluded_2_fallback);
  const bool primary_1 = !result.excluded_1.empty();
  const bool primary_2 = !result.excluded_2.empty();

  check(same_bits(info.excluded_1_fallback_gct_sum, fallback_1), "excluded_1_fallback_gct_sum");
  check(same_bits(info.excluded_1_fallback_duration, primary_1 ? 0.0 : fallback_1),
        "excluded_1_fallback_duration");
  check(same_bits(info.excluded_1_duration, primary_1 ? duration(result.excluded_1) : fallback_1),
        "excluded_1_duration");
  check(same_bits(info.excluded_2_fallback_duration, primary_2 ? 0.0 : fallback_2),
        "excluded_2_fallback_duration");
  check(same_bits(info.excluded_2_duration, primary_2 ? duration(result.excluded_2) : fallback_2),
        "excluded_2_duration");
  check(same_bits(info.included_duration,
                  info.duration - (info.excluded_2_duration + info.excluded_1_duration)),
        "included_duration is duration less both kinds of exclusion");
  check(same_bits(info.included_gct_sum, duration(info.cycles)), "included_gct_sum");

  const bool kind_2_took_any =
      std::any_of(result.excluded_2.begin(), result.excluded_2.end(), [&](int index) {
        return index >= 0 && static_cast<std::size_t>(index) < cycles.size() &&
               !is_in(result.excluded_1, index);
      });
  check(same_bits(info.excluded_2_gct_sum,
                  kind_2_took_any ? duration(result.excluded_2) : fallback_2),
        "excluded_2_gct_sum");
}

void check_counts(const gait_result& result, std::size_t cycles) {
  const gait_statistics_info& info = result.statistics.info;
  const auto length = [](const indices& list) { return static_cast<std::uint32_t>(list.size()); };
  const bool primary_1 = !result.excluded_1.empty();
  const bool primary_2 = !result.excluded_2.empty();
  check(info.cycle_count == static_cast<int>(cycles),
        "cycle_count is the number of analysed cycles");
  check(info.cycles == cycles_of(cycles, result, false),
        "cycles are those that no primary list names");
  check(info.cycle_count == info.excluded_count + static_cast<int>(info.cycles.size()),
        "cycles are included or excluded");
  check(info.excluded_1_count == length(primary_1 ? result.excluded_1 : result.excluded_1_fallback),
        "excluded_1_count");
  check(info.excluded_1_fallback_count == (primary_1 ? 0 : info.excluded_1_count),
        "excluded_1_fallback_count");
  check(info.excluded_2_count == (primary_2 ? length(result.excluded_2) : 2), "excluded_2_count");
  check(info.excluded_2_fallback_count == (primary_2 ? 0 : 2), "excluded_2_fallback_count");
  check(info.included_count ==
            wrapped(std::int64_t{info.cycle_count} - info.excluded_2_count - info.excluded_1_count),
        "included_count is cycle_count less both counts");
}

/// The extent of the walk. `feet` are those that are analysed, the one that measures the distance
/// first.
void check_extent(const gait_result& result, const std::vector<const gait_foot_result*>& feet,
                  const indices& all_cycles, const indices& included_cycles) {
  const gait_statistics_info& info = result.statistics.info;
  std::uint64_t samples = std::numeric_limits<std::uint64_t>::max();
  int first = std::numeric_limits<int>::max();
  int last = std::numeric_limits<int>::lowest();
  for (const gait_foot_result* foot : feet) {
    samples = std::min({samples, foot->recording->signals.at(1).sample_count,
                        foot->recording->signals.at(2).sample_count});
    first = std::min(first, foot->cycles.front().first_sample);
    last = std::max(last, foot->cycles.back().last_sample);
  }
  const double rate = sampling_rate(result);
  check(same_bits(info.recording_duration, static_cast<double>(samples) / rate),
        "recording_duration");
  check(same_bits(info.duration, (wrapped(std::int64_t{last} - first) + 1.0) / rate), "duration");
  const auto distance = [&](const indices& list) {
    return sum_over(feet.front()->cycles, list, &gait_foot_cycle::slength);
  };
  check(same_bits(info.total_distance, distance(all_cycles)), "total_distance");
  check(same_bits(info.included_distance, distance(included_cycles)), "included_distance");
}

void check_accounting(const gait_result& result) {
  if (is_single_foot(result)) {
    const gait_foot_result& foot = result.foot_results.front();
    check_counts(result, foot.cycles.size());
    check_durations(result, foot.cycles);
    check_extent(result, {&foot}, cycles_of(foot.cycles.size(), result, true),
                 result.statistics.info.cycles);
  } else {
    const auto& feet_cycles = result.feet_result.cycles;
    const auto right = [&](const indices& list) {
      return linked(result, list, &gait_feet_cycle::right_cycle);
    };
    check_counts(result, feet_cycles.size());
    check_durations(result, feet_cycles);
    check_extent(result, {result.right_foot, result.left_foot},
                 right(cycles_of(feet_cycles.size(), result, true)),
                 right(result.statistics.info.cycles));
  }
}

// ---- The parameters

void check_no_statistics(const gait_statistics_parameter& p) {
  check(!p.valid, "without a measured value, a parameter is not valid");
  for (const double statistic : {p.mean, p.median, p.std, p.iqr, p.min, p.max, p.cv}) {
    check(statistic == -1.0, "without a measured value, every statistic is missing");
  }
}

void check_order(const gait_statistics_parameter& p, const numbers& sample) {
  const numbers quartiles = by_steps::percentile(sample, {25.0, 75.0});
  const double q1 = quartiles[0];
  const double q3 = quartiles[1];
  check(same_bits(p.median, by_steps::percentile(sample, {50.0})[0]),
        "the median is percentile 50");
  check(same_bits(p.iqr, q3 - q1), "iqr is percentile 75 less percentile 25");
  check(p.min == *std::min_element(sample.begin(), sample.end()), "min is the smallest value");
  check(p.max == *std::max_element(sample.begin(), sample.end()), "max is the largest value");
  // Beyond this, differences and sums of two values may be infinite.
  const double largest = std::numeric_limits<double>::max() / 4;
  if (p.min > -largest && p.max < largest) {
    check(p.min <= q1 && q1 <= p.median && p.median <= q3 && q3 <= p.max,
          "min <= Q1 <= median <= Q3 <= max");
    check(p.iqr >= 0.0 && p.std >= 0.0, "a spread is not negative");
  }
}

void check_statistics(const gait_statistics_parameter& p, bool with_cv) {
  const numbers sample = measured(p.values);
  if (sample.empty()) {
    check_no_statistics(p);
    return;
  }
  const auto n = static_cast<double>(sample.size());
  check(p.valid, "with a measured value, a parameter is valid");
  check(same_bits(p.mean, sum_of(sample) / n), "mean");
  check(same_bits(p.std,
                  sample.size() == 1 ? 0.0 : std::sqrt(squares_about(sample, p.mean) / (n - 1.0))),
        "std");
  const bool has_cv = with_cv && sample.size() >= 10 && std::fabs(p.mean) > 2.220446049250313e-16;
  check(same_bits(p.cv, has_cv ? 100.0 * p.std / p.mean : -1.0), "cv");
  if (std::none_of(sample.begin(), sample.end(), [](double value) { return std::isnan(value); })) {
    check_order(p, sample);
  }
}

/// One side of a walk: its cycles and those of both feet that count.
struct side {
  std::string suffix;
  const gait_foot_result& foot;
  indices cycles;
  const gait_feet_result* feet;  ///< null with one foot
  indices feet_cycles;
};

template <class Row>
numbers values_of(const Row& row, const side& side) {
  const auto value_of = [&](const auto& cycle) { return row.value(cycle); };
  if constexpr (std::is_same_v<typename Row::result_type, gait_feet_result>) {
    return side.feet != nullptr ? values_over(side.feet->cycles, side.feet_cycles, value_of)
                                : numbers();
  } else {
    return values_over(side.foot.cycles, side.cycles, value_of);
  }
}

/// Whether a side has the parameter of a row: double support takes two feet, and so does a step
/// length of its own.
template <class Row>
bool has_row(const side& side) {
  using tag = typename Row::tag_type;
  constexpr bool takes_two = std::is_same_v<tag, DS> || std::is_same_v<tag, STEPLENGTH>;
  constexpr bool takes_one = std::is_same_v<tag, STEPLENGTH_ALT>;
  return side.feet != nullptr ? !takes_one : !takes_two;
}

/// Checks the parameters of a side that are not in `before`. Returns the keys of all of them.
std::set<std::string> check_side(const parameters& now, const parameters& before,
                                 const side& side) {
  std::set<std::string> keys;
  gait_catalogue::for_each_row([&](const auto& row) {
    if (!has_row<std::decay_t<decltype(row)>>(side)) {
      return;
    }
    const std::string key = row.key + side.suffix;
    keys.insert(key);
    check(now.count(key) == 1, "every parameter of a side is there");
    if (before.count(key) != 0) {
      return;
    }
    const gait_statistics_parameter& p = now.at(key);
    check(p.description == row.description && p.unit == row.unit && p.decimals == row.decimals,
          "texts are the catalogue's");
    check(p.asymmetry_enabled == (row.sides == gait_catalogue::ratio),
          "asymmetry_enabled is the catalogue's");
    check(same_bits_each(p.values, values_of(row, side)),
          "values are those of the included cycles");
    check_statistics(p, row.spread == gait_catalogue::cv);
  });
  check(keys.size() == gait_test::keys_of_side(side.feet != nullptr).size(),
        "a side has every parameter that is built for it");
  return keys;
}

/// The swing asymmetry over what both sides hold.
gait_statistics_parameter swing_asymmetry(const gait_result& result) {
  const numbers& left = result.statistics.parameters.at("swing_L").values;
  const numbers& right = result.statistics.parameters.at("swing_R").values;
  gait_statistics_parameter p;
  p.description = "Asymmetry";
  p.decimals = 3;
  p.valid = !left.empty() && !right.empty();
  p.mean = p.std = 0.0;
  if (p.valid) {
    for (std::size_t i = 0;
         i < std::min({left.size(), right.size(), result.statistics.info.cycles.size()}); ++i) {
      if (left[i] > 0.0 && right[i] > 0.0) {
        p.values.push_back(((left[i] - right[i]) * sampling_rate(result)) / (left[i] + right[i]));
      }
    }
    p.mean = sum_of(p.values) / static_cast<double>(p.values.size());
    p.std =
        std::sqrt(squares_about(p.values, p.mean) / (static_cast<double>(p.values.size()) - 1.0));
  }
  return p;
}

void check_swing_asymmetry(const gait_statistics_parameter& now,
                           const gait_statistics_parameter& expected) {
  check(now.valid == expected.valid && same_bits_each(now.values, expected.values),
        "values of the swing asymmetry");
  check(same_bits(now.mean, expected.mean) && same_bits(now.std, expected.std),
        "mean and deviation of the swing asymmetry");
  check(now.description == expected.description && now.unit.empty() && now.decimals == 3 &&
            !now.asymmetry_enabled,
        "texts of the swing asymmetry");
  for (const double statistic : {now.median, now.iqr, now.min, now.max, now.cv, now.asymmetry}) {
    check(statistic == -1.0, "the swing asymmetry has a mean and a deviation alone");
  }
}

// ---- Left and right

/// Checks the ratios of two feet. No two left keys of a fuzzed walk lead to the same right one.
void check_ratios(const parameters& now, const parameters& before, bool two_feet) {
  std::set<std::string> compared;
  for (const auto& [key, left] : now) {
    const std::size_t suffix = key.find("_L");
    const std::string partner = key.substr(0, suffix) + "_R";
    if (!two_feet || !left.asymmetry_enabled || suffix == std::string::npos ||
        now.count(partner) == 0) {
      continue;
    }
    const gait_statistics_parameter& right = now.at(partner);
    check(same_bits(right.asymmetry, left.mean != 0.0 ? right.mean / left.mean : 0.0),
          "ratio of right to left");
    check(same_bits(left.asymmetry, right.mean != 0.0 ? 1.0 / right.asymmetry : 0.0),
          "ratio of left to right");
    compared.insert({key, partner});
  }
  for (const auto& [key, parameter] : now) {
    const auto kept = before.find(key);
    const double ratio = kept != before.end() ? kept->second.asymmetry : -1.0;
    check(compared.count(key) != 0 || same_bits(parameter.asymmetry, ratio),
          "without a partner, a ratio stays as it is");
  }
}

bool is_implausible_speed(const gait_statistics_parameter& speed) {
  return speed.mean < 0.31 || speed.mean > 1.8;
}

int quality_flags(const gait_result& result, double setting) {
  const parameters& now = result.statistics.parameters;
  int flags = setting > 0.0 && !(setting >= 10.0 && setting <= 34.0) ? 1 : 0;
  flags += result.statistics.info.cycle_count <= 4 ? 2 : 0;
  if (is_single_foot(result)) {
    return flags + (is_implausible_speed(now.at("speed")) ? 4 : 0);
  }
  flags += is_implausible_speed(now.at("speed_R")) ? 8 : 0;
  flags += is_implausible_speed(now.at("speed_L")) ? 16 : 0;
  const gait_statistics_parameter swing = swing_asymmetry(result);
  return flags + (swing.valid && std::fabs(swing.mean) >= 20.0 && swing.std != 0.0 ? 128 : 0);
}

// ---- The whole output

void check_parameters(const gait_result& result, const parameters& before) {
  const parameters& now = result.statistics.parameters;
  const indices& included = result.statistics.info.cycles;
  std::set<std::string> keys;
  if (is_single_foot(result)) {
    keys = check_side(now, before, {"", result.foot_results.front(), included, nullptr, {}});
  } else {
    const indices right = linked(result, included, &gait_feet_cycle::right_cycle);
    const indices left = linked(result, included, &gait_feet_cycle::left_cycle);
    keys =
        check_side(now, before, {"_R", *result.right_foot, right, &result.feet_result, included});
    keys.merge(
        check_side(now, before, {"_L", *result.left_foot, left, &result.feet_result, included}));
    check(now.count("asymmetry") == 1, "two feet have a swing asymmetry");
    if (before.count("asymmetry") == 0) {
      check_swing_asymmetry(now.at("asymmetry"), swing_asymmetry(result));
    }
    keys.insert("asymmetry");
  }
  for (const auto& [key, parameter] : before) {
    check(now.count(key) == 1 && gait_test::bytes_without_ratio(now.at(key)) ==
                                     gait_test::bytes_without_ratio(parameter),
          "an entry that was there is kept");
    keys.insert(key);
  }
  check(now.size() == keys.size(), "nothing else is added");
}

void check_output(const gait_result& result, const parameters& before, double setting) {
  check_accounting(result);
  check_parameters(result, before);
  check_ratios(result.statistics.parameters, before, !is_single_foot(result));
  check(result.quality_flags == quality_flags(result, setting), "quality_flags");
}

bool lacks_a_signal(const gait_result& result) {
  const auto lacks = [](const gait_foot_result& foot) {
    return foot.recording->signals.count(1) == 0 || foot.recording->signals.count(2) == 0;
  };
  return is_single_foot(result) ? lacks(result.foot_results.front())
                                : lacks(*result.left_foot) || lacks(*result.right_foot);
}

/// Whether the call came to its end, and not to a signal that is not there.
bool analyse(fuzz::fuzzed_walk& walk) {
  const std::string before = gait_test::bytes_of_input(walk.result);
  bool done = false;
  try {
    done = gait_generate_statistics(walk.result, walk.settings);
    check(done, "the call returns true");
  } catch (const std::out_of_range& error) {
    check(error.what() == std::string("unordered_map::at: key not found"),
          "the text of the exception");
  }
  check(gait_test::bytes_of_input(walk.result) == before, "the call leaves its input as it is");
  return done;
}

void analyse_and_check(fuzz::fuzzed_walk& walk) {
  const parameters before = walk.result.statistics.parameters;
  check(analyse(walk), "with every signal there, the call throws nothing");
  check_output(walk.result, before, walk.settings.settings_value);
}

void check_same_output(const gait_result& now, const gait_result& expected, const char* what) {
  if (gait_test::bytes_of_output(now) != gait_test::bytes_of_output(expected)) {
    fuzz::fail(what + gait_test::difference(gait_test::text_of_output(expected),
                                            gait_test::text_of_output(now)));
  }
}

void check_untouched(fuzz::fuzzed_walk& walk, bool comes_to_its_end) {
  const std::string before = gait_test::bytes_of_output(walk.result);
  check(analyse(walk) == comes_to_its_end,
        "a signal that is not there is an exception, no feet are none");
  check(gait_test::bytes_of_output(walk.result) == before,
        "a call that computes nothing writes nothing");
}

}  // namespace

// The fuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  fuzz::fuzzed_walk walk(fuzz::input(bytes, size));
  if (walk.result.foot_results.empty() || lacks_a_signal(walk.result)) {
    check_untouched(walk, walk.result.foot_results.empty());
    return 0;
  }
  analyse_and_check(walk);

  fuzz::fuzzed_walk same(fuzz::input(bytes, size));
  analyse(same);
  check_same_output(same.result, walk.result,
                    "the same walk elsewhere in memory gives the same:\n");
  analyse(same);
  check_same_output(same.result, walk.result, "a second call changes nothing:\n");

  // The parameters of the call before are now those that are kept.
  walk.result.excluded_1.swap(walk.result.excluded_2);
  walk.result.excluded_1_fallback.swap(walk.result.excluded_2_fallback);
  analyse_and_check(walk);
  return 0;
}

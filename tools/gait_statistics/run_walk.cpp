#include "run_walk.h"

#include "number.h"

#include <gait/catalogue.h>
#include <gait/generate_statistics.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace gait_program {
namespace {

using gait_walk::exclusion_list;

/// The reasons of the list that is accounted for.
counted_reasons reasons_of(const gait_walk::walk& walk, gait_walk::analysed_cycles cycles,
                           exclusion_list primary, exclusion_list fallback) {
  const auto is_of = [&](const auto& exclusion, exclusion_list list) {
    return exclusion.cycles == cycles && exclusion.list == list;
  };
  const bool has_primary =
      std::any_of(walk.exclusions.begin(), walk.exclusions.end(),
                  [&](const auto& exclusion) { return is_of(exclusion, primary); });
  counted_reasons reasons;
  std::unordered_map<std::string_view, std::size_t> places;
  for (const auto& exclusion : walk.exclusions) {
    if (!is_of(exclusion, has_primary ? primary : fallback) || exclusion.reason.empty()) {
      continue;
    }
    const auto [place, is_new] = places.emplace(exclusion.reason, reasons.size());
    if (is_new) {
      reasons.emplace_back(exclusion.reason, 0);
    }
    ++reasons[place->second].second;
  }
  return reasons;
}

/// The stride length that the distance takes of each analysed cycle.
std::vector<double> summed_stride_lengths(const gait_result& result, bool both_feet) {
  std::vector<double> lengths;
  if (both_feet) {
    for (const auto& cycle : result.feet_result.cycles) {
      lengths.push_back(cycle.right_cycle != nullptr ? cycle.right_cycle->slength : gait_missing);
    }
  } else {
    for (const auto& cycle : result.foot_results.front().cycles) {
      lengths.push_back(cycle.slength);
    }
  }
  return lengths;
}

stride_length_gaps find_stride_length_gaps(const gait_result& result, bool both_feet) {
  const std::vector<double> lengths = summed_stride_lengths(result, both_feet);
  const std::list<int>& included = result.statistics.info.cycles;
  stride_length_gaps gaps;
  gaps.cycles = lengths.size();
  gaps.without =
      static_cast<std::size_t>(std::count_if(lengths.begin(), lengths.end(), gait_is_missing));
  gaps.included = included.size();
  gaps.included_without =
      static_cast<std::size_t>(std::count_if(included.begin(), included.end(), [&](int index) {
        return gait_is_missing(lengths.at(static_cast<std::size_t>(index)));
      }));
  return gaps;
}

void describe_feet(walk_statistics& statistics, gait_walk::analysed_cycles cycles) {
  const gait_result& result = statistics.result();
  if (statistics.both_feet) {
    statistics.sides = {{"right", "_R"}, {"left", "_L"}};
    statistics.feet = {{"right", result.right_foot->cycles.size()},
                       {"left", result.left_foot->cycles.size()}};
  } else {
    const std::string name = cycles == gait_walk::analysed_cycles::left ? "left" : "right";
    statistics.sides = {{name, ""}};
    statistics.feet = {{name, result.foot_results.front().cycles.size()}};
  }
}

std::optional<double> number_if(bool computed, double value) {
  return computed ? std::optional(value) : std::nullopt;
}

/// What the record holds, told apart from gait_missing by `valid`: a mean may well be -1.
computed_statistics statistics_of(const gait_statistics_parameter& record) {
  computed_statistics statistics;
  statistics.n =
      record.values.size() - static_cast<std::size_t>(std::count_if(
                                 record.values.begin(), record.values.end(), gait_is_missing));
  statistics.mean = number_if(record.valid, record.mean);
  statistics.median = number_if(record.valid, record.median);
  statistics.std = number_if(record.valid, record.std);
  statistics.iqr = number_if(record.valid, record.iqr);
  statistics.min = number_if(record.valid, record.min);
  statistics.max = number_if(record.valid, record.max);
  statistics.cv = number_if(record.valid && !gait_is_missing(record.cv), record.cv);
  return statistics;
}

/// Fills in the ratios of both sides. The library divides by a missing mean as by any other; such a
/// quotient compares nothing.
void compute_ratios(computed_parameter& parameter) {
  const bool all_measured = std::all_of(parameter.sides.begin(), parameter.sides.end(),
                                        [](const auto& side) { return side.record->valid; });
  for (auto& side : parameter.sides) {
    side.statistics.ratio =
        number_if(all_measured && side.record->asymmetry_enabled, side.record->asymmetry);
  }
}

std::string speed_in_words(const walk_statistics& walk, const std::string& side,
                           const std::string& suffix) {
  const auto& speed =
      walk.result().statistics.parameters.at(gait_catalogue::row_of<SPEED>.key + suffix);
  const std::string subject = "The stride velocity of the " + side + " foot ";
  return subject + (speed.valid ? "is not plausible: its mean is outside " +
                                      shortest(gait_quality_speed_min) + " to " +
                                      shortest(gait_quality_speed_max) + " m/s."
                                : "was not measured.");
}

}  // namespace

walk_statistics prepare_walk(gait_walk::walk walk, std::optional<gait_walk::side> foot,
                             float settings_value) {
  const auto cycles = gait_walk::cycles_of(walk, foot);
  walk_statistics statistics;
  statistics.name = walk.name;
  statistics.settings_value = settings_value;
  statistics.both_feet = cycles == gait_walk::analysed_cycles::feet;
  statistics.excluded_1_reasons =
      reasons_of(walk, cycles, exclusion_list::excluded_1, exclusion_list::excluded_1_fallback);
  statistics.excluded_2_reasons =
      reasons_of(walk, cycles, exclusion_list::excluded_2, exclusion_list::excluded_2_fallback);
  statistics.analysis = gait_walk::make_analysis(std::move(walk), foot);
  statistics.sampling_rate = statistics.result().foot_results.front().recording->sampling_rate;
  describe_feet(statistics, cycles);
  return statistics;
}

void compute_statistics(walk_statistics& statistics) {
  gait_generate_statistics(statistics.analysis.result, {statistics.settings_value});
  statistics.stride_lengths = find_stride_length_gaps(statistics.result(), statistics.both_feet);
}

bool computed_parameter::has_values() const {
  return std::any_of(sides.begin(), sides.end(),
                     [](const auto& side) { return side.record->valid; });
}

std::vector<computed_parameter> parameters_of(const walk_statistics& walk) {
  std::vector<computed_parameter> parameters;
  for (auto& row : list_parameters_of(walk.both_feet)) {
    computed_parameter parameter;
    for (const auto& side : walk.sides) {
      std::string key = row.key + side.suffix;
      const gait_statistics_parameter& record = walk.result().statistics.parameters.at(key);
      parameter.sides.push_back({&side, std::move(key), &record, statistics_of(record)});
    }
    if (walk.both_feet) {
      compute_ratios(parameter);
    }
    parameter.row = std::move(row);
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

const gait_statistics_parameter* swing_asymmetry_record(const walk_statistics& walk) {
  return walk.both_feet ? &walk.result().statistics.parameters.at(swing_asymmetry_key) : nullptr;
}

computed_statistics swing_asymmetry_of(const gait_statistics_parameter& record) {
  computed_statistics statistics;
  // Every value was computed; one that is -1 is not missing.
  statistics.n = record.values.size();
  statistics.mean = number_if(record.valid, record.mean);
  statistics.std = number_if(record.valid, record.std);
  return statistics;
}

std::vector<std::string> quality_flags_in_words(const walk_statistics& walk) {
  const auto raised = [&](gait_quality_flag flag) {
    return (walk.result().quality_flags & flag) != 0;
  };
  std::vector<std::string> words;
  if (raised(gait_quality_setting)) {
    words.push_back("The settings value, " + shortest(walk.settings_value) + ", is not within " +
                    shortest(gait_quality_setting_min) + " to " +
                    shortest(gait_quality_setting_max) + ".");
  }
  if (raised(gait_quality_few_cycles)) {
    words.push_back("The walk has " + std::to_string(gait_quality_few_cycles_max) +
                    " cycles or fewer.");
  }
  if (raised(gait_quality_speed)) {
    words.push_back(speed_in_words(walk, walk.sides.front().name, ""));
  }
  if (raised(gait_quality_speed_right)) {
    words.push_back(speed_in_words(walk, "right", "_R"));
  }
  if (raised(gait_quality_speed_left)) {
    words.push_back(speed_in_words(walk, "left", "_L"));
  }
  if (raised(gait_quality_swing_asymmetry)) {
    words.push_back("The swing asymmetry is large: its mean is " +
                    shortest(gait_quality_swing_asymmetry_min) + " or more, or " +
                    shortest(-gait_quality_swing_asymmetry_min) + " or less.");
  }
  return words;
}

std::size_t halved_missing_stride_lengths(const walk_statistics& walk) {
  return walk.both_feet ? 0 : walk.stride_lengths.included_without;
}

}  // namespace gait_program

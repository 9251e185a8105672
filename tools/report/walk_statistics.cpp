#include "walk_statistics.h"

#include "names.h"
#include "number.h"

#include <gait/catalogue.h>
#include <gait/generate_statistics.h>
#include <gait/matching_cycles.h>
#include <gait/quality_flags.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <list>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

/// Indices of cycles whose stride lengths make up the total distance, -1 where a two-feet cycle has
/// none.
std::list<int> summed_cycles(const gait_result& result, bool both_feet) {
  std::list<int> all(both_feet ? result.feet_result.cycles.size()
                               : result.foot_results.front().cycles.size());
  std::iota(all.begin(), all.end(), 0);
  return both_feet ? gait_matching_cycles(result.feet_result, all, &gait_feet_cycle::right_cycle)
                   : all;
}

stride_length_gaps find_stride_length_gaps(const walk_statistics& walk) {
  const gait_result& result = walk.result();
  std::vector<double> lengths;
  for (const auto& cycle :
       (walk.both_feet() ? *result.right_foot : result.foot_results.front()).cycles) {
    lengths.push_back(cycle.slength);
  }
  const std::list<int> all = summed_cycles(result, walk.both_feet());
  stride_length_gaps gaps;
  gaps.cycles = all.size();
  gaps.without = static_cast<std::size_t>(std::count_if(all.begin(), all.end(), [&](int index) {
    return index < 0 || gait_is_missing(lengths.at(static_cast<std::size_t>(index)));
  }));
  const auto& included = result.statistics.parameters.at(gait_catalogue::row_of<SLENGTH>.key +
                                                         walk.sides.front().suffix);
  gaps.included = included.values.size();
  gaps.included_without = gaps.included - gait_sample_size(included);
  return gaps;
}

std::vector<reported_side> sides_of(const gait_result& result,
                                    gait_walk::analysed_cycles analysed) {
  using gait_walk::side;
  switch (analysed) {
    case gait_walk::analysed_cycles::left:
      return {{side::left, "", result.foot_results.front().cycles.size()}};
    case gait_walk::analysed_cycles::right:
      return {{side::right, "", result.foot_results.front().cycles.size()}};
    case gait_walk::analysed_cycles::feet:
      break;
  }
  return {{side::right, "_R", result.right_foot->cycles.size()},
          {side::left, "_L", result.left_foot->cycles.size()}};
}

std::optional<double> number_if(bool computed, double value) {
  return computed ? std::optional(value) : std::nullopt;
}

/// What the record holds, told apart from gait_missing by `valid`: a mean may well be -1.
computed_statistics statistics_of(const gait_statistics_parameter& record) {
  computed_statistics statistics;
  statistics.n = gait_sample_size(record);
  const bool has_spread = statistics.n > 1;
  statistics.mean = number_if(record.valid, record.mean);
  statistics.median = number_if(record.valid, record.median);
  statistics.std = number_if(has_spread, record.std);
  statistics.iqr = number_if(has_spread, record.iqr);
  statistics.min = number_if(record.valid, record.min);
  statistics.max = number_if(record.valid, record.max);
  statistics.cv = number_if(record.valid && !gait_is_missing(record.cv), record.cv);
  return statistics;
}

bool is_step_length(const listed_parameter& row) {
  return row.key == gait_catalogue::row_of<STEPLENGTH>.key;
}

/// A missing stride length becomes -0.5 m when the library halves it, and counts as measured.
/// Statistics with such values in them are about no step.
void leave_out_halved_lengths(computed_parameter& parameter, const walk_statistics& walk) {
  const std::size_t halved = halved_missing_stride_lengths(walk);
  if (!is_step_length(parameter.row) || halved == 0) {
    return;
  }
  for (auto& side : parameter.sides) {
    side.statistics = {};
    side.statistics.n = walk.stride_lengths.included - halved;
  }
  if (!parameter.has_values()) {
    return;
  }
  parameter.why_none =
      "It is half of the stride length, which " + std::to_string(halved) + " of " +
      std::to_string(walk.stride_lengths.included) + " included strides " +
      (halved == 1 ? "does" : "do") +
      " not have; the library counts that as -0.5 m. Therefore there are no statistics of it.";
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

gait_quality_flag speed_flag(const reported_side& side) {
  if (side.suffix.empty()) {
    return gait_quality_speed;
  }
  return side.foot == gait_walk::side::right ? gait_quality_speed_right : gait_quality_speed_left;
}

std::string speed_in_words(const walk_statistics& walk, const reported_side& side) {
  const auto& speed =
      walk.result().statistics.parameters.at(gait_catalogue::row_of<SPEED>.key + side.suffix);
  const std::string subject =
      "The stride velocity of the " + std::string(name_of(side.foot)) + " foot ";
  return subject + (speed.valid ? "is not plausible: its mean is outside " +
                                      shortest(gait_quality_speed_min) + " to " +
                                      shortest(gait_quality_speed_max) + " m/s."
                                : "was not measured.");
}

bool length_is_known(const std::optional<gait_walk::foot>& foot) {
  return !foot || gait_walk::recorded_samples(*foot);
}

/// Whether the analysed feet say how long they were recorded.
bool length_is_known(const gait_walk::walk& walk, gait_walk::analysed_cycles analysed) {
  using gait_walk::analysed_cycles;
  return (analysed == analysed_cycles::left || length_is_known(walk.right)) &&
         (analysed == analysed_cycles::right || length_is_known(walk.left));
}

/// Takes the lines out of the walk.
table_lines lines_of(gait_walk::walk& walk) {
  table_lines lines;
  if (walk.right) {
    lines.right = std::move(walk.right->lines);
  }
  if (walk.left) {
    lines.left = std::move(walk.left->lines);
  }
  lines.feet = std::move(walk.feet_lines);
  return lines;
}

}  // namespace

walk_statistics prepare_walk(gait_walk::walk walk, gait_walk::analysed_cycles asked_for,
                             float settings_value) {
  const auto cycles = gait_walk::cycles_of(walk, asked_for);
  walk_statistics statistics;
  statistics.name = walk.name;
  statistics.settings_value = settings_value;
  statistics.analysed = cycles;
  std::copy_if(walk.exclusions.begin(), walk.exclusions.end(),
               std::back_inserter(statistics.exclusions),
               [&](const auto& exclusion) { return exclusion.cycles == cycles; });
  statistics.about = std::move(walk.about);
  statistics.recording_length_is_known = length_is_known(walk, cycles);
  statistics.lines = lines_of(walk);
  statistics.analysis = gait_walk::make_analysis(std::move(walk), asked_for);
  statistics.sampling_rate = statistics.result().foot_results.front().recording->sampling_rate;
  statistics.sides = sides_of(statistics.result(), cycles);
  return statistics;
}

void compute_figures(walk_statistics& walk) {
  gait_generate_statistics(walk.analysis.result, {walk.settings_value});
  walk.stride_lengths = find_stride_length_gaps(walk);
}

void check_data(walk_statistics& walk, const std::vector<std::string>& without_checks) {
  const gait_result& result = walk.result();
  const gait_foot_result* right = result.right_foot;
  const gait_foot_result* left = result.left_foot;
  if (!walk.both_feet()) {
    const gait_foot_result* foot = &result.foot_results.front();
    const bool is_right = walk.analysed == gait_walk::analysed_cycles::right;
    right = is_right ? foot : nullptr;
    left = is_right ? nullptr : foot;
  }
  walk.findings = gait_checks::check_walk(result, right, left, without_checks);
  walk.notes = gait_checks::notes_on(result, right, left);
}

void compute_statistics(walk_statistics& statistics,
                        const std::vector<std::string>& without_checks) {
  compute_figures(statistics);
  check_data(statistics, without_checks);
}

void add_warnings(walk_statistics& statistics,
                  const std::vector<gait_walk::input_error>& warnings) {
  std::vector<gait_checks::note> notes;
  notes.reserve(warnings.size());
  for (gait_walk::input_error warning : warnings) {
    // The same walk gives the same output wherever its folder lies.
    warning.file = std::filesystem::path(warning.file).filename().string();
    notes.push_back({"warning", warning.message() + ".", ""});
  }
  statistics.notes.insert(statistics.notes.begin(), notes.begin(), notes.end());
}

bool computed_parameter::has_values() const {
  return std::any_of(sides.begin(), sides.end(),
                     [](const auto& side) { return side.statistics.n > 0; });
}

std::vector<computed_parameter> parameters_of(const walk_statistics& walk) {
  std::vector<computed_parameter> parameters;
  for (const auto& row : list_parameters_of(walk.both_feet())) {
    computed_parameter parameter;
    parameter.row = row;
    for (const auto& side : walk.sides) {
      std::string key = row.key + side.suffix;
      const gait_statistics_parameter& record = walk.result().statistics.parameters.at(key);
      parameter.sides.push_back({&side, std::move(key), &record, statistics_of(record)});
    }
    if (walk.both_feet()) {
      compute_ratios(parameter);
    }
    leave_out_halved_lengths(parameter, walk);
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

bool computed_parameter::has_telling_ratio() const {
  // Less than a deviation away from 0, the sign of the mean is that of some strides only.
  const auto is_clear_of_zero = [this](const auto& side) {
    const auto& [mean, std] = std::pair(side.statistics.mean, side.statistics.std);
    return mean && (std ? std::abs(*mean) > *std : row.has_cv);
  };
  return row.has_ratio && sides.size() == 2 &&
         std::all_of(sides.begin(), sides.end(), is_clear_of_zero) &&
         (*sides[0].statistics.mean > 0.0) == (*sides[1].statistics.mean > 0.0);
}

std::string swing_asymmetry_unit(const walk_statistics& walk) {
  return "% x " + std::to_string(walk.sampling_rate) + " Hz / 100 Hz";
}

const gait_statistics_parameter* swing_asymmetry_record(const walk_statistics& walk) {
  return walk.both_feet() ? &walk.result().statistics.parameters.at(swing_asymmetry_key) : nullptr;
}

computed_statistics swing_asymmetry_of(const gait_statistics_parameter& record) {
  computed_statistics statistics;
  // Every value was computed; one that is -1 is not missing.
  statistics.n = record.values.size();
  statistics.mean = number_if(statistics.n > 0, record.mean);
  statistics.std = number_if(statistics.n > 1, record.std);
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
  for (const auto& side : walk.sides) {
    if (raised(speed_flag(side))) {
      words.push_back(speed_in_words(walk, side));
    }
  }
  if (raised(gait_quality_swing_asymmetry)) {
    const double limit = gait_quality_swing_asymmetry_min;
    words.push_back(
        "The swing asymmetry is large: as the library scales it, by the sampling rate "
        "of " +
        std::to_string(walk.sampling_rate) + " Hz, its mean is " + shortest(limit) +
        " or more, or " + shortest(-limit) + " or less. That is " +
        rounded(100.0 * limit / walk.sampling_rate, 1) + " %.");
  }
  return words;
}

std::size_t halved_missing_stride_lengths(const walk_statistics& walk) {
  return walk.both_feet() ? 0 : walk.stride_lengths.included_without;
}

}  // namespace gait_report

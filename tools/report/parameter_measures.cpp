#include "parameter_measures.h"

#include "mean_precision.h"
#include "quantiles.h"
#include "walk_strides.h"

#include <gait/catalogue.h>
#include <gait/matching_cycles.h>

#include <list>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

std::vector<int> as_vector(const std::list<int>& indices) {
  return {indices.begin(), indices.end()};
}

/// The index of each included cycle of a side in the list of all its foot's cycles; -1 where a
/// two-feet cycle has none.
std::vector<int> positions_of(const walk_statistics& walk, const reported_side& side) {
  const std::list<int>& included = walk.info().cycles;
  if (!walk.both_feet()) {
    return as_vector(included);
  }
  const auto link = side.foot == gait_walk::side::right ? &gait_feet_cycle::right_cycle
                                                        : &gait_feet_cycle::left_cycle;
  return as_vector(gait_matching_cycles(walk.result().feet_result, included, link));
}

/// Whether missing stride lengths, halved, are among the parameter's values.
bool holds_halved_gaps(const walk_statistics& walk, const listed_parameter& row) {
  return row.key == gait_catalogue::row_of<STEPLENGTH>.key &&
         halved_missing_stride_lengths(walk) > 0;
}

parameter_measures measures_of_side(const listed_parameter& row,
                                    const gait_statistics_parameter& record,
                                    const std::vector<int>& positions) {
  parameter_measures measures;
  const gait_measures::quantiles quantiles = gait_measures::quantiles_of(record.values);
  measures.q1 = quantiles.q1;
  measures.q3 = quantiles.q3;
  measures.p5 = quantiles.p5;
  measures.p95 = quantiles.p95;
  if (!row.has_ratio && !row.has_cv) {
    return measures;
  }
  if (const auto precision = gait_measures::precision_of_mean(record.values, positions)) {
    measures.effective_strides = precision->effective_strides;
    measures.standard_error = precision->standard_error;
  }
  return measures;
}

/// The sides are right and left, in this order.
std::optional<double> symmetry_index_of(const computed_parameter& parameter) {
  if (parameter.sides.size() != 2 || !parameter.row.has_ratio || !parameter.row.has_cv) {
    return std::nullopt;
  }
  const gait_statistics_parameter& right = *parameter.sides.front().record;
  const gait_statistics_parameter& left = *parameter.sides.back().record;
  return right.valid && left.valid ? gait_measures::symmetry_index(right.mean, left.mean)
                                   : std::nullopt;
}

}  // namespace

std::unordered_map<std::string, parameter_measures> measures_of(const walk_statistics& walk) {
  return measures_of(walk, parameters_of(walk));
}

std::unordered_map<std::string, parameter_measures> measures_of(
    const walk_statistics& walk, const std::vector<computed_parameter>& parameters) {
  std::vector<std::vector<int>> positions;
  positions.reserve(walk.sides.size());
  for (const reported_side& side : walk.sides) {
    positions.push_back(positions_of(walk, side));
  }
  const std::vector<int> included = as_vector(walk.info().cycles);

  std::unordered_map<std::string, parameter_measures> measures;
  for (const computed_parameter& parameter : parameters) {
    const std::optional<double> symmetry_index = symmetry_index_of(parameter);
    for (std::size_t i = 0; i < parameter.sides.size(); ++i) {
      const side_of_parameter& side = parameter.sides[i];
      parameter_measures& of_side = measures[side.key];
      if (!holds_halved_gaps(walk, parameter.row)) {
        of_side = measures_of_side(parameter.row, *side.record,
                                   is_of_both_feet(parameter.row) ? included : positions[i]);
      }
      of_side.symmetry_index = symmetry_index;
    }
  }
  return measures;
}

std::optional<gait_measures::swing_asymmetry> swing_asymmetry_in_percent(
    const walk_statistics& walk) {
  if (!walk.both_feet()) {
    return std::nullopt;
  }
  const auto& parameters = walk.result().statistics.parameters;
  const std::string swing = gait_catalogue::row_of<SWING>.key;
  return gait_measures::swing_asymmetry_in_percent(parameters.at(swing + "_R").values,
                                                   parameters.at(swing + "_L").values);
}

}  // namespace gait_report

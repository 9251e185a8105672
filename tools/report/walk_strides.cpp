#include "walk_strides.h"

#include "parameter_measures.h"

#include <gait/catalogue.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

using gait_walk::exclusion_list;

bool is_fallback(exclusion_list list) {
  return list == exclusion_list::excluded_1_fallback || list == exclusion_list::excluded_2_fallback;
}

/// Says what each exclusion does. The library traverses list after list, and so do the exclusions.
class exclusion_effects {
public:
  exclusion_effects(const gait_result& result, std::size_t cycles)
      : result_(result), is_out_(cycles, false) {}

  exclusion_effect of(exclusion_list list, int index) {
    if (is_fallback(list) && !primary_of(list).empty()) {
      return exclusion_effect::nothing;
    }
    if (index < 0 || static_cast<std::size_t>(index) >= is_out_.size()) {
      return exclusion_effect::outside;
    }
    if (is_fallback(list)) {
      return exclusion_effect::accounted_for;
    }
    const auto place = static_cast<std::size_t>(index);
    const bool was_out = is_out_[place];
    is_out_[place] = true;
    return was_out ? exclusion_effect::already_left_out : exclusion_effect::left_out;
  }

private:
  const std::list<int>& primary_of(exclusion_list fallback) const {
    return fallback == exclusion_list::excluded_1_fallback ? result_.excluded_1
                                                           : result_.excluded_2;
  }

  const gait_result& result_;
  std::vector<bool> is_out_;
};

std::vector<listed_exclusion> exclusions_of(const walk_statistics& walk, std::size_t cycles) {
  exclusion_effects effects(walk.result(), cycles);
  std::vector<listed_exclusion> listed;
  listed.reserve(walk.exclusions.size());
  for (const auto& list : gait_walk::names<exclusion_list>) {
    for (const auto& exclusion : walk.exclusions) {
      if (exclusion.list == list.value) {
        listed.push_back({exclusion.list, exclusion.index, exclusion.reason,
                          effects.of(exclusion.list, exclusion.index)});
      }
    }
  }
  return listed;
}

bool took_out(const listed_exclusion& exclusion) {
  return exclusion.effect == exclusion_effect::left_out;
}

/// For each cycle, which exclusions name it; the one that took it out before all others, also
/// before one of a fallback list that is traversed earlier.
std::vector<std::vector<std::size_t>> by_cycle(const std::vector<listed_exclusion>& exclusions,
                                               std::size_t cycles) {
  std::vector<std::vector<std::size_t>> named(cycles);
  for (std::size_t i = 0; i < exclusions.size(); ++i) {
    const auto index = static_cast<std::size_t>(exclusions[i].index);
    if (exclusions[i].index < 0 || index >= cycles) {
      continue;
    }
    auto& places = named[index];
    places.insert(took_out(exclusions[i]) ? places.begin() : places.end(), i);
  }
  return named;
}

stride_status status_of(const std::vector<std::size_t>& exclusions,
                        const std::vector<listed_exclusion>& listed) {
  return !exclusions.empty() && took_out(listed[exclusions.front()]) ? stride_status::left_out
                                                                     : stride_status::included;
}

std::optional<std::size_t> line_at(const std::vector<std::size_t>& lines, int index) {
  const auto place = static_cast<std::size_t>(index);
  return place < lines.size() ? std::optional(lines[place]) : std::nullopt;
}

std::optional<int> index_of(const gait_foot_cycle* cycle) {
  return cycle != nullptr ? std::optional(cycle->index) : std::nullopt;
}

std::vector<two_feet_cycle> two_feet_cycles_of(const walk_statistics& walk) {
  std::vector<two_feet_cycle> cycles;
  for (const gait_feet_cycle& values : walk.result().feet_result.cycles) {
    two_feet_cycle cycle;
    cycle.index = static_cast<int>(cycles.size());
    cycle.values = &values;
    cycle.right = index_of(values.right_cycle);
    cycle.left = index_of(values.left_cycle);
    cycle.line = line_at(walk.lines.feet, cycle.index);
    cycles.push_back(std::move(cycle));
  }
  return cycles;
}

const gait_foot_result& foot_of(const walk_statistics& walk, gait_walk::side side) {
  const gait_result& result = walk.result();
  if (!walk.both_feet()) {
    return result.foot_results.front();
  }
  return side == gait_walk::side::right ? *result.right_foot : *result.left_foot;
}

/// The strides of a side with what they are by themselves.
side_strides bare_strides_of(const walk_statistics& walk, const reported_side& side) {
  const bool is_right = side.foot == gait_walk::side::right;
  const auto& lines = is_right ? walk.lines.right : walk.lines.left;
  const double rate = walk.sampling_rate;
  side_strides strides;
  strides.side = side;
  strides.strides.reserve(side.cycles);
  for (const gait_foot_cycle& values : foot_of(walk, side.foot).cycles) {
    walk_stride stride;
    stride.index = static_cast<int>(strides.strides.size());
    stride.values = &values;
    stride.start = values.first_sample / rate;
    stride.end = (values.last_sample + 1.0) / rate;
    stride.line = line_at(lines, stride.index);
    strides.strides.push_back(std::move(stride));
  }
  return strides;
}

void link(side_strides& side, const std::vector<two_feet_cycle>& cycles) {
  const bool is_right = side.side.foot == gait_walk::side::right;
  for (walk_stride& stride : side.strides) {
    stride.status = stride_status::unlinked;
  }
  for (const two_feet_cycle& cycle : cycles) {
    const std::optional<int> index = is_right ? cycle.right : cycle.left;
    if (!index) {
      continue;
    }
    walk_stride& stride = side.strides[static_cast<std::size_t>(*index)];
    stride.cycle = &cycle;
    stride.status = cycle.status;
    stride.exclusions = cycle.exclusions;
    stride.partner = is_right ? cycle.left : cycle.right;
  }
}

void count(side_strides& side, const walk_strides& walk) {
  for (const walk_stride& stride : side.strides) {
    switch (stride.status) {
      case stride_status::included:
        ++side.included;
        break;
      case stride_status::left_out:
        ++side.left_out;
        count_reason(side.left_out_reasons, left_out_by(walk, stride)->reason);
        break;
      case stride_status::unlinked:
        ++side.unlinked;
        break;
    }
  }
}

/// The library's values are those of the cycles that have one, in order; those in percent have an
/// entry for each included cycle.
void add_swing_asymmetries(std::vector<two_feet_cycle>& cycles, const walk_statistics& walk) {
  const auto& values = swing_asymmetry_record(walk)->values;
  const auto percent = swing_asymmetry_in_percent(walk)->values;
  std::size_t next_value = 0;
  std::size_t next_percent = 0;
  for (two_feet_cycle& cycle : cycles) {
    if (cycle.status != stride_status::included) {
      continue;
    }
    if (next_percent < percent.size()) {
      cycle.swing_asymmetry_percent = percent[next_percent++];
    }
    const gait_foot_cycle* const right = cycle.values->right_cycle;
    const gait_foot_cycle* const left = cycle.values->left_cycle;
    const bool has_one =
        right != nullptr && left != nullptr && right->swing > 0.0 && left->swing > 0.0;
    if (has_one && next_value < values.size()) {
      cycle.swing_asymmetry = values[next_value++];
    }
  }
}

}  // namespace

walk_strides strides_of(const walk_statistics& walk) {
  walk_strides strides;
  strides.cycles = two_feet_cycles_of(walk);
  for (const reported_side& side : walk.sides) {
    strides.sides.push_back(bare_strides_of(walk, side));
  }
  const auto fill_in = [&](auto& cycles) {
    strides.exclusions = exclusions_of(walk, cycles.size());
    auto named = by_cycle(strides.exclusions, cycles.size());
    for (std::size_t i = 0; i < cycles.size(); ++i) {
      cycles[i].status = status_of(named[i], strides.exclusions);
      cycles[i].exclusions = std::move(named[i]);
    }
  };
  if (walk.both_feet()) {
    fill_in(strides.cycles);
    add_swing_asymmetries(strides.cycles, walk);
    for (side_strides& side : strides.sides) {
      link(side, strides.cycles);
    }
  } else {
    fill_in(strides.sides.front().strides);
  }
  for (side_strides& side : strides.sides) {
    count(side, strides);
  }
  return strides;
}

std::optional<double> if_measured(double value) {
  return gait_is_missing(value) ? std::nullopt : std::optional(value);
}

std::vector<std::optional<double>> values_of(const walk_stride& stride, bool both_feet) {
  std::vector<std::optional<double>> values;
  gait_catalogue::for_each_row([&](const auto& row) {
    using row_type = std::decay_t<decltype(row)>;
    if (!gait_catalogue::is_built(row.when, both_feet)) {
      return;
    }
    if constexpr (std::is_same_v<typename row_type::result_type, gait_feet_result>) {
      values.push_back(stride.cycle != nullptr ? if_measured(row.value(*stride.cycle->values))
                                               : std::nullopt);
    } else if constexpr (std::is_same_v<typename row_type::tag_type, STEPLENGTH_ALT>) {
      const bool is_measured = !gait_is_missing(stride.values->slength);
      values.push_back(is_measured ? if_measured(row.value(*stride.values)) : std::nullopt);
    } else {
      values.push_back(if_measured(row.value(*stride.values)));
    }
  });
  return values;
}

void count_reason(counted_reasons& reasons, const std::string& reason) {
  const auto known = std::find_if(reasons.begin(), reasons.end(),
                                  [&](const auto& counted) { return counted.first == reason; });
  if (known == reasons.end()) {
    reasons.emplace_back(reason, 1);
  } else {
    ++known->second;
  }
}

bool is_of_both_feet(const listed_parameter& parameter) {
  return parameter.key == gait_catalogue::row_of<DS>.key;
}

}  // namespace gait_report

#include "analysis.h"

#include "columns.h"
#include "names.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace gait_walk {

namespace {

template <class Walk>
auto& foot_of(Walk& walk, side side) {
  return side == side::left ? walk.left : walk.right;
}

/// The foot that must be there: the one that is analysed alone, or either of two.
side needed_foot(analysed_cycles cycles) {
  return cycles == analysed_cycles::right ? side::right : side::left;
}

sensor_recording recording_of(const foot& foot) {
  sensor_recording recording;
  recording.sampling_rate = foot.sampling_rate;
  // Where one signal's length alone is known, it is the recording's.
  const std::uint64_t samples = recorded_samples(foot).value_or(0);
  recording.signals[1].sample_count = foot.signal_1_samples.value_or(samples);
  recording.signals[2].sample_count = foot.signal_2_samples.value_or(samples);
  return recording;
}

void add_foot(foot foot, analysis& analysis) {
  analysis.recordings.push_back(recording_of(foot));
  analysis.result.foot_results.push_back({std::move(foot.cycles), &analysis.recordings.back()});
}

/// The cycles of a foot by index. The list is traversed once for all links, not once for each.
std::vector<gait_foot_cycle*> by_index(gait_foot_result& foot) {
  std::vector<gait_foot_cycle*> cycles;
  cycles.reserve(foot.cycles.size());
  for (gait_foot_cycle& cycle : foot.cycles) {
    cycles.push_back(&cycle);
  }
  return cycles;
}

gait_foot_cycle* linked(const std::vector<gait_foot_cycle*>& cycles, std::optional<int> index) {
  return index ? cycles.at(static_cast<std::size_t>(*index)) : nullptr;
}

void link_feet(const walk& walk, gait_result& result) {
  result.left_foot = &result.foot_results.front();
  result.right_foot = &result.foot_results.back();
  const auto left = by_index(*result.left_foot);
  const auto right = by_index(*result.right_foot);
  for (const feet_cycle& cycle : walk.feet) {
    result.feet_result.cycles.push_back(
        {cycle.gct, cycle.ds, linked(right, cycle.right_index), linked(left, cycle.left_index)});
  }
}

std::list<int>& list_of(gait_result& result, exclusion_list list) {
  switch (list) {
    case exclusion_list::excluded_1_fallback:
      return result.excluded_1_fallback;
    case exclusion_list::excluded_2:
      return result.excluded_2;
    case exclusion_list::excluded_2_fallback:
      return result.excluded_2_fallback;
    case exclusion_list::excluded_1:
      break;
  }
  return result.excluded_1;
}

bool takes_out(exclusion_list list) {
  return list == exclusion_list::excluded_1 || list == exclusion_list::excluded_2;
}

/// Whether an analysis keeps at least one of `count` cycles.
bool keeps_any(const walk& walk, analysed_cycles cycles, std::size_t count) {
  std::vector<bool> excluded(count, false);
  for (const exclusion& exclusion : walk.exclusions) {
    const auto index = static_cast<std::size_t>(exclusion.index);
    if (exclusion.cycles == cycles && takes_out(exclusion.list) && exclusion.index >= 0 &&
        index < count) {
      excluded[index] = true;
    }
  }
  return std::find(excluded.begin(), excluded.end(), false) != excluded.end();
}

/// The cycles of both feet that are not excluded, although their stride of this foot is.
short_list cycles_of_excluded_strides(const walk& walk, side side) {
  const auto own = side == side::left ? analysed_cycles::left : analysed_cycles::right;
  std::set<int> of_the_foot;
  std::set<int> of_both;
  for (const exclusion& exclusion : walk.exclusions) {
    if (takes_out(exclusion.list) && exclusion.cycles == own) {
      of_the_foot.insert(exclusion.index);
    } else if (takes_out(exclusion.list) && exclusion.cycles == analysed_cycles::feet) {
      of_both.insert(exclusion.index);
    }
  }
  short_list kept;
  for (std::size_t i = 0; i < walk.feet.size(); ++i) {
    const std::optional<int> link =
        side == side::left ? walk.feet[i].left_index : walk.feet[i].right_index;
    if (link && of_the_foot.count(*link) != 0 && of_both.count(static_cast<int>(i)) == 0) {
      kept.add(i);
    }
  }
  return kept;
}

/// Whoever excludes a stride of one foot may believe that it is excluded everywhere.
std::vector<input_error> warnings_about_kept_strides(const walk& walk, const std::string& folder) {
  std::vector<input_error> warnings;
  for (const side foot : {side::right, side::left}) {
    const short_list kept = cycles_of_excluded_strides(walk, foot);
    if (kept.count() == 0) {
      continue;
    }
    const std::string name(name_of(foot));
    std::string text = "found strides of \"" + name;
    text += "\" excluded, but not their cycles of both feet (";
    text += kept.text("index", "indices");
    text += R"(), expected rows of "feet" for them: where both feet are analysed, rows of ")";
    text += name;
    text += "\" exclude nothing";
    warnings.push_back({table_file<exclusion_row>(folder), 0, "cycles", std::move(text)});
  }
  return warnings;
}

}  // namespace

analysed_cycles cycles_of(const walk& walk, analysed_cycles asked_for) {
  if (asked_for != analysed_cycles::feet || (walk.left && walk.right)) {
    return asked_for;
  }
  return walk.left ? analysed_cycles::left : analysed_cycles::right;
}

analysis make_analysis(walk walk, analysed_cycles asked_for) {
  const analysed_cycles cycles = cycles_of(walk, asked_for);
  const side foot = needed_foot(cycles);
  if (!foot_of(walk, foot)) {
    throw std::invalid_argument("the walk has no " + std::string(name_of(foot)) + " foot");
  }
  analysis analysis;
  if (cycles == analysed_cycles::feet) {
    // The result's pointers to its feet stay good because both are there before the first is
    // pointed to.
    add_foot(*std::move(walk.left), analysis);
    add_foot(*std::move(walk.right), analysis);
    link_feet(walk, analysis.result);
  } else {
    add_foot(*std::move(foot_of(walk, foot)), analysis);
  }
  for (const exclusion& exclusion : walk.exclusions) {
    if (exclusion.cycles == cycles) {
      list_of(analysis.result, exclusion.list).push_back(exclusion.index);
    }
  }
  return analysis;
}

std::vector<input_error> check_analysis(const walk& walk, analysed_cycles asked_for,
                                        const std::string& folder) {
  const analysed_cycles cycles = cycles_of(walk, asked_for);
  const side foot = needed_foot(cycles);
  if (!foot_of(walk, foot)) {
    return {{table_file<recording_row>(folder), 0, "foot",
             "found no " + std::string(name_of(foot)) +
                 " foot, expected the foot that is to be analysed"}};
  }
  const std::size_t count =
      cycles == analysed_cycles::feet ? walk.feet.size() : foot_of(walk, foot)->cycles.size();
  if (!keeps_any(walk, cycles, count)) {
    return {{table_file<exclusion_row>(folder), 0, "",
             "found all " + std::to_string(count) + " cycles of \"" + std::string(name_of(cycles)) +
                 "\" excluded, expected at least one to be left"}};
  }
  return {};
}

std::vector<input_error> analysis_warnings(const walk& walk, analysed_cycles asked_for,
                                           const std::string& folder) {
  const analysed_cycles cycles = cycles_of(walk, asked_for);
  const auto is_of_another = [&](const exclusion& exclusion) { return exclusion.cycles != cycles; };
  if (walk.exclusions.empty()) {
    return {};
  }
  if (!std::all_of(walk.exclusions.begin(), walk.exclusions.end(), is_of_another)) {
    return cycles == analysed_cycles::feet ? warnings_about_kept_strides(walk, folder)
                                           : std::vector<input_error>();
  }
  return {{table_file<exclusion_row>(folder), 0, "cycles",
           "found exclusions, but none of \"" + std::string(name_of(cycles)) +
               "\", the cycles that are analysed: nothing is excluded"}};
}

}  // namespace gait_walk

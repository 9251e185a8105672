#include <gait/eigen.h>

#include <gait/generate_statistics.h>

#include "asymmetry.h"
#include "cycle_selection.h"
#include "mode.h"
#include "quality_flags.h"
#include "recording.h"

#include <gait/build_parameters.h>
#include <gait/compute_info.h>
#include <gait/cycle_access.h>
#include <gait/int32_count.h>
#include <gait/matching_cycles.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <list>
#include <utility>

namespace {

using gait_detail::cycle_selection;
using gait_detail::index_sum;
using gait_detail::sample_count_of;
using gait_detail::to_int32;

/// The samples of the recordings that the walk takes up.
struct walk_span {
  int first_sample;
  int last_sample;  ///< inclusive
};

walk_span span_of(const gait_foot_result& foot) {
  return {foot.cycles.front().first_sample, foot.cycles.back().last_sample};
}

/// What the accounting needs of the walk as a whole.
struct walk_extent {
  std::uint64_t sample_count;  ///< samples that every signal has
  walk_span span;
  double total_distance;     ///< (m)
  double included_distance;  ///< (m)
};

/// Writes the accounting of the walk, the same in both modes but for the result whose cycles are
/// analysed.
template <class ResultT>
void write_info(gait_result& result, const ResultT& analysed, const cycle_selection& selection,
                const walk_extent& walk) {
  const auto duration_sum = [&](const std::list<int>& indices) {
    return index_sum(analysed.cycles, indices, gait_detail::summed_field<ResultT, GCT>);
  };
  // Here it matters whether kind 2 took a cycle out, and not whether its list holds anything, as in
  // the counts: where kind 1 took all of these cycles out first, the fallback list is summed.
  const double excluded_2_sum =
      duration_sum(selection.kind_2_took_any() ? result.excluded_2 : result.excluded_2_fallback);
  const double excluded_1_fallback_sum = duration_sum(result.excluded_1_fallback);
  const double included_sum = duration_sum(selection.cycles());
  const double rate = gait_detail::sampling_rate(result);
  const int sample_span = to_int32(std::int64_t{walk.span.last_sample} - walk.span.first_sample);
  std::list<int> included = selection.cycles();

  gait_statistics_info& info = result.statistics.info;
  info.recording_duration = static_cast<double>(walk.sample_count) / rate;
  info.duration = (sample_span + 1.0) / rate;
  info.excluded_1_fallback_gct_sum = excluded_1_fallback_sum;
  info.excluded_2_gct_sum = excluded_2_sum;
  info.included_gct_sum = included_sum;
  info.included_distance = walk.included_distance;
  info.total_distance = walk.total_distance;
  info.cycle_count = selection.cycle_count();
  info.excluded_count = selection.excluded_count();
  info.cycles = std::move(included);
  gait_statistics_compute_info<ResultT, GCT>(info, analysed, result, GCT{}, info.cycle_count,
                                             info.duration);
}

void analyse_single_foot(gait_result& result) {
  const gait_foot_result& foot = result.foot_results.front();
  const std::uint64_t sample_count = sample_count_of(foot);

  cycle_selection selection(foot.cycles.size());
  const auto distance = [&] {
    return index_sum(foot.cycles, selection.cycles(), &gait_foot_cycle::slength);
  };
  const double total_distance = distance();
  selection.exclude(result);

  write_info(result, foot, selection, {sample_count, span_of(foot), total_distance, distance()});
  gait_statistics_build_parameters(result.statistics, foot, selection.cycles(), "", nullptr,
                                   nullptr);
}

void analyse_two_feet(gait_result& result) {
  const gait_foot_result& left = *result.left_foot;
  const gait_foot_result& right = *result.right_foot;
  gait_feet_result& feet = result.feet_result;
  const std::uint64_t left_count = sample_count_of(left);
  const std::uint64_t sample_count = std::min(left_count, sample_count_of(right));
  const walk_span left_span = span_of(left);
  const walk_span right_span = span_of(right);
  const walk_span span = {std::min(left_span.first_sample, right_span.first_sample),
                          std::max(left_span.last_sample, right_span.last_sample)};

  cycle_selection selection(feet.cycles.size());
  // The right foot alone measures the walk, and only by the cycles that some two-feet cycle points
  // to.
  const auto distance = [&](const std::list<int>& right_cycles) {
    return index_sum(right.cycles, right_cycles, &gait_foot_cycle::slength);
  };
  const double total_distance =
      distance(gait_matching_cycles(feet, selection.cycles(), &gait_feet_cycle::right_cycle));
  selection.exclude(result);

  const std::list<int> right_cycles =
      gait_matching_cycles(feet, selection.cycles(), &gait_feet_cycle::right_cycle);
  const std::list<int> left_cycles =
      gait_matching_cycles(feet, selection.cycles(), &gait_feet_cycle::left_cycle);
  write_info(result, feet, selection, {sample_count, span, total_distance, distance(right_cycles)});
  gait_statistics_build_parameters(result.statistics, right, right_cycles, "_R", &feet,
                                   &selection.cycles());
  gait_statistics_build_parameters(result.statistics, left, left_cycles, "_L", &feet,
                                   &selection.cycles());
}

}  // namespace

bool gait_generate_statistics(gait_result& result,
                              const gait_generate_statistics_settings& settings) {
  if (result.foot_results.empty()) {
    return true;
  }
  if (gait_detail::is_single_foot(result)) {
    analyse_single_foot(result);
    gait_detail::write_quality_flags(result, settings);
  } else {
    analyse_two_feet(result);
    gait_detail::write_ratios(result.statistics);
    gait_detail::write_quality_flags(result, settings);
    gait_detail::add_swing_asymmetry(result);
  }
  return true;
}

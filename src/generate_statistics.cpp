#include <gait/eigen.h>

#include <gait/generate_statistics.h>

#include "asymmetry.h"
#include "is_included_in.h"
#include "mode.h"
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
#include <numeric>
#include <utility>

namespace {

using gait_detail::index_sum;
using gait_detail::sample_count_of;
using gait_detail::to_int32;

/// The cycles that count, on their way from all cycles to those that are left.
class cycle_selection {
public:
  /// Selects every cycle of a list of `size`, in ascending order.
  explicit cycle_selection(std::size_t size)
      : cycle_count_(to_int32(static_cast<std::int64_t>(size))) {
    cycles_.resize(static_cast<std::size_t>(std::max(cycle_count_, 0)));
    std::iota(cycles_.begin(), cycles_.end(), 0);
  }

  /// Takes out the cycles of both primary exclusion lists; the fallback lists never take anything
  /// out.
  void exclude(const gait_result& result) {
    cycles_.remove_if(IsIncludedIn(result.excluded_1));
    const auto remaining_after_kind_1 = cycles_.size();
    cycles_.remove_if(IsIncludedIn(result.excluded_2));
    kind_2_took_any_ = cycles_.size() != remaining_after_kind_1;
  }

  const std::list<int>& cycles() const { return cycles_; }
  int cycle_count() const { return cycle_count_; }
  int excluded_count() const {
    return to_int32(std::int64_t{cycle_count_} - static_cast<std::int64_t>(cycles_.size()));
  }
  bool kind_2_took_any() const { return kind_2_took_any_; }

private:
  int cycle_count_;
  std::list<int> cycles_;
  bool kind_2_took_any_ = false;
};

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
  // Whether kind 2 took a cycle out decides here, not whether its list holds anything, as in the
  // counts: a list of cycles that kind 1 took out already leaves this sum to the fallback list.
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

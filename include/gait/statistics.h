#ifndef GAIT_STATISTICS_H
#define GAIT_STATISTICS_H

/// \file
/// The output records: the statistics of every gait parameter, and the cycle accounting of the
/// walk.
///
/// Plain records with public members, copied and moved as values. gait_generate_statistics() fills
/// one gait_statistics; the caller reads it out of its gait_result.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <unordered_map>
#include <vector>

// NaN counts as a measured value throughout the library. A compiler that may assume that there are
// no NaNs drops the comparisons that rely on them, silently and only in some places.
#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
// clang-format off
#error "gait_statistics needs NaN and signed zero: compile without -ffast-math and -ffinite-math-only"
// clang-format on
#endif

/// The missing value: a per-cycle value that was not measured, and a statistic that could not be
/// computed.
///
/// A value is missing only when it compares equal to -1.0. Every other value counts as measured:
/// NaN, other negative values, and -0.999 too.
inline constexpr double gait_missing = -1.0;

/// Whether a value is the missing value; false for NaN.
constexpr bool gait_is_missing(double value) { return value == gait_missing; }

/// The descriptive statistics of one gait parameter on one side, over the cycles that count.
///
/// The sample is the list of `values` that are not missing; its size n is gait_sample_size(). When
/// it is empty, `valid` is false and every statistic is gait_missing. The entry "asymmetry"
/// differs: see gait_generate_statistics().
struct gait_statistics_parameter {
  bool valid = false;       ///< true when at least one value entered the statistics
  std::string description;  ///< name of the parameter, for people ("Cycle duration")
  std::string unit;         ///< unit of values, mean, median, std, iqr, min and max ("seconds")
  /// Decimal places to show the values with, 0 to 3; enters no computation.
  int decimals = 0;
  /// One entry per position of the cycle index list, in its order: the cycle's value, or
  /// gait_missing where the index was out of range or the cycle has no value.
  std::vector<double> values;
  double mean = gait_missing;    ///< arithmetic mean (unit)
  double median = gait_missing;  ///< 50th percentile (unit)
  /// Standard deviation with divisor n - 1 (unit); 0.0 for a single value.
  double std = gait_missing;
  /// 75th minus 25th percentile (unit), Hyndman and Fan 1996, definition 5.
  double iqr = gait_missing;
  double min = gait_missing;  ///< smallest value (unit)
  double max = gait_missing;  ///< largest value (unit)
  /// Coefficient of variation, 100 * std / mean (percent). gait_missing for parameters without one,
  /// with fewer than 10 values, and when |mean| is not above the double epsilon.
  double cv = gait_missing;
  bool asymmetry_enabled = false;  ///< whether a left/right ratio is computed for this parameter
  /// This side's mean / the other side's mean (no unit); two-feet mode, see there.
  double asymmetry = gait_missing;
};

/// The size n of a parameter's sample: how many of its `values` are not missing.
///
/// Not for the entry "asymmetry": each of its values was computed, one of -1.0 too, and n is their
/// number. O(n), throws nothing.
inline std::size_t gait_sample_size(const gait_statistics_parameter& parameter) noexcept {
  const auto& values = parameter.values;
  return values.size() -
         static_cast<std::size_t>(std::count_if(values.begin(), values.end(), gait_is_missing));
}

/// The cycle accounting of the walk: durations, distances, and what each kind of exclusion took
/// out.
///
/// What the two kinds stand for (turns, starts, outliers, ...) is the caller's choice. The fallback
/// list of a kind counts where its primary list is empty: that of kind 1 with its length, that of
/// kind 2 as two cycles, however many it holds. An excluded index that is out of range, or whose
/// cycle has no duration, is counted but adds no time.
struct gait_statistics_info {
  /// Length of the recording (s): the shortest signal counts.
  double recording_duration = 0.0;
  /// From the first sample of the first cycle to the last sample of the last one (s).
  double duration = 0.0;
  /// Cycle durations over excluded_1_fallback, whether or not that list counts (s).
  double excluded_1_fallback_gct_sum = 0.0;
  /// Cycle durations over excluded_2 if it took a cycle out, else over excluded_2_fallback (s).
  double excluded_2_gct_sum = 0.0;
  double included_gct_sum = 0.0;  ///< cycle durations over the included cycles (s)
  /// Stride lengths over the included cycles (m); the right foot's of two.
  double included_distance = 0.0;
  /// Stride lengths over all cycles (m); the right foot's of two.
  double total_distance = 0.0;
  int cycle_count = 0;     ///< cycles of the analysed result
  int excluded_count = 0;  ///< cycle_count minus the number of included cycles
  std::list<int> cycles;   ///< indices of the included cycles, ascending
  /// Kind-2 exclusions that came from the fallback list.
  std::uint32_t excluded_2_fallback_count = 0;
  std::uint32_t excluded_2_count = 0;  ///< cycles excluded for kind 2
  /// Kind-1 exclusions that came from the fallback list.
  std::uint32_t excluded_1_fallback_count = 0;
  std::uint32_t excluded_1_count = 0;  ///< cycles excluded for kind 1
  /// cycle_count - excluded_2_count - excluded_1_count
  int included_count = 0;
  /// Cycle durations over the kind-2 fallback list if it counts, else 0 (s).
  double excluded_2_fallback_duration = 0.0;
  double excluded_2_duration = 0.0;  ///< cycle durations over the kind-2 exclusions (s)
  /// Cycle durations over the kind-1 fallback list if it counts, else 0 (s).
  double excluded_1_fallback_duration = 0.0;
  double excluded_1_duration = 0.0;  ///< cycle durations over the kind-1 exclusions (s)
  /// duration - (excluded_2_duration + excluded_1_duration) (s)
  double included_duration = 0.0;
};

/// Everything that one run computes: the accounting of the walk, and the parameters of every side.
struct gait_statistics {
  gait_statistics_info info;
  /// Keyed by the parameter key and the side suffix: "gct" for one foot, "gct_R" and "gct_L" for
  /// two. The library never clears the map and never replaces an entry; it rewrites only the
  /// `asymmetry` of one that is present.
  std::unordered_map<std::string, gait_statistics_parameter> parameters;
};

#endif

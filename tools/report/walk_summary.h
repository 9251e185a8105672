#ifndef TOOLS_REPORT_WALK_SUMMARY_H
#define TOOLS_REPORT_WALK_SUMMARY_H

/// \file
/// What a reader asks first: how many strides, how long, how far, what was left out and why; and
/// how the library's accounting answers it.

#include "walk_statistics.h"
#include "walk_strides.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace gait_report {

/// A sum over cycles that need not all have the value.
struct measured_sum {
  std::optional<double> sum;  ///< nullopt where there are cycles, and none has the value
  std::size_t cycles = 0;
  std::size_t without = 0;  ///< cycles that do not have the value
};

/// What the accounting counts for one of the two kinds of exclusion.
struct accounted_kind {
  int kind = 1;
  bool is_fallback = false;  ///< whether its fallback list counts, which takes nothing out
  int cycles = 0;            ///< entries of the list; of an empty kind 2, two
  measured_sum time;         ///< their durations (s)
  counted_reasons reasons;   ///< of the list's entries; one that is empty stands for none given
  std::string label;         ///< "Excluded: turn"
  std::string note;          ///< what the label does not say, or empty
};

/// The walk in a few figures and sentences.
struct walk_summary {
  std::optional<double> recording;  ///< length of the recording (s), where it is known
  double walk = 0.0;                ///< from the first to the last sample (s)
  measured_sum time;                ///< durations of the cycles in the statistics (s)
  measured_sum total_distance;      ///< (m); of two feet, the right foot's
  measured_sum distance;            ///< the same, in the statistics

  std::vector<accounted_kind> kinds;         ///< those that count anything
  int accounted_cycles = 0;                  ///< what the accounting calls included
  std::optional<double> accounted_duration;  ///< the walk less the excluded cycles (s)

  /// "In the statistics: 11 of 34 right, 11 of 43 left strides; 13.2 s, over 9.6 m": "over" where
  /// strides lack the value.
  std::string in_the_statistics;
  /// "Left out: right 19 turn, 2 start; left 17 turn, 2 start, 14 unlinked".
  std::string left_out;
  /// Why the accounting's included cycles are not those in the statistics; empty where they are.
  std::string why_they_differ;
};

/// "Both feet, sampled at 100 Hz"; of one foot, "Left foot alone, ...".
std::string analysed_in_words(const walk_statistics& walk);

/// The summary of a walk whose statistics are computed.
walk_summary summary_of(const walk_statistics& walk, const walk_strides& strides);

/// The times and distances of gait_statistics_info by the names of its fields; nullopt where
/// nothing was measured that could be summed.
std::unordered_map<std::string, std::optional<double>> measured_fields(const walk_statistics& walk,
                                                                       const walk_strides& strides);

/// The swing asymmetry in one of its scales.
struct shown_swing_asymmetry {
  std::string key;
  std::string unit;
  computed_statistics statistics;
  std::string direction;  ///< of the mean, in words; empty where there is none
};

/// The swing asymmetry as the library scales it, and in percent; none where one foot is analysed.
std::vector<shown_swing_asymmetry> swing_asymmetries_of(const walk_statistics& walk);

}  // namespace gait_report

#endif

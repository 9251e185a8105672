#ifndef TOOLS_REPORT_INFO_FIELDS_H
#define TOOLS_REPORT_INFO_FIELDS_H

/// \file
/// The fields of the cycle accounting by name, in the order of the record.

#include <gait/statistics.h>

namespace gait_report {

/// A field as outputs name and describe it.
struct info_field {
  const char* name;
  const char* unit;  ///< empty of a count
  const char* meaning;
};

/// Calls `visit(field, value)` for every field of gait_statistics_info.
template <class Visit>
void for_each_field(const gait_statistics_info& info, Visit visit) {
  // clang-format off
  visit(info_field{"recording_duration", "seconds", "length of the recording; the shortest signal counts"}, info.recording_duration);
  visit(info_field{"duration", "seconds", "the walk from its first sample to its last"}, info.duration);
  visit(info_field{"excluded_1_fallback_gct_sum", "seconds", "cycle durations over `excluded_1_fallback`, whether or not that list counts"}, info.excluded_1_fallback_gct_sum);
  visit(info_field{"excluded_2_gct_sum", "seconds", "cycle durations over `excluded_2` if it took a cycle out, else over `excluded_2_fallback`"}, info.excluded_2_gct_sum);
  visit(info_field{"included_gct_sum", "seconds", "cycle durations in the statistics"}, info.included_gct_sum);
  visit(info_field{"included_distance", "meters", "stride lengths in the statistics; of two feet, the right foot's"}, info.included_distance);
  visit(info_field{"total_distance", "meters", "stride lengths of all cycles; of two feet, the right foot's"}, info.total_distance);
  visit(info_field{"cycle_count", "", "cycles of the walk: strides of the one foot, or two-feet cycles"}, info.cycle_count);
  visit(info_field{"excluded_count", "", "cycles that are not in the statistics"}, info.excluded_count);
  visit(info_field{"cycles", "", "indices of the cycles in the statistics"}, info.cycles);
  visit(info_field{"excluded_2_fallback_count", "", "cycles that the accounting counts for `excluded_2` where that list is empty: two"}, info.excluded_2_fallback_count);
  visit(info_field{"excluded_2_count", "", "cycles that the accounting counts for kind 2"}, info.excluded_2_count);
  visit(info_field{"excluded_1_fallback_count", "", "cycles of `excluded_1_fallback`, where it counts in place of an empty `excluded_1`"}, info.excluded_1_fallback_count);
  visit(info_field{"excluded_1_count", "", "cycles that the accounting counts for kind 1"}, info.excluded_1_count);
  visit(info_field{"included_count", "", "`cycle_count` less those that the accounting counts as excluded; it need not be the number of cycles in the statistics"}, info.included_count);
  visit(info_field{"excluded_2_fallback_duration", "seconds", "cycle durations over `excluded_2_fallback`, where it counts"}, info.excluded_2_fallback_duration);
  visit(info_field{"excluded_2_duration", "seconds", "cycle durations that the accounting counts for kind 2"}, info.excluded_2_duration);
  visit(info_field{"excluded_1_fallback_duration", "seconds", "cycle durations over `excluded_1_fallback`, where it counts"}, info.excluded_1_fallback_duration);
  visit(info_field{"excluded_1_duration", "seconds", "cycle durations that the accounting counts for kind 1"}, info.excluded_1_duration);
  visit(info_field{"included_duration", "seconds", "`duration` less the excluded durations, with the pauses between strides"}, info.included_duration);
  // clang-format on
}

}  // namespace gait_report

#endif

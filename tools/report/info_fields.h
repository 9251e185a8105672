#ifndef TOOLS_REPORT_INFO_FIELDS_H
#define TOOLS_REPORT_INFO_FIELDS_H

/// \file
/// The fields of the cycle accounting by name, in the order of the record.

#include <gait/statistics.h>

namespace gait_report {

/// Calls `visit(name, value, unit)` for every field of gait_statistics_info. The unit of a count is
/// empty.
template <class Visit>
void for_each_field(const gait_statistics_info& info, Visit visit) {
  visit("recording_duration", info.recording_duration, "seconds");
  visit("duration", info.duration, "seconds");
  visit("excluded_1_fallback_gct_sum", info.excluded_1_fallback_gct_sum, "seconds");
  visit("excluded_2_gct_sum", info.excluded_2_gct_sum, "seconds");
  visit("included_gct_sum", info.included_gct_sum, "seconds");
  visit("included_distance", info.included_distance, "meters");
  visit("total_distance", info.total_distance, "meters");
  visit("cycle_count", info.cycle_count, "");
  visit("excluded_count", info.excluded_count, "");
  visit("cycles", info.cycles, "");
  visit("excluded_2_fallback_count", info.excluded_2_fallback_count, "");
  visit("excluded_2_count", info.excluded_2_count, "");
  visit("excluded_1_fallback_count", info.excluded_1_fallback_count, "");
  visit("excluded_1_count", info.excluded_1_count, "");
  visit("included_count", info.included_count, "");
  visit("excluded_2_fallback_duration", info.excluded_2_fallback_duration, "seconds");
  visit("excluded_2_duration", info.excluded_2_duration, "seconds");
  visit("excluded_1_fallback_duration", info.excluded_1_fallback_duration, "seconds");
  visit("excluded_1_duration", info.excluded_1_duration, "seconds");
  visit("included_duration", info.included_duration, "seconds");
}

}  // namespace gait_report

#endif

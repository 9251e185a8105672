// Carries the entry's type and the layout of every public record into the debug information, where
// the comparison of binary interfaces finds them. The shared library's own would not do: a record
// that is only an element of a map is missed.

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

using gait_entry = decltype(gait_generate_statistics);

void gait_records(gait_entry* entry, gait_generate_statistics_settings* settings,
                  gait_result* result, gait_foot_result* foot_result, gait_feet_result* feet_result,
                  gait_foot_cycle* foot_cycle, gait_feet_cycle* feet_cycle,
                  sensor_recording* recording, sensor_signal* signal, gait_quality_flag* flag,
                  gait_statistics* statistics, gait_statistics_info* info,
                  gait_statistics_parameter* parameter);

void gait_records(gait_entry* /*entry*/, gait_generate_statistics_settings* /*settings*/,
                  gait_result* /*result*/, gait_foot_result* /*foot_result*/,
                  gait_feet_result* /*feet_result*/, gait_foot_cycle* /*foot_cycle*/,
                  gait_feet_cycle* /*feet_cycle*/, sensor_recording* /*recording*/,
                  sensor_signal* /*signal*/, gait_quality_flag* /*flag*/,
                  gait_statistics* /*statistics*/, gait_statistics_info* /*info*/,
                  gait_statistics_parameter* /*parameter*/) {}

#ifndef GAIT_SRC_QUALITY_FLAGS_H
#define GAIT_SRC_QUALITY_FLAGS_H

/// \file
/// Raising the quality flags.

#include <gait/result.h>
#include <gait/statistics.h>

namespace gait_detail {

/// Rewrites the quality flags: those of the setting, the number of cycles, and the walking speed.
///
/// Throws std::out_of_range when a side's "speed" is absent; the flags raised before it are then
/// set.
void write_quality_flags(gait_result& result, const gait_generate_statistics_settings& settings);

/// Raises the flag of a large swing asymmetry. `asymmetry` is the record of the one just computed.
void flag_large_swing_asymmetry(gait_result& result, const gait_statistics_parameter& asymmetry);

}  // namespace gait_detail

#endif

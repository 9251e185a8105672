#include "quality_flags.h"

#include "lookup.h"
#include "mode.h"

#include <gait/quality_flags.h>

#include <cmath>

namespace gait_detail {
namespace {

/// Raises `flag` unless the side's mean speed is plausible. A NaN raises nothing; a side without
/// any measured speed has the missing value for its mean, and raises it.
void flag_implausible_speed(gait_result& result, const char* key, gait_quality_flag flag) {
  const double mean = lookup(result.statistics.parameters, key).mean;
  if (mean < gait_quality_speed_min || mean > gait_quality_speed_max) {
    result.quality_flags |= flag;
  }
}

}  // namespace

void write_quality_flags(gait_result& result, const gait_generate_statistics_settings& settings) {
  result.quality_flags = 0;
  const double setting = settings.settings_value;
  if (setting > 0.0 && (setting < gait_quality_setting_min || setting > gait_quality_setting_max)) {
    result.quality_flags |= gait_quality_setting;
  }
  if (result.statistics.info.cycle_count <= gait_quality_few_cycles_max) {
    result.quality_flags |= gait_quality_few_cycles;
  }
  if (is_single_foot(result)) {
    flag_implausible_speed(result, "speed", gait_quality_speed);
  } else {
    flag_implausible_speed(result, "speed_R", gait_quality_speed_right);
    flag_implausible_speed(result, "speed_L", gait_quality_speed_left);
  }
}

void flag_large_swing_asymmetry(gait_result& result, const gait_statistics_parameter& asymmetry) {
  // A NaN deviation, that of a single stride, is not 0.0 and raises the flag. The test against 1.0
  // belongs to the rule and stays, although it cannot fail at this limit.
  if (asymmetry.mean != 1.0 && std::abs(asymmetry.mean) >= gait_quality_swing_asymmetry_min &&
      asymmetry.std != 0.0) {
    result.quality_flags |= gait_quality_swing_asymmetry;
  }
}

}  // namespace gait_detail

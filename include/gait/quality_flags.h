#ifndef GAIT_QUALITY_FLAGS_H
#define GAIT_QUALITY_FLAGS_H

/// \file
/// The quality flags: what is implausible about a walk, and the limits that decide it.

/// A setting from this value...
inline constexpr double gait_quality_setting_min = 10.0;
/// ...to this one is plausible, both included.
inline constexpr double gait_quality_setting_max = 34.0;
/// A walk of this many cycles or fewer has few.
inline constexpr int gait_quality_few_cycles_max = 4;
/// A mean speed from this value (m/s)...
inline constexpr double gait_quality_speed_min = 0.31;
/// ...to this one (m/s) is plausible, both included.
inline constexpr double gait_quality_speed_max = 1.8;
/// A mean swing asymmetry of this size or more, on either side of 0, is large.
inline constexpr double gait_quality_swing_asymmetry_min = 20.0;

/// The plausibility warnings of gait_result::quality_flags. Bits 32 and 64 are never set.
///
/// A side without any measured speed raises its bit.
enum gait_quality_flag : int {
  gait_quality_setting = 1,      ///< settings_value is above 0 and not plausible
  gait_quality_few_cycles = 2,   ///< the walk has few cycles
  gait_quality_speed = 4,        ///< mean of "speed" not plausible (single-foot mode)
  gait_quality_speed_right = 8,  ///< mean of "speed_R" not plausible (two-feet mode)
  gait_quality_speed_left = 16,  ///< mean of "speed_L" not plausible (two-feet mode)
  /// mean of "asymmetry" large, and its deviation not 0 (two-feet mode)
  gait_quality_swing_asymmetry = 128,
};

#endif

#ifndef TOOLS_WALK_CHECKS_BOUNDS_H
#define TOOLS_WALK_CHECKS_BOUNDS_H

/// \file
/// Bounds: what no stride of a person crosses, and what no walk's median does.

#include "unit_slips.h"
#include "values.h"

#include <gait/result.h>

#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

/// The bounds of one column, wide and never normative.
struct bounds {
  std::string_view column;
  double gait_foot_cycle::*field;  ///< null for the double support of the two-feet cycles
  dimension dim;
  interval of_stride;
  interval of_median;  ///< lies within of_stride
  /// The size of a median of measured walks. It decides between units that both lie within bounds.
  double typical;
  std::string_view unit;
  std::string_view reason;
};

const std::vector<bounds>& bounds_table();

/// The names of the two checks of a column.
std::string name_of_bounds(const bounds& row);
std::string name_of_median(const bounds& row);

inline constexpr std::string_view usual_cause_of_bounds =
    "a wrong cell, or an error of measurement";
inline constexpr std::string_view usual_cause_of_median = "another unit, or another column";

/// The unit slip that would bring a median back within its bounds: of several, the one that brings
/// it nearest to a typical size, by ratio. Empty where none does.
std::string_view guess_unit(double middle, const bounds& row, double sampling_rate);

}  // namespace gait_checks

#endif

#ifndef TOOLS_WALK_CHECKS_CHECK_TABLES_H
#define TOOLS_WALK_CHECKS_CHECK_TABLES_H

/// \file
/// The checks that are rows of a table: fields of one stride against each other, and bounds.
///
/// Tolerances are wide enough for values that were rounded as exports round them: times to 10 ms,
/// percentages to 0.1, lengths to 1 cm.

#include <gait/result.h>

#include <optional>
#include <string_view>
#include <vector>

namespace gait_checks {

/// How many included strides must break a check before it is a finding.
enum class alarm {
  any,   ///< one
  many,  ///< two, and more than one in twenty: real walks have single ones
};

/// What a stride has, and what it should have.
struct comparison {
  double found;
  double lowest;
  double highest;
};

/// A factor by which a whole column may be off, and the unit that this gives away.
struct unit_slip {
  double factor;
  std::string_view words;
};

/// Fields of one stride against each other.
struct stride_check {
  std::string_view name;
  /// The columns that it reads, the one to look at first in front. A value that breaks a bound of
  /// its own takes no part here: one mistake is to be one finding.
  std::vector<std::string_view> columns;
  std::string_view compared;
  std::string_view tolerance;
  alarm when;
  /// nullopt where a value that it needs is missing. `rate` is the sampling rate (Hz).
  std::optional<comparison> (*compare)(const gait_foot_cycle& stride, double rate);
  std::vector<unit_slip> slips;  ///< of found against the middle of what is expected
  std::string_view usual_cause;
  std::string_view source;
  bool rests_on_rate = false;  ///< whether another sampling rate would mend it
};

const std::vector<stride_check>& stride_checks();

/// A quantity's dimension, which decides the units it may have been given in by mistake.
enum class dimension { time_s, time_ms, share, length, speed, cadence, angle, rotation, impact };

std::vector<unit_slip> slips_of(dimension dimension, double sampling_rate);

/// What no walk of a person crosses, wide and never normative.
struct bounds {
  std::string_view column;
  double gait_foot_cycle::*field;  ///< null for the double support of the two-feet cycles
  dimension dim;
  double lowest, highest;                ///< of a stride
  double median_lowest, median_highest;  ///< of the walk's median
  /// The size of a median of measured walks. It decides between units that both lie within bounds.
  double typical;
  std::string_view unit;
  std::string_view reason;
};

const std::vector<bounds>& bounds_table();

}  // namespace gait_checks

#endif

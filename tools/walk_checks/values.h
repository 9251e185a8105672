#ifndef TOOLS_WALK_CHECKS_VALUES_H
#define TOOLS_WALK_CHECKS_VALUES_H

/// \file
/// Numbers: their words in a message, their median, and the interval within which they must lie.

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

inline constexpr double unbounded = std::numeric_limits<double>::infinity();

/// A number for a message: six digits at most.
std::string number(double value);

/// The median of some values: the mean of the middle two of an even number. Not for none.
double median(std::vector<double> values);

/// Whether a value is further from what is expected than it may be. A NaN is not: it is for the
/// reader of a table to refuse.
bool differs(double found, double expected, double tolerance);

/// Where a value must lie.
struct interval {
  double lowest = -unbounded;
  double highest = unbounded;
  bool lowest_is_in = true;
  bool highest_is_in = true;

  /// Whether the value lies within; a NaN does.
  bool holds(double value) const {
    const bool is_below = value < lowest || (value == lowest && !lowest_is_in);
    const bool is_above = value > highest || (value == highest && !highest_is_in);
    return !is_below && !is_above;
  }
};

/// "98.5 to 101.5 %", "at least 99 %", "more than 1.2 m/s", "0.115 to less than 1.15 s".
std::string in_words(const interval& interval, std::string_view unit);

}  // namespace gait_checks

#endif

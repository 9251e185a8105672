#ifndef TOOLS_WALK_CHECKS_WALK_RULES_H
#define TOOLS_WALK_CHECKS_WALK_RULES_H

/// \file
/// The checks that compare strides with other strides, in three tables.

#include "checked_walk.h"
#include "tally.h"
#include "walk_checks.h"

#include <gait/statistics.h>

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

/// Which values of a column may be compared.
struct usable_values {
  double gait_foot_cycle::*field = nullptr;  ///< null for a column that has no bounds
  bool column_is_out = false;                ///< whether the column as a whole breaks its bounds
  const std::set<const gait_foot_cycle*>* out = nullptr;  ///< strides whose value does; may be null

  /// Whether a value, if it is there, breaks no bound of its own.
  bool allow(const gait_foot_cycle& stride) const {
    return !column_is_out && (out == nullptr || out->count(&stride) == 0);
  }

  /// Whether a value is there, and breaks no bound of its own.
  bool operator()(const gait_foot_cycle& stride) const {
    return (field == nullptr || !gait_is_missing(stride.*field)) && allow(stride);
  }
};

/// The usable values of each column. To find a column takes longer than to ask for a value.
using value_filter = std::function<usable_values(std::string_view column)>;

struct walk_rule {
  std::string_view name;
  std::string_view compared;
  std::string tolerance;
  alarm when;
  /// What is broken; `check` and `usual_cause` are filled in by the caller.
  std::vector<finding> (*apply)(const checked_walk& walk, const value_filter& usable, alarm when);
  std::string_view usual_cause;
  std::string_view source;
};

/// The order of strides in time, and the links of both feet's strides.
std::vector<walk_rule> order_and_link_rules();

/// Values of one foot, or of both feet together, against those of the other.
std::vector<walk_rule> both_feet_rules();

/// Columns as a whole.
std::vector<walk_rule> column_rules();

/// All of them.
const std::vector<walk_rule>& walk_rules();

/// The included values of a column that may be compared.
std::vector<double> values_of(const checked_foot& foot, const value_filter& usable,
                              std::string_view column, double gait_foot_cycle::*field);

/// A mistake that several of them show.
inline constexpr std::string_view feet_swapped = "feet swapped?";

}  // namespace gait_checks

#endif

#ifndef TOOLS_WALK_CHECKS_WALK_RULES_H
#define TOOLS_WALK_CHECKS_WALK_RULES_H

/// \file
/// The checks that compare strides with other strides: their order, their links, both feet, and
/// columns as a whole.

#include "checked_walk.h"
#include "walk_checks.h"

#include <functional>
#include <string_view>
#include <vector>

namespace gait_checks {

/// Whether a value may be compared: it is there, and breaks no bound of its own.
using usable = std::function<bool(std::string_view column, const gait_foot_cycle& stride)>;

struct walk_rule {
  std::string_view name;
  std::string_view compared;
  std::string_view tolerance;
  /// What is broken; `check`, `usual_cause` of the row are filled in by the caller.
  std::vector<finding> (*apply)(const checked_walk& walk, const usable& usable);
  std::string_view usual_cause;
  std::string_view source;
};

const std::vector<walk_rule>& walk_rules();

}  // namespace gait_checks

#endif

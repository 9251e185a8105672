#include "walk_rules.h"

#include <cstddef>

namespace gait_checks {

const std::vector<walk_rule>& walk_rules() {
  static const std::vector<walk_rule> all = [] {
    std::vector<walk_rule> rules = order_and_link_rules();
    for (const auto& more : {both_feet_rules(), column_rules()}) {
      rules.insert(rules.end(), more.begin(), more.end());
    }
    return rules;
  }();
  return all;
}

std::vector<double> values_of(const checked_foot& foot, const value_filter& usable,
                              std::string_view column, double gait_foot_cycle::*field) {
  const usable_values is_usable = usable(column);
  std::vector<double> values;
  values.reserve(foot.included.size());
  for (const included_stride& included : foot.included) {
    if (is_usable(*included.stride)) {
      values.push_back(included.stride->*field);
    }
  }
  return values;
}

}  // namespace gait_checks

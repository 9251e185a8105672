#include "walk_checks.h"

#include "bounds.h"
#include "checked_walk.h"
#include "stride_checks.h"
#include "tally.h"
#include "walk_rules.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_checks {
namespace {

/// What can be done about strides where most others are sound.
constexpr std::string_view remedy_of_single_strides =
    "correct the cell, empty it, or leave the stride out";

/// Which values break a bound of their own, or stand in a column that does.
class own_bounds {
public:
  void add_stride(std::string_view column, const gait_foot_cycle* stride) {
    strides_[column].insert(stride);
  }
  void add_column(std::string_view column) { columns_.insert(column); }

  usable_values of(std::string_view column) const {
    const auto& table = bounds_table();
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const bounds& b) { return b.column == column; });
    const auto strides = strides_.find(column);
    return {row == table.end() ? nullptr : row->field, columns_.count(column) != 0,
            strides == strides_.end() ? nullptr : &strides->second};
  }

private:
  std::map<std::string_view, std::set<const gait_foot_cycle*>> strides_;
  std::set<std::string_view> columns_;
};

/// One value of the walk, and where it stands.
struct placed_value {
  double value;
  place where;
  const gait_foot_cycle* stride;  ///< null for a cycle of both feet
};

/// The included values of a column that are there.
std::vector<placed_value> values_of(const checked_walk& walk, const bounds& row) {
  std::vector<placed_value> values;
  values.reserve(2 * walk.feet.front().included.size());
  const auto add = [&](double value, const place& where, const gait_foot_cycle* stride) {
    if (!gait_is_missing(value)) {
      values.push_back({value, where, stride});
    }
  };
  if (row.field == nullptr) {
    for (const checked_pair& pair : walk.pairs) {
      add(pair.cycle->ds, {"", pair.index, pair.index}, nullptr);
    }
    return values;
  }
  for (const checked_foot& foot : walk.feet) {
    for (const auto& [stride, cycle] : foot.included) {
      add(stride->*row.field, {foot.name, stride->index, cycle}, stride);
    }
  }
  return values;
}

/// Whether every included value of a column is one that even the walk's median may be: then neither
/// check of the column can be broken. What most columns are, and quick to see.
bool are_ordinary(const checked_walk& walk, const bounds& row) {
  const auto is_ordinary = [&](double value) {
    return gait_is_missing(value) || row.of_median.holds(value);
  };
  if (row.field == nullptr) {
    return std::all_of(walk.pairs.begin(), walk.pairs.end(),
                       [&](const checked_pair& pair) { return is_ordinary(pair.cycle->ds); });
  }
  return std::all_of(walk.feet.begin(), walk.feet.end(), [&](const checked_foot& foot) {
    return std::all_of(foot.included.begin(), foot.included.end(), [&](const auto& included) {
      return is_ordinary(included.stride->*row.field);
    });
  });
}

double median_of(const std::vector<placed_value>& placed) {
  std::vector<double> values;
  values.reserve(placed.size());
  for (const placed_value& value : placed) {
    values.push_back(value.value);
  }
  return median(std::move(values));
}

std::string_view table_of(const bounds& row) {
  return row.field == nullptr ? feet_cycles_table : foot_cycles_table;
}

std::string_view counted_in(const bounds& row) {
  return row.field == nullptr ? included_pairs : included_strides;
}

class walk_checker {
public:
  walk_checker(const checked_walk& walk, const std::vector<std::string>& without)
      : walk_(walk), without_(without.begin(), without.end()) {}

  std::vector<finding> all_findings() && {
    for (const bounds& row : bounds_table()) {
      check_column(row);
    }
    for (const stride_check& check : stride_checks()) {
      if (is_on(check.name)) {
        check_strides(check);
      }
    }
    const value_filter usable = [this](std::string_view column) { return bounds_.of(column); };
    for (const walk_rule& rule : walk_rules()) {
      if (is_on(rule.name)) {
        for (finding& found : rule.apply(walk_, usable, rule.when)) {
          report(rule.name, rule.usual_cause, std::move(found));
        }
      }
    }
    return std::move(findings_);
  }

private:
  bool is_on(std::string_view name) const { return without_.count(std::string(name)) == 0; }

  void report(std::string_view name, std::string_view usual_cause, finding found) {
    found.check = name;
    found.usual_cause = usual_cause;
    findings_.push_back(std::move(found));
  }

  void check_column(const bounds& row) {
    if (are_ordinary(walk_, row)) {
      return;
    }
    const std::vector<placed_value> values = values_of(walk_, row);
    constexpr std::size_t fewest_for_a_median = 3;
    if (values.size() >= fewest_for_a_median) {
      const double middle = median_of(values);
      // Whoever switches the check off still wants the others that read the column.
      if (!row.of_median.holds(middle) && is_on(name_of_median(row))) {
        bounds_.add_column(row.column);
        report_median(row, middle, values.size());
        return;
      }
    }
    if (is_on(name_of_bounds(row))) {
      check_bounds(row, values);
    }
  }

  void report_median(const bounds& row, double middle, std::size_t count) {
    report(name_of_median(row), usual_cause_of_median,
           of_the_walk(table_of(row), row.column, counted_in(row), count,
                       "found a median of " + number(middle) + ", expected " +
                           in_words(row.of_median, row.unit),
                       guess_unit(middle, row, walk_.feet.front().rate)));
  }

  void check_bounds(const bounds& row, const std::vector<placed_value>& values) {
    tally tally(table_of(row), row.column, counted_in(row));
    for (const placed_value& value : values) {
      const bool is_sound = row.of_stride.holds(value.value);
      if (!is_sound && value.stride != nullptr) {
        bounds_.add_stride(row.column, value.stride);
      }
      tally.add(is_sound, value.where, [&] {
        return "found " + number(value.value) + ", expected " + in_words(row.of_stride, row.unit);
      });
    }
    for (finding& found : tally.findings(alarm::any)) {
      found.remedy = remedy_of_single_strides;
      report(name_of_bounds(row), usual_cause_of_bounds, std::move(found));
    }
  }

  void check_strides(const stride_check& check) {
    tally tally(foot_cycles_table, check.columns.front(), included_strides);
    std::vector<double> factors;  // of what is found over what is expected, where it is broken
    std::vector<usable_values> columns;
    columns.reserve(check.columns.size());
    for (const std::string_view column : check.columns) {
      columns.push_back(bounds_.of(column));
    }
    const auto are_allowed = [&](const gait_foot_cycle& stride) {
      return std::all_of(columns.begin(), columns.end(),
                         [&](const usable_values& column) { return column.allow(stride); });
    };
    for (const checked_foot& foot : walk_.feet) {
      for (const auto& [stride, cycle] : foot.included) {
        const auto values = are_allowed(*stride) ? check.values(*stride, foot.rate) : std::nullopt;
        if (!values) {
          continue;
        }
        const bool is_sound = allowed(check, values->expected, foot.rate).holds(values->found);
        tally.add(is_sound, {foot.name, stride->index, cycle},
                  [&, rate = foot.rate] { return found_in_words(check, *values, rate); });
        if (!is_sound) {
          factors.push_back(values->found / values->expected);
        }
      }
    }
    for (finding& found : tally.findings(check.when)) {
      found.guess = guess(median(factors), check.slips);
      if (found.guess.empty() && check.rests_on_rate) {
        found.guess = guess_rate(factors, tally.compared(), walk_.feet.front().rate);
      }
      found.remedy = 2 * tally.broken() < tally.compared() ? remedy_of_single_strides : "";
      report(check.name, check.usual_cause, std::move(found));
    }
  }

  const checked_walk& walk_;
  std::set<std::string> without_;
  own_bounds bounds_;
  std::vector<finding> findings_;
};

}  // namespace

std::string_view name_of(kind kind) {
  switch (kind) {
    case kind::fields_of_a_stride:
      return "fields of one stride";
    case kind::bounds_of_a_stride:
      return "bounds of one stride";
    case kind::median_of_a_walk:
      return "median of the walk";
    case kind::strides_of_a_walk:
      break;
  }
  return "strides against strides";
}

std::vector<listed_check> list_checks() {
  std::vector<listed_check> list;
  for (const stride_check& check : stride_checks()) {
    list.push_back({std::string(check.name), kind::fields_of_a_stride, compared_in_words(check),
                    with_alarm(tolerance_in_words(check), check.when),
                    std::string(check.usual_cause), std::string(check.source)});
  }
  for (const walk_rule& rule : walk_rules()) {
    list.push_back({std::string(rule.name), kind::strides_of_a_walk, std::string(rule.compared),
                    with_alarm(rule.tolerance, rule.when), std::string(rule.usual_cause),
                    std::string(rule.source)});
  }
  for (const bounds& row : bounds_table()) {
    list.push_back({name_of_bounds(row), kind::bounds_of_a_stride, std::string(row.column),
                    in_words(row.of_stride, row.unit), std::string(usual_cause_of_bounds),
                    std::string(row.reason)});
    list.push_back({name_of_median(row), kind::median_of_a_walk,
                    "median of " + std::string(row.column), in_words(row.of_median, row.unit),
                    std::string(usual_cause_of_median), std::string(row.reason)});
  }
  return list;
}

std::vector<finding> check_walk(const gait_result& result, const gait_foot_result* right,
                                const gait_foot_result* left,
                                const std::vector<std::string>& without) {
  const checked_walk walk = checked_walk_of(result, right, left);
  return walk_checker(walk, without).all_findings();
}

}  // namespace gait_checks

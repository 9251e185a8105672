#include "walk_checks.h"

#include "check_tables.h"
#include "checked_walk.h"
#include "tally.h"
#include "walk_rules.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_checks {
namespace {

std::string name_of_bounds(const bounds& row) { return std::string(row.column) + "_bounds"; }
std::string name_of_median(const bounds& row) { return std::string(row.column) + "_median"; }

constexpr std::string_view usual_cause_of_bounds =
    "a wrong cell, or an error of measurement: correct it, empty it, or exclude the stride";
constexpr std::string_view usual_cause_of_median = "another unit, or another column";

/// The unit that a factor gives away, or nothing. Real walks differ from their expectation by less.
std::string guess(double factor, const std::vector<unit_slip>& slips) {
  constexpr double tolerance = 0.05;
  for (const unit_slip& slip : slips) {
    if (std::abs(factor / slip.factor - 1.0) < tolerance) {
      return std::string(slip.words);
    }
  }
  return "";
}

/// The sampling rate at which the strides would be sound, where it is the same for all of them.
std::string guess_rate(std::vector<double> factors, std::size_t compared, double rate) {
  constexpr std::size_t fewest_strides = 3;
  if (factors.size() < fewest_strides || 10 * factors.size() < 9 * compared) {
    return "";
  }
  const double factor = median(factors);
  const auto is_alike = [&](double other) { return std::abs(other / factor - 1.0) < 0.02; };
  const auto alike = std::count_if(factors.begin(), factors.end(), is_alike);
  const bool all_are_alike = 10 * static_cast<std::size_t>(alike) >= 9 * factors.size();
  const double mended = std::round(rate / factor);
  constexpr double lowest_of_a_sensor = 10.0;  // (Hz)
  return all_are_alike && mended >= lowest_of_a_sensor
             ? "a sampling rate of " + number(mended) + " Hz?"
             : "";
}

/// Which values break a bound of their own, or stand in a column that does.
class own_bounds {
public:
  void add_stride(std::string_view column, const gait_foot_cycle* stride) {
    strides_.emplace(column, stride);
  }
  void add_column(std::string_view column) { columns_.insert(column); }

  bool allow(std::string_view column, const gait_foot_cycle& stride) const {
    return columns_.count(column) == 0 && strides_.count({column, &stride}) == 0;
  }

private:
  std::set<std::pair<std::string_view, const gait_foot_cycle*>> strides_;
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
  const auto add = [&](double value, const place& where, const gait_foot_cycle* stride) {
    if (!gait_is_missing(value)) {
      values.push_back({value, where, stride});
    }
  };
  if (row.field == nullptr) {
    for (const checked_pair& pair : walk.pairs) {
      add(pair.cycle->ds, {"", pair.index}, nullptr);
    }
    return values;
  }
  for (const checked_foot& foot : walk.feet) {
    for (const gait_foot_cycle* stride : foot.included) {
      add(stride->*row.field, {foot.name, stride->index}, stride);
    }
  }
  return values;
}

double median_of(const std::vector<placed_value>& placed) {
  std::vector<double> values;
  values.reserve(placed.size());
  for (const placed_value& value : placed) {
    values.push_back(value.value);
  }
  return median(std::move(values));
}

/// The unit slip that would bring a median back within its bounds: of several, the one that brings
/// it nearest to a typical size, by ratio.
std::string guess_unit(double middle, const bounds& row, double rate) {
  std::string_view words;
  double nearest = std::numeric_limits<double>::infinity();
  for (const unit_slip& slip : slips_of(row.dim, rate)) {
    const double mended = middle / slip.factor;
    const double distance = std::abs(std::log(std::abs(mended) / row.typical));
    const bool is_within = mended >= row.median_lowest && mended <= row.median_highest;
    if (is_within && distance < nearest) {
      nearest = distance;
      words = slip.words;
    }
  }
  return std::string(words);
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
      check_strides(check);
    }
    for (const walk_rule& rule : walk_rules()) {
      if (is_on(rule.name)) {
        for (finding& found : rule.apply(walk_, usable_values())) {
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

  usable usable_values() const {
    return [this](std::string_view column, const gait_foot_cycle& stride) {
      const auto& table = bounds_table();
      const auto row = std::find_if(table.begin(), table.end(),
                                    [&](const bounds& b) { return b.column == column; });
      const bool is_of_a_stride = row != table.end() && row->field != nullptr;
      const bool is_there = !is_of_a_stride || !gait_is_missing(stride.*row->field);
      return is_there && bounds_.allow(column, stride);
    };
  }

  void check_column(const bounds& row) {
    const std::vector<placed_value> values = values_of(walk_, row);
    constexpr std::size_t fewest_for_a_median = 3;
    const std::string_view table = row.field == nullptr ? feet_cycles_table : foot_cycles_table;
    if (values.size() >= fewest_for_a_median) {
      const double middle = median_of(values);
      const bool is_sound = middle >= row.median_lowest && middle <= row.median_highest;
      // Whoever switches the check off still wants the others that read the column.
      if (!is_sound && is_on(name_of_median(row))) {
        bounds_.add_column(row.column);
        report_median(row, table, middle, values.size());
        return;
      }
    }
    tally tally(table, row.column, counted_in(row));
    for (const placed_value& value : values) {
      const bool is_sound = value.value >= row.lowest && value.value <= row.highest;
      if (!is_sound && value.stride != nullptr && is_on(name_of_bounds(row))) {
        bounds_.add_stride(row.column, value.stride);
      }
      tally.add(is_sound, value.where, [&] {
        return "found " + number(value.value) + ", " + expected(row.lowest, row.highest) + " " +
               std::string(row.unit);
      });
    }
    if (is_on(name_of_bounds(row))) {
      for (finding& found : tally.findings(alarm::any)) {
        report(name_of_bounds(row), usual_cause_of_bounds, std::move(found));
      }
    }
  }

  void report_median(const bounds& row, std::string_view table, double middle, std::size_t count) {
    finding found;
    found.table = table;
    found.column = row.column;
    found.broken = count;
    found.compared = count;
    found.counted = counted_in(row);
    found.text = "found a median of " + number(middle) + ", " +
                 expected(row.median_lowest, row.median_highest) + " " + std::string(row.unit);
    found.guess = guess_unit(middle, row, walk_.feet.front().rate);
    report(name_of_median(row), usual_cause_of_median, std::move(found));
  }

  void check_strides(const stride_check& check) {
    if (!is_on(check.name)) {
      return;
    }
    tally tally(foot_cycles_table, check.columns.front(), included_strides);
    std::vector<double> factors;
    for (const checked_foot& foot : walk_.feet) {
      for (const gait_foot_cycle* stride : foot.included) {
        const auto compared = compare(check, *stride, foot.rate);
        if (!compared) {
          continue;
        }
        const bool is_sound =
            !(compared->found < compared->lowest || compared->found > compared->highest);
        tally.add(is_sound, {foot.name, stride->index}, [&] {
          return "found " + number(compared->found) + ", " +
                 expected(compared->lowest, compared->highest) + ", as " +
                 std::string(check.compared);
        });
        if (!is_sound) {
          factors.push_back(compared->found / ((compared->lowest + compared->highest) / 2.0));
        }
      }
    }
    for (finding& found : tally.findings(check.when)) {
      found.guess = guess(median(factors), check.slips);
      if (found.guess.empty() && check.rests_on_rate) {
        found.guess = guess_rate(factors, tally.compared(), walk_.feet.front().rate);
      }
      report(check.name, check.usual_cause, std::move(found));
    }
  }

  std::optional<comparison> compare(const stride_check& check, const gait_foot_cycle& stride,
                                    double rate) const {
    const bool is_allowed =
        std::all_of(check.columns.begin(), check.columns.end(),
                    [&](std::string_view column) { return bounds_.allow(column, stride); });
    return is_allowed ? check.compare(stride, rate) : std::nullopt;
  }

  const checked_walk& walk_;
  std::set<std::string> without_;
  own_bounds bounds_;
  std::vector<finding> findings_;
};

std::string bounds_as_text(double lowest, double highest, std::string_view unit) {
  return number(lowest) + " to " + number(highest) + " " + std::string(unit);
}

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
    list.push_back({std::string(check.name), kind::fields_of_a_stride, std::string(check.compared),
                    std::string(check.tolerance), std::string(check.usual_cause),
                    std::string(check.source)});
  }
  for (const walk_rule& rule : walk_rules()) {
    list.push_back({std::string(rule.name), kind::strides_of_a_walk, std::string(rule.compared),
                    std::string(rule.tolerance), std::string(rule.usual_cause),
                    std::string(rule.source)});
  }
  for (const bounds& row : bounds_table()) {
    list.push_back({name_of_bounds(row), kind::bounds_of_a_stride, std::string(row.column),
                    bounds_as_text(row.lowest, row.highest, row.unit),
                    std::string(usual_cause_of_bounds), std::string(row.reason)});
    list.push_back({name_of_median(row), kind::median_of_a_walk,
                    "median of " + std::string(row.column),
                    bounds_as_text(row.median_lowest, row.median_highest, row.unit),
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

std::vector<note> notes_on(const gait_result& result) {
  constexpr std::size_t for_means = 10;
  constexpr std::size_t for_variability = 30;
  constexpr std::size_t for_steady_variability = 50;
  const std::string koenig = "König et al., Gait & Posture 2014;39:615, PMID 23838361";
  const std::string galna = "Galna, Lord and Rochester, Gait & Posture 2013";
  const std::size_t strides = result.statistics.info.cycles.size();
  if (strides < for_means) {
    return {{"few_strides_for_means", "Mean from fewer than 10 strides: read with care.", koenig}};
  }
  if (strides < for_variability) {
    return {
        {"few_strides_for_variability",
         "Variability from fewer than 30 strides tends to come out too small; do not compare it "
         "with a longer walk.",
         galna}};
  }
  if (strides < for_steady_variability) {
    return {{"few_strides_for_steady_variability",
             "Variability may change by a third with more strides.", koenig}};
  }
  return {};
}

}  // namespace gait_checks

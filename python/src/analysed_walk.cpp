#include <gait/eigen.h>

#include "analysed_walk.h"

#include "deep_stack.h"

#include "analysis.h"
#include "columns.h"
#include "html_report.h"
#include "json_output.h"
#include "walk_strides.h"
#include "walk_summary.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace gait_python {

namespace {

std::size_t strides_of_both_feet(const gait_walk::walk& walk) {
  return (walk.left ? walk.left->cycles.size() : 0) + (walk.right ? walk.right->cycles.size() : 0);
}

/// What keeps the walk from being analysed.
std::vector<gait_walk::input_error> errors_of(const shared_walk& walk,
                                              gait_walk::analysed_cycles asked_for) {
  using gait_walk::analysed_cycles;
  if (gait_walk::cycles_of(*walk.walk, asked_for) == analysed_cycles::feet && walk.walk->left &&
      walk.walk->right && walk.walk->feet.empty()) {
    return {{gait_walk::table_file<gait_walk::feet_cycle_row>(walk.folder), 0, "",
             "found no cycle of both feet, expected at least one: pair_feet(strides) pairs the "
             "strides of both feet, and foot=\"left\" or foot=\"right\" analyses one foot alone"}};
  }
  return gait_walk::check_analysis(*walk.walk, asked_for, walk.folder);
}

}  // namespace

analysed_walk::analysed_walk(const shared_walk& walk, gait_walk::analysed_cycles asked_for,
                             float settings_value, const std::vector<std::string>& without_checks,
                             std::vector<gait_walk::input_error> of_reading)
    : without_checks_(without_checks),
      of_reading_(std::move(of_reading)),
      strides_(strides_of_both_feet(*walk.walk)) {
  if (auto errors = errors_of(walk, asked_for); !errors.empty()) {
    throw gait_walk::walk_error(std::move(errors));
  }
  warnings_ = gait_walk::analysis_warnings(*walk.walk, asked_for, walk.folder);
  statistics_ = std::make_unique<gait_report::walk_statistics>(
      gait_report::prepare_walk(*walk.walk, asked_for, settings_value));
  on_deep_stack(strides_, [&] { gait_report::compute_figures(*statistics_); });
}

const gait_report::walk_statistics& analysed_walk::checked() const {
  std::call_once(*is_checked_, [&] {
    gait_report::check_data(*statistics_, without_checks_);
    gait_report::add_warnings(*statistics_, warnings_);
    gait_report::add_warnings(*statistics_, of_reading_);
  });
  return *statistics_;
}

std::vector<column_out> analysed_walk::columns(gait_report::csv_table table) const {
  std::vector<column_out> columns;
  on_deep_stack(strides_, [&] { columns = columns_of(checked(), table); });
  return columns;
}

std::string analysed_walk::json() const {
  std::string text;
  on_deep_stack(strides_,
                [&] { text = gait_report::json_document({gait_report::json_walk(checked())}); });
  return text;
}

std::string analysed_walk::html() const {
  std::string text;
  on_deep_stack(strides_, [&] {
    text = gait_report::html_page({gait_report::html_walk_of(checked(), 0, true)});
  });
  return text;
}

std::vector<std::string> analysed_walk::summary() const {
  const auto strides = gait_report::strides_of(*statistics_);
  const auto summary = gait_report::summary_of(*statistics_, strides);
  std::vector<std::string> sentences;
  for (const std::string* sentence :
       {&summary.in_the_statistics, &summary.left_out, &summary.why_they_differ}) {
    if (!sentence->empty()) {
      sentences.push_back(*sentence);
    }
  }
  return sentences;
}

std::unordered_map<std::string, std::optional<double>> analysed_walk::measured_fields() const {
  return gait_report::measured_fields(*statistics_, gait_report::strides_of(*statistics_));
}

std::vector<double> percentiles(const std::vector<double>& values,
                                const std::vector<double>& percentages) {
  std::vector<double> found(percentages.size());
  on_deep_stack(values.size(), [&] {
    const auto mapped = [](const std::vector<double>& numbers) {
      return Eigen::Map<const Eigen::ArrayXd>(numbers.data(),
                                              static_cast<Eigen::Index>(numbers.size()));
    };
    Eigen::Map<Eigen::ArrayXd>(found.data(), static_cast<Eigen::Index>(found.size())) =
        mapped(values).percentile(mapped(percentages));
  });
  return found;
}

}  // namespace gait_python

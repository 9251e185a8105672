#include "check_walk.h"

#include "columns.h"
#include "minus_one.h"
#include "names.h"
#include "shown_text.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

namespace gait_walk {

namespace {

template <class Row>
table_report empty_report(const std::string& folder, const read_options& options) {
  const std::string file = table_file<Row>(folder);
  const input_error_list none(file, options.errors_per_file, options.words);
  return {none, none, true, true, options.words};
}

/// More than people write about a walk; every output holds them.
constexpr std::size_t most_about_rows = 1000;

std::string of_the(side side, const char* what) {
  return "the " + std::string(name_of(side)) + " " + what;
}

}  // namespace

walk_check::walk_check(const std::string& folder, const read_options& options)
    : reports{empty_report<recording_row>(folder, options),
              empty_report<foot_cycle_row>(folder, options),
              empty_report<feet_cycle_row>(folder, options),
              empty_report<exclusion_row>(folder, options),
              empty_report<about_row>(folder, options)},
      most_strides_(options.most_strides),
      analysed_(options.analysed) {}

bool walk_check::needs_both_feet() const {
  return analysed_ == analysed_cycles::feet && !has_one_foot();
}

bool walk_check::has_one_foot() const {
  return reports.recording.is_complete() &&
         left_.recorded.has_value() != right_.recorded.has_value();
}

// ---- recording.csv

void walk_check::add(const checked_row<recording_row>& checked) {
  ++recording_rows_;
  const recording_row& row = checked.row;
  if (!checked.has(&recording_row::foot)) {
    reports.recording.every_row_known = false;
    return;
  }
  foot_tables& foot = of(row.foot);
  if (foot.recorded) {
    reports.recording.errors.add(checked.line, "foot",
                                 found(name_of(row.foot)) + " " +
                                     reports.recording.words.again(foot.recorded_line) +
                                     ", expected each foot once");
    return;
  }
  check_rates(checked);
  foot.recorded.emplace();
  foot.recorded_line = checked.line;
  foot.recorded->sampling_rate = row.sampling_rate;
  foot.recorded->signal_1_samples = row.signal_1_samples;
  foot.recorded->signal_2_samples = row.signal_2_samples;
}

void walk_check::check_rates(const checked_row<recording_row>& checked) {
  const recording_row& row = checked.row;
  const foot_tables& other = of(row.foot == side::left ? side::right : side::left);
  // A rate of 0 is that of a cell with an error of its own.
  const int other_rate = other.recorded ? other.recorded->sampling_rate : 0;
  if (checked.has(&recording_row::sampling_rate) && other_rate != 0 &&
      row.sampling_rate != other_rate) {
    reports.recording.errors.add(checked.line, "sampling_rate",
                                 found(std::to_string(row.sampling_rate)) +
                                     ", expected the sampling rate of the other foot, " +
                                     in_quotes(std::to_string(other_rate)));
  }
}

void walk_check::end_recording() {
  if (recording_rows_ == 0 && reports.recording.is_complete()) {
    // The rows that ought to be there are not known.
    reports.recording.every_row_known = false;
    reports.recording.errors.add(0, "", "found no row, expected one for each foot");
  }
}

// ---- foot_cycles.csv

void walk_check::add(const checked_row<foot_cycle_row>& checked) {
  check_samples(checked);
  const bool numbered_by_place = checked.lacks(&foot_cycle_row::index);
  if (!checked.has(&foot_cycle_row::foot) ||
      !(numbered_by_place || checked.has(&foot_cycle_row::index))) {
    reports.foot_cycles.every_row_known = false;
    return;
  }
  foot_tables& foot = of(checked.row.foot);
  if (++foot.strides > most_strides_) {
    return;
  }
  if (foot.indices.empty()) {
    foot.first_line = checked.line;
  }
  foot.cycles.push_back(checked.row);
  gait_foot_cycle& cycle = foot.cycles.back();
  if (numbered_by_place) {
    cycle.index = static_cast<int>(foot.indices.size());
  }
  foot.indices.add(cycle.index, checked.line);
}

void walk_check::check_samples(const checked_row<foot_cycle_row>& checked) {
  const foot_cycle_row& row = checked.row;
  if (!checked.has(&foot_cycle_row::last_sample)) {
    return;
  }
  const auto what = [&] { return found(std::to_string(row.last_sample)); };
  if (checked.has(&foot_cycle_row::first_sample) && row.first_sample > row.last_sample) {
    reports.foot_cycles.errors.add(checked.line, "last_sample",
                                   what() + ", less than first_sample (" +
                                       std::to_string(row.first_sample) +
                                       "), expected at least as much");
    return;
  }
  const auto& recorded = of(row.foot).recorded;
  if (!checked.has(&foot_cycle_row::foot) || !recorded) {
    return;
  }
  const std::optional<std::uint64_t> samples = recorded_samples(*recorded);
  if (samples && static_cast<std::uint64_t>(row.last_sample) >= *samples) {
    reports.foot_cycles.warnings.add(checked.line, "last_sample",
                                     what() + ", expected less than the number of samples that " +
                                         std::string(reports.foot_cycles.words.recording) +
                                         " gives, " + in_quotes(std::to_string(*samples)));
  }
}

void walk_check::end_foot_cycles() {
  check_count(reports.foot_cycles, left_.strides, "strides of the left foot");
  check_count(reports.foot_cycles, right_.strides, "strides of the right foot");
  settle_minus_ones_of<foot_cycle_row>(reports.foot_cycles, [&](auto use) {
    for (foot_tables* foot : {&left_, &right_}) {
      const std::vector<std::size_t> lines = foot->indices.lines();
      auto line = lines.begin();
      for (gait_foot_cycle& cycle : foot->cycles) {
        use(cycle, *line++);
      }
    }
  });
  const bool is_whole_left = check_foot(side::left);
  const bool is_whole_right = check_foot(side::right);
  // Links to cycles that are numbered otherwise say nothing new.
  reports.foot_cycles.every_row_known =
      reports.foot_cycles.every_row_known && is_whole_left && is_whole_right;
}

template <class Row, class ForEachRow>
void walk_check::settle_minus_ones_of(table_report& report, ForEachRow for_each_row) {
  const missing_minus_ones missing = settle_minus_ones<Row>(for_each_row);
  if (missing.cells != 0) {
    report.warnings.add(
        0, "",
        "found -1 in " + std::to_string(missing.cells) + " measured " +
            (missing.cells == 1 ? "cell (" : "cells (") +
            missing.lines.text(report.words.line, report.words.lines, report.words.less()) +
            "), expected empty cells: it counts as not measured in all of the "
            "table, because " +
            std::string(missing.column) + " cannot be -1");
  }
}

void walk_check::check_count(table_report& report, std::size_t count,
                             const std::string& what) const {
  if (count > most_strides_) {
    report.every_row_known = false;
    report.errors.add(0, "",
                      "found " + std::to_string(count) + " " + what + ", expected at most " +
                          std::to_string(most_strides_) + ", the limit that was set");
  }
}

bool walk_check::check_foot(side side) {
  foot_tables& foot = of(side);
  table_report& report = reports.foot_cycles;
  const bool without_gaps = foot.indices.check(report, " of " + of_the(side, "foot"));
  foot.cycles.sort([](const auto& a, const auto& b) { return a.index < b.index; });
  if (foot.recorded && foot.indices.empty() && report.is_complete()) {
    report.errors.add(0, "",
                      "found no cycle of " + of_the(side, "foot") + ", expected at least one: " +
                          std::string(report.words.recording) + " names that foot");
  }
  if (!foot.recorded && !foot.indices.empty() && reports.recording.is_complete()) {
    report.errors.add(foot.first_line, "foot",
                      found(name_of(side)) + " (rows: " + std::to_string(foot.indices.size()) +
                          "), expected only feet that " + std::string(report.words.recording) +
                          " names");
  }
  return without_gaps;
}

// ---- feet_cycles.csv

void walk_check::add(const checked_row<feet_cycle_row>& checked) {
  if (++feet_count_ > most_strides_) {
    return;
  }
  feet_.push_back({checked.row, checked.line});
  feet_cycle_row& row = feet_.back().row;
  if (checked.lacks(&feet_cycle_row::index)) {
    row.index = static_cast<int>(feet_.size()) - 1;
  } else if (!checked.has(&feet_cycle_row::index)) {
    reports.feet_cycles.every_row_known = false;
    return;
  }
  feet_indices_.add(row.index, checked.line);
}

void walk_check::end_feet_cycles() {
  table_report& report = reports.feet_cycles;
  check_count(report, feet_count_, "cycles of both feet");
  if (has_one_foot()) {
    if (!feet_.empty()) {
      report.errors.add(feet_.front().line, "",
                        "found a cycle of both feet, expected no row: " +
                            std::string(report.words.recording) + " names one foot only");
    }
    return;
  }
  if (feet_.empty() && report.is_complete() && needs_both_feet()) {
    report.errors.add(0, "", "found no row, expected at least one cycle of both feet");
  }
  settle_minus_ones_of<feet_cycle_row>(report, [&](auto use) {
    for (feet_cycle_place& place : feet_) {
      use(place.row, place.line);
    }
  });
  feet_indices_.check(report, "");
  std::stable_sort(feet_.begin(), feet_.end(),
                   [](const auto& a, const auto& b) { return a.row.index < b.row.index; });
  check_links(side::right, &feet_cycle_row::right_index, "right_index");
  check_links(side::left, &feet_cycle_row::left_index, "left_index");
}

void walk_check::check_links(side side, std::optional<int> feet_cycle_row::*link,
                             std::string_view column) {
  const row_indices& indices = of(side).indices;
  std::map<int, std::size_t> line_of_link;
  for (const auto& [row, line] : feet_) {
    const std::optional<int> index = row.*link;
    if (!index) {
      continue;
    }
    const auto what = [&, link = *index] { return found(std::to_string(link)); };
    if (!indices.contains(*index)) {
      if (reports.foot_cycles.is_complete()) {
        reports.feet_cycles.errors.add(
            line, column, what() + ", expected the index of a cycle of " + of_the(side, "foot"));
      }
      continue;
    }
    const auto [other, is_first] = line_of_link.emplace(*index, line);
    if (!is_first) {
      reports.feet_cycles.warnings.add(
          line, column,
          what() + " " + reports.feet_cycles.words.again(other->second) +
              ", expected each cycle of " + of_the(side, "foot") + " once");
    }
  }
}

// ---- exclusions.csv

void walk_check::add(const checked_row<exclusion_row>& checked) {
  excluded_.push_back(checked.row);
  if (checked.has(&exclusion_row::cycles) && reports.recording.is_complete()) {
    check_exclusion(checked);
  }
}

void walk_check::check_exclusion(const checked_row<exclusion_row>& checked) {
  const exclusion& row = checked.row;
  const bool of_both = row.cycles == analysed_cycles::feet;
  const foot_tables& foot = of(row.cycles == analysed_cycles::left ? side::left : side::right);
  if (of_both ? has_one_foot() : !foot.recorded) {
    reports.exclusions.warnings.add(
        checked.line, "cycles",
        found(name_of(row.cycles)) + ", expected cycles that the walk has: nothing is excluded");
    return;
  }
  const table_report& cycles = of_both ? reports.feet_cycles : reports.foot_cycles;
  if (checked.has(&exclusion_row::index) && cycles.is_complete()) {
    check_excluded_index(row.index, checked.line, of_both ? feet_.size() : foot.indices.size());
  }
}

void walk_check::check_excluded_index(int index, std::size_t line, std::size_t count) {
  if (count != 0 && (index < 0 || static_cast<std::size_t>(index) >= count)) {
    reports.exclusions.warnings.add(
        line, "index",
        found(std::to_string(index)) + ", expected an index from 0 to " +
            std::to_string(count - 1) + ": it is counted, but excludes no cycle");
  }
}

// ---- about.csv

void walk_check::add(const checked_row<about_row>& checked) {
  if (checked.row.name.empty() && checked.has(&about_row::name)) {
    reports.about.errors.add(checked.line, "name", found("") + ", expected a name");
  }
  if (++about_count_ <= most_about_rows) {
    about_.push_back(checked.row);
  }
}

void walk_check::end_about() {
  if (about_count_ > most_about_rows) {
    reports.about.errors.add(0, "",
                             "found " + std::to_string(about_count_) + " rows, expected at most " +
                                 std::to_string(most_about_rows));
  }
}

// ---- The walk

read_result walk_check::result(std::string name) {
  std::vector<input_error> errors;
  read_result result;
  for (table_report* report : {&reports.recording, &reports.foot_cycles, &reports.feet_cycles,
                               &reports.exclusions, &reports.about}) {
    std::move(report->errors).append_to(errors);
    std::move(report->warnings).append_to(result.warnings);
  }
  if (!errors.empty()) {
    throw walk_error(std::move(errors));
  }
  result.walk.name = std::move(name);
  result.walk.left = take_foot(side::left);
  result.walk.right = take_foot(side::right);
  for (const feet_cycle_place& place : feet_) {
    result.walk.feet.push_back(place.row);
    result.walk.feet_lines.push_back(place.line);
  }
  result.walk.exclusions = std::move(excluded_);
  result.walk.about = std::move(about_);
  return result;
}

std::optional<foot> walk_check::take_foot(side side) {
  foot_tables& tables = of(side);
  if (tables.recorded) {
    tables.recorded->cycles = std::move(tables.cycles);
    tables.recorded->lines = tables.indices.lines();
  }
  return std::move(tables.recorded);
}

}  // namespace gait_walk

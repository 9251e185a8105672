#include "walk_input.h"

#include "cell.h"
#include "check_walk.h"
#include "columns.h"
#include "minus_one.h"
#include "number_text.h"
#include "read_table.h"
#include "shown_text.h"

#include <gait/result.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

namespace gait_python {

namespace {

using gait_walk::checked_row;
using gait_walk::column_rules;
using gait_walk::table_report;
using gait_walk::walk_check;

/// Messages about columns in memory: rows are counted from 0, as their owner counts them.
gait_walk::wording words_for_rows() {
  gait_walk::wording words;
  words.line = "row";
  words.lines = "rows";
  words.on_line = "in row";
  words.first_line = 0;
  words.header = "the columns";
  words.recording = "the recording";
  words.ignore_column = "ignore_columns";
  words.ignore_all = "ignore_columns=[\"all\"]";
  return words;
}

// ---- Cells

/// A value as the text that a table would hold.
std::string cell_text(const column_values& values, std::size_t row) {
  return std::visit(
      [row](const auto& column) -> std::string {
        using column_type = std::decay_t<decltype(column)>;
        if constexpr (std::is_same_v<column_type, std::vector<std::string>>) {
          return column[row];
        } else if constexpr (std::is_same_v<column_type, array_of_whole>) {
          return gait_walk::text_of(column.data()[row]);
        } else {
          const double value = column.data()[row];
          if (std::isnan(value)) {
            return {};
          }
          return std::isinf(value) ? (value < 0 ? "-inf" : "inf") : gait_walk::text_of(value);
        }
      },
      values);
}

/// The value of a column with numbers; nullopt for one with texts.
std::optional<double> number_at(const column_values& values, std::size_t row) {
  if (const auto* numbers = std::get_if<array_of_numbers>(&values)) {
    return numbers->data()[row];
  }
  if (const auto* whole = std::get_if<array_of_whole>(&values)) {
    return static_cast<double>(whole->data()[row]);
  }
  return std::nullopt;
}

// Each of these takes a number without a detour over its text, where that is the same; it returns
// whether it did.

bool take_number(double number, const column_rules& /*rules*/, double& value) {
  if (std::isinf(number)) {
    return false;
  }
  value = std::isnan(number)       ? gait_missing
          : number == gait_missing ? gait_walk::measured_minus_one
                                   : number;
  return true;
}

bool take_number(double number, const column_rules& rules, int& value) {
  const bool is_whole = std::trunc(number) == number;
  if (!is_whole || number < rules.lowest || number > std::numeric_limits<int>::max()) {
    return false;
  }
  value = static_cast<int>(number);
  return true;
}

bool take_number(double number, const column_rules& rules, std::optional<int>& value) {
  int whole = 0;
  if (std::isnan(number)) {
    value.reset();
    return true;
  }
  if (!take_number(number, rules, whole)) {
    return false;
  }
  value = whole;
  return true;
}

template <class Value>
bool take_number(double /*number*/, const column_rules& /*rules*/, Value& /*value*/) {
  return false;
}

template <class Row>
bool take_cell(const column_values& values, std::size_t row, std::size_t line,
               const gait_walk::column<Row>& column, Row& filled, table_report& report) {
  return std::visit(
      [&](auto member) {
        auto& value = filled.*member;
        const std::optional<double> number = number_at(values, row);
        if (number && take_number(*number, column.rules, value)) {
          return true;
        }
        std::string complaint = read_cell(cell_text(values, row), column.rules, value);
        if (complaint.empty()) {
          return true;
        }
        report.errors.add(line, column.name, std::move(complaint));
        return false;
      },
      column.member);
}

// ---- Tables

gait_walk::csv_row names_of(const table_in& table) {
  gait_walk::csv_row names;
  for (const column_in& column : table) {
    names.append(column.name);
  }
  return names;
}

/// Hands the rows of a table to a check. `line_of` gives the number of a row in messages.
template <class Row, class LineOf>
void add_rows(const table_in& table, const std::vector<std::string>& ignored, LineOf line_of,
              table_report& report, walk_check& check) {
  if (table.empty()) {
    report.was_read = false;
    report.errors.add(0, "", "found no column, expected some");
    return;
  }
  const gait_walk::header<Row> header =
      gait_walk::read_header<Row>(names_of(table), ignored, report);
  const std::size_t rows = header.usable ? rows_of(table) : 0;
  for (std::size_t row = 0; row < rows; ++row) {
    checked_row<Row> checked;
    checked.line = line_of(row);
    checked.in_table = header.present;
    for (std::size_t place = 0; place < table.size(); ++place) {
      const std::size_t column = header.column_of_cell[place];
      if (column != header.no_column) {
        checked.good[column] = take_cell(table[place].values, row, checked.line,
                                         gait_walk::columns<Row>[column], checked.row, report);
      }
    }
    check.add(checked);
  }
}

std::size_t line_of_row(std::size_t row) { return row + 1; }

// ---- The recording, which a caller gives as arguments

/// The feet that the strides name, and whether every stride names one.
struct feet_of_strides {
  bool left = false;
  bool right = false;
  bool all_known = true;

  bool has(gait_walk::side side) const { return side == gait_walk::side::left ? left : right; }
};

feet_of_strides find_feet(const table_in& strides) {
  feet_of_strides feet;
  const auto column = std::find_if(strides.begin(), strides.end(), [](const column_in& candidate) {
    return gait_walk::lower(candidate.name) == "foot";
  });
  if (column == strides.end()) {
    feet.all_known = false;
    return feet;
  }
  for (std::size_t row = 0; row < rows_of(strides); ++row) {
    gait_walk::side side{};
    if (!read_cell(cell_text(column->values, row), {}, side).empty()) {
      feet.all_known = false;
    } else {
      (side == gait_walk::side::left ? feet.left : feet.right) = true;
    }
  }
  return feet;
}

/// Reads an argument, which has no row.
template <class Value>
bool read_argument(const std::string& cell, const char* name, const char* column, Value& value,
                   table_report& report) {
  const auto& all = gait_walk::columns<gait_walk::recording_row>;
  const auto found = std::find_if(all.begin(), all.end(),
                                  [&](const auto& candidate) { return candidate.name == column; });
  std::string complaint = read_cell(cell, found->rules, value);
  if (complaint.empty()) {
    return true;
  }
  report.errors.add(0, name, std::move(complaint));
  return false;
}

/// The lengths of a recording as numbers.
struct recorded_samples {
  std::optional<gait_walk::side> foot;  ///< none where the same holds for every foot
  std::optional<std::uint64_t> signal_1;
  std::optional<std::uint64_t> signal_2;
};

/// Reads the lengths that a caller gives, those that can be read.
std::vector<recorded_samples> read_samples(const walk_parts& parts, const feet_of_strides& feet,
                                           table_report& report) {
  std::vector<recorded_samples> all;
  for (const recording_cells& cells : parts.samples) {
    recorded_samples& samples = all.emplace_back();
    gait_walk::side side{};
    if (!cells.foot.empty()) {
      if (std::string complaint = read_cell(cells.foot, {}, side); !complaint.empty()) {
        report.errors.add(0, "samples", std::move(complaint));
        all.pop_back();
        continue;
      }
      samples.foot = side;
      if (feet.all_known && !feet.has(side)) {
        report.errors.add(
            0, "samples",
            gait_walk::found(name_of(side)) + ", expected only feet that the strides name");
      }
    }
    read_argument(cells.signal_1_samples, "samples", "signal_1_samples", samples.signal_1, report);
    read_argument(cells.signal_2_samples, "samples", "signal_2_samples", samples.signal_2, report);
  }
  return all;
}

void add_recording(const walk_parts& parts, walk_check& check) {
  table_report& report = check.reports.recording;
  const feet_of_strides feet = find_feet(parts.strides);
  report.every_row_known = feet.all_known;
  checked_row<gait_walk::recording_row> checked;
  checked.in_table.set();
  checked.good.set();
  gait_walk::recording_row& row = checked.row;
  if (!read_argument(parts.sampling_rate, "sampling_rate", "sampling_rate", row.sampling_rate,
                     report)) {
    row.sampling_rate = 0;
  }
  const std::vector<recorded_samples> all_samples = read_samples(parts, feet, report);
  for (const gait_walk::side side : {gait_walk::side::left, gait_walk::side::right}) {
    const auto samples = std::find_if(
        all_samples.begin(), all_samples.end(),
        [side](const auto& candidate) { return candidate.foot.value_or(side) == side; });
    const bool is_known = samples != all_samples.end();
    row.foot = side;
    row.signal_1_samples = is_known ? samples->signal_1 : std::nullopt;
    row.signal_2_samples = is_known ? samples->signal_2 : std::nullopt;
    if (feet.has(side)) {
      check.add(checked);
    }
  }
}

void forget_lines(gait_walk::walk& walk) {
  for (auto* foot : {&walk.left, &walk.right}) {
    if (*foot) {
      (*foot)->lines.clear();
    }
  }
  walk.feet_lines.clear();
}

}  // namespace

gait_walk::read_result make_walk(const walk_parts& parts) {
  gait_walk::read_options options;
  options.words = words_for_rows();
  // Without the cycles of both feet, each foot can still be analysed alone.
  options.analysed =
      parts.feet ? gait_walk::analysed_cycles::feet : gait_walk::analysed_cycles::left;
  walk_check check("", options);
  add_recording(parts, check);
  add_rows<gait_walk::foot_cycle_row>(parts.strides, parts.ignored_columns, line_of_row,
                                      check.reports.foot_cycles, check);
  if (rows_of(parts.strides) == 0) {
    check.reports.foot_cycles.every_row_known = false;
    check.reports.foot_cycles.errors.add(0, "", "found no row, expected one for each stride");
  }
  check.end_foot_cycles();
  if (parts.feet) {
    add_rows<gait_walk::feet_cycle_row>(*parts.feet, parts.ignored_columns, line_of_row,
                                        check.reports.feet_cycles, check);
    check.end_feet_cycles();
  }
  if (parts.exclusions) {
    add_rows<gait_walk::exclusion_row>(*parts.exclusions, parts.ignored_columns, line_of_row,
                                       check.reports.exclusions, check);
  }
  gait_walk::read_result result = check.result(parts.name);
  forget_lines(result.walk);
  return result;
}

gait_walk::walk restore_walk(const stored_walk& stored) {
  gait_walk::read_options options;
  options.analysed = rows_of(stored.feet.table) == 0 ? gait_walk::analysed_cycles::left
                                                     : gait_walk::analysed_cycles::feet;
  walk_check check(stored.name, options);
  const auto add = [&](auto row_type, const stored_table& from, table_report& report) {
    using row_type_of = decltype(row_type);
    const bool is_numbered = from.lines.size() == rows_of(from.table);
    add_rows<row_type_of>(
        from.table, {}, [&](std::size_t row) { return is_numbered ? from.lines[row] : row + 1; },
        report, check);
  };
  add(gait_walk::recording_row(), stored.recording, check.reports.recording);
  check.end_recording();
  add(gait_walk::foot_cycle_row(), stored.strides, check.reports.foot_cycles);
  check.end_foot_cycles();
  add(gait_walk::feet_cycle_row(), stored.feet, check.reports.feet_cycles);
  if (rows_of(stored.feet.table) != 0) {
    check.end_feet_cycles();
  }
  add(gait_walk::exclusion_row(), stored.exclusions, check.reports.exclusions);
  add(gait_walk::about_row(), stored.about, check.reports.about);
  check.end_about();
  gait_walk::walk walk = check.result(stored.name).walk;
  if (stored.strides.lines.empty()) {
    forget_lines(walk);
  }
  return walk;
}

}  // namespace gait_python

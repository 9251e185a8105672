#include "read_table.h"

#include "cell.h"
#include "csv_table.h"
#include "nearest_name.h"
#include "shown_text.h"

#include <algorithm>
#include <iterator>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace gait_walk {

namespace {

// ---- The header line

template <class Row>
std::string column_names() {
  std::string names;
  for (const auto& column : columns<Row>) {
    names += (names.empty() ? "" : ",") + std::string(column.name);
  }
  return names;
}

/// Which of the table's columns the cells of a row belong to.
template <class Row>
struct header {
  static constexpr std::size_t no_column = columns<Row>.size();
  std::vector<std::size_t> column_of_cell;
  std::bitset<columns<Row>.size()> present;
  bool usable = false;  ///< whether it has any column of the table
};

template <class Row>
std::size_t find_column(std::string_view name) {
  const auto& all = columns<Row>;
  return static_cast<std::size_t>(std::distance(
      all.begin(), std::find_if(all.begin(), all.end(),
                                [&](const auto& column) { return column.name == name; })));
}

/// The columns that are left out.
class ignored_columns {
public:
  explicit ignored_columns(const std::vector<std::string>& names) {
    std::transform(names.begin(), names.end(), std::back_inserter(names_), lower);
  }

  bool has(const std::string& name) const {
    return std::find(names_.begin(), names_.end(), name) != names_.end();
  }
  bool has_unknown(const std::string& name) const { return has(name) || has("all"); }

private:
  std::vector<std::string> names_;
};

template <class Row>
void report_unknown_column(const csv_row& row, std::size_t cell, input_error_list& errors) {
  if (row[cell].empty()) {
    errors.add(row.line, "",
               "found no name for column " + std::to_string(cell + 1) +
                   ", expected one: name it, or leave it out with --ignore-column all");
    return;
  }
  std::vector<std::string_view> known;
  known.reserve(columns<Row>.size());
  for (const auto& column : columns<Row>) {
    known.push_back(column.name);
  }
  const std::string_view nearest = nearest_name(row[cell], known);
  errors.add(row.line, shown(row[cell]),
             "found an unknown column, expected " +
                 (nearest.empty() ? "only " + column_names<Row>() + ": "
                                  : std::string(nearest) + ": rename it, or ") +
                 "leave it out with --ignore-column");
}

/// Which columns the cells of the header line stand for; no_column for those that are left out.
template <class Row>
header<Row> find_columns(const csv_row& row, const ignored_columns& ignored) {
  header<Row> header;
  for (std::size_t cell = 0; cell < row.size(); ++cell) {
    const std::string name = lower(row[cell]);
    header.column_of_cell.push_back(ignored.has(name) ? header.no_column : find_column<Row>(name));
    header.usable = header.usable || header.column_of_cell.back() != header.no_column;
  }
  return header;
}

template <class Row>
header<Row> read_header(const csv_row& row, const ignored_columns& ignored, table_report& report) {
  header<Row> header = find_columns<Row>(row, ignored);
  if (!header.usable) {
    report.was_read = false;
    report.errors.add(row.line, "",
                      found(row[0]) + ", expected the header line " + column_names<Row>());
    return header;
  }
  for (std::size_t cell = 0; cell < row.size(); ++cell) {
    std::size_t& column = header.column_of_cell[cell];
    if (column == header.no_column) {
      if (!ignored.has_unknown(lower(row[cell]))) {
        report_unknown_column<Row>(row, cell, report.errors);
      }
    } else if (header.present[column]) {
      report.errors.add(row.line, columns<Row>[column].name,
                        "found the column twice, expected it once");
      column = header.no_column;
    } else {
      header.present.set(column);
    }
  }
  for (std::size_t column = 0; column < columns<Row>.size(); ++column) {
    if (columns<Row>[column].rules.required && !header.present[column]) {
      report.errors.add(row.line, columns<Row>[column].name,
                        "found no such column, expected it in the header line");
    }
  }
  return header;
}

// ---- Rows

template <class Row>
bool read_column(std::string_view cell, std::size_t line, const column<Row>& column, Row& row,
                 table_report& report) {
  return std::visit(
      [&](auto member) {
        auto& value = row.*member;
        std::string complaint = read_cell(cell, column.rules, value);
        if (!complaint.empty()) {
          report.errors.add(line, column.name, std::move(complaint));
          return false;
        }
        return true;
      },
      column.member);
}

template <class Row>
checked_row<Row> read_row(const csv_row& cells, const header<Row>& header, table_report& report) {
  checked_row<Row> checked;
  checked.line = cells.line;
  checked.in_table = header.present;
  for (std::size_t cell = 0; cell < cells.size(); ++cell) {
    const std::size_t column = header.column_of_cell[cell];
    if (column != header.no_column) {
      checked.good[column] =
          read_column(cells[cell], cells.line, columns<Row>[column], checked.row, report);
    }
  }
  return checked;
}

bool is_digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Whether two cells may be one number with a decimal comma.
bool may_be_split(std::string_view whole, std::string_view decimals) {
  whole.remove_prefix(!whole.empty() && whole[0] == '-' ? 1 : 0);
  return is_digits(whole) && is_digits(decimals);
}

/// Whether the cells are as many as the columns when numbers of measured columns are put together
/// again.
template <class Row>
bool are_split_by_decimal_commas(const csv_row& cells, const header<Row>& header) {
  std::size_t extra = cells.size() - header.column_of_cell.size();
  std::size_t cell = 0;
  for (const std::size_t column : header.column_of_cell) {
    const bool is_measured = column != header.no_column &&
                             std::holds_alternative<double Row::*>(columns<Row>[column].member);
    if (is_measured && extra != 0 && may_be_split(cells[cell], cells[cell + 1])) {
      --extra;
      ++cell;
    }
    ++cell;
  }
  return extra == 0;
}

/// A guess why a row has too many cells, or nothing.
template <class Row>
std::string why_too_many(const csv_row& cells, const header<Row>& header) {
  if (cells.size() <= header.column_of_cell.size()) {
    return {};
  }
  if (are_split_by_decimal_commas(cells, header)) {
    return ": are there decimal commas in place of decimal points?";
  }
  return std::is_same_v<Row, exclusion_row>
             ? ": a reason with a comma in it needs quotation marks around it"
             : "";
}

/// Whether a row holds nothing, as spreadsheets leave them below a table.
bool is_empty(const csv_row& cells) {
  for (std::size_t cell = 0; cell < cells.size(); ++cell) {
    if (!cells[cell].empty()) {
      return false;
    }
  }
  return true;
}

template <class Row>
void read_rows(csv_table& table, const ignored_columns& ignored, table_report& report,
               const std::function<void(const checked_row<Row>&)>& use) {
  csv_row cells;
  if (!table.next(cells)) {
    report.was_read = false;
    report.errors.add(0, "",
                      "found an empty file, expected the header line " + column_names<Row>());
    return;
  }
  const header<Row> header = read_header<Row>(cells, ignored, report);
  while (header.usable && table.next(cells)) {
    if (is_empty(cells)) {
      continue;
    }
    if (cells.size() == header.column_of_cell.size()) {
      use(read_row<Row>(cells, header, report));
    } else {
      report.every_row_known = false;
      report.errors.add(cells.line, "",
                        "found " + std::to_string(cells.size()) +
                            (cells.size() == 1 ? " cell" : " cells") + ", expected " +
                            std::to_string(header.column_of_cell.size()) +
                            why_too_many(cells, header));
    }
  }
}

}  // namespace

template <class Row>
void read_table(const opened_table& opened, const std::vector<std::string>& ignored,
                table_report& report, const std::function<void(const checked_row<Row>&)>& use) {
  if (opened.text == nullptr) {
    report.was_read = false;
    report.errors.add(0, "", opened.complaint);
    return;
  }
  try {
    csv_table table(*opened.text);
    read_rows<Row>(table, ignored_columns(ignored), report, use);
  } catch (const table_error& error) {
    report.was_read = false;
    report.errors.add(error.line(), "", error.what());
  }
}

template void read_table(const opened_table&, const std::vector<std::string>&, table_report&,
                         const std::function<void(const checked_row<recording_row>&)>&);
template void read_table(const opened_table&, const std::vector<std::string>&, table_report&,
                         const std::function<void(const checked_row<foot_cycle_row>&)>&);
template void read_table(const opened_table&, const std::vector<std::string>&, table_report&,
                         const std::function<void(const checked_row<feet_cycle_row>&)>&);
template void read_table(const opened_table&, const std::vector<std::string>&, table_report&,
                         const std::function<void(const checked_row<exclusion_row>&)>&);
template void read_table(const opened_table&, const std::vector<std::string>&, table_report&,
                         const std::function<void(const checked_row<about_row>&)>&);

}  // namespace gait_walk

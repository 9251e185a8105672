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

/// The columns that the header line does not have.
template <class Row>
std::vector<std::string_view> absent_columns(const header<Row>& header) {
  std::vector<std::string_view> absent;
  absent.reserve(columns<Row>.size());
  for (std::size_t column = 0; column < columns<Row>.size(); ++column) {
    if (!header.present[column]) {
      absent.push_back(columns<Row>[column].name);
    }
  }
  return absent;
}

std::string joined(const std::vector<std::string_view>& names) {
  std::string text;
  for (const std::string_view name : names) {
    text += (text.empty() ? "" : ", ") + std::string(name);
  }
  return text;
}

/// Unknown columns that are near to no other, reported together: the names that they may be given
/// are many.
void report_strange_columns(const std::vector<std::string>& strange,
                            const std::vector<std::string_view>& absent, std::size_t line,
                            table_report& report) {
  if (strange.empty()) {
    return;
  }
  constexpr std::size_t most_shown = 3;
  std::string first_names;
  for (std::size_t i = 0; i < std::min(strange.size(), most_shown); ++i) {
    first_names += (i == 0 ? "" : ", ") + in_quotes(strange[i]);
  }
  const bool is_one = strange.size() == 1;
  const std::string how_many = std::to_string(strange.size());
  report.errors.add(
      line, "",
      (is_one ? "found an unknown column (" : "found " + how_many + " unknown columns (") +
          first_names + (strange.size() > most_shown ? ", ..." : "") +
          "), expected only known ones: leave " + (is_one ? "it out with " : "them out with ") +
          std::string(is_one ? report.words.ignore_column : report.words.ignore_all) +
          (absent.empty() ? "" : ", or rename: the table has no " + joined(absent)));
}

template <class Row>
void report_unknown_columns(const csv_row& row, const header<Row>& header,
                            const ignored_columns& ignored, table_report& report) {
  const std::vector<std::string_view> absent = absent_columns(header);
  std::vector<std::string> strange;
  for (std::size_t cell = 0; cell < row.size(); ++cell) {
    if (find_column<Row>(lower(row[cell])) != header.no_column ||
        ignored.has_unknown(lower(row[cell]))) {
      continue;
    }
    if (row[cell].empty()) {
      report.errors.add(row.line, "",
                        "found no name for column " + std::to_string(cell + 1) +
                            ", expected one: name it, or leave it out with " +
                            std::string(report.words.ignore_all));
      continue;
    }
    const std::string_view nearest = nearest_name(row[cell], absent);
    if (nearest.empty()) {
      strange.emplace_back(row[cell]);
      continue;
    }
    report.errors.add(row.line, shown(row[cell]),
                      "found an unknown column, expected " + std::string(nearest) +
                          ": rename it, or leave it out with " +
                          std::string(report.words.ignore_column));
  }
  report_strange_columns(strange, absent, row.line, report);
}

/// Which columns the cells of the header line stand for; no_column for those that are left out.
/// A column that the table cannot do without stays.
template <class Row>
header<Row> find_columns(const csv_row& row, const ignored_columns& ignored) {
  header<Row> header;
  for (std::size_t cell = 0; cell < row.size(); ++cell) {
    const std::string name = lower(row[cell]);
    std::size_t column = find_column<Row>(name);
    if (column != header.no_column && ignored.has(name) && !columns<Row>[column].rules.required) {
      column = header.no_column;
    }
    header.column_of_cell.push_back(column);
    header.usable = header.usable || column != header.no_column;
  }
  return header;
}

}  // namespace

template <class Row>
header<Row> read_header(const csv_row& row, const std::vector<std::string>& ignored_names,
                        table_report& report) {
  const ignored_columns ignored(ignored_names);
  header<Row> header = find_columns<Row>(row, ignored);
  if (!header.usable) {
    report.was_read = false;
    report.errors.add(row.line, "",
                      found(row[0]) + ", expected " + std::string(report.words.header) + " " +
                          column_names<Row>());
    return header;
  }
  for (std::size_t cell = 0; cell < row.size(); ++cell) {
    std::size_t& column = header.column_of_cell[cell];
    if (column == header.no_column) {
      continue;
    }
    if (header.present[column]) {
      report.errors.add(row.line, columns<Row>[column].name,
                        "found the column twice, expected it once");
      column = header.no_column;
      continue;
    }
    header.present.set(column);
    if (ignored.has(std::string(columns<Row>[column].name))) {
      report.errors.add(row.line, columns<Row>[column].name,
                        "found " + std::string(report.words.ignore_column) +
                            " for it, expected it to be read: this table cannot do without the "
                            "column");
    }
  }
  report_unknown_columns(row, header, ignored, report);
  for (std::size_t column = 0; column < columns<Row>.size(); ++column) {
    if (columns<Row>[column].rules.required && !header.present[column]) {
      report.errors.add(row.line, columns<Row>[column].name,
                        "found no such column, expected it in " + std::string(report.words.header));
    }
  }
  return header;
}

namespace {

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
  return std::is_same_v<Row, exclusion_row> || std::is_same_v<Row, about_row>
             ? ": a text with a comma in it needs quotation marks around it"
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
void read_rows(csv_table& table, const std::vector<std::string>& ignored, table_report& report,
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
  if (!opened.remark.empty()) {
    report.warnings.add(0, "", opened.remark);
  }
  try {
    csv_table table(*opened.text);
    read_rows<Row>(table, ignored, report, use);
  } catch (const table_error& error) {
    report.was_read = false;
    report.errors.add(error.line(), "", error.what());
  }
}

template header<recording_row> read_header(const csv_row&, const std::vector<std::string>&,
                                           table_report&);
template header<foot_cycle_row> read_header(const csv_row&, const std::vector<std::string>&,
                                            table_report&);
template header<feet_cycle_row> read_header(const csv_row&, const std::vector<std::string>&,
                                            table_report&);
template header<exclusion_row> read_header(const csv_row&, const std::vector<std::string>&,
                                           table_report&);
template header<about_row> read_header(const csv_row&, const std::vector<std::string>&,
                                       table_report&);
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

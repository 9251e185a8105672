#ifndef TOOLS_WALK_FOLDER_READ_TABLE_H
#define TOOLS_WALK_FOLDER_READ_TABLE_H

/// \file
/// One table as rows of values: what can be said about it without the other tables.

#include "columns.h"
#include "csv_table.h"
#include "input_error.h"
#include "open_table.h"
#include "wording.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace gait_walk {

/// What is said about one table.
struct table_report {
  input_error_list errors;
  input_error_list warnings;
  bool was_read = true;         ///< whether it could be opened, and read to its end
  bool every_row_known = true;  ///< whether each row that was read is known by its foot and index
  wording words = {};

  /// Whether what no row says is not in the table. Where a row is unknown or unread, it may be the
  /// very row that seems missing.
  bool is_complete() const { return was_read && every_row_known; }
};

/// A row whose cells were read: members whose cells could not be read hold their defaults.
template <class Row>
struct checked_row {
  Row row;
  std::size_t line = 0;
  std::bitset<columns<Row>.size()> in_table;  ///< the columns that the table has
  std::bitset<columns<Row>.size()> good;      ///< those whose cell was read

  /// Whether the cell of a member was read.
  template <class Value, class Base>
  bool has(Value Base::*member) const {
    return good.test(place_of(member));
  }

  /// Whether the table has no column for a member.
  template <class Value, class Base>
  bool lacks(Value Base::*member) const {
    return !in_table.test(place_of(member));
  }

private:
  template <class Value, class Base>
  static std::size_t place_of(Value Base::*member) {
    const decltype(column<Row>::member) wanted = static_cast<Value Row::*>(member);
    const auto is_wanted = [&](const column<Row>& column) { return column.member == wanted; };
    return static_cast<std::size_t>(
        std::find_if(columns<Row>.begin(), columns<Row>.end(), is_wanted) - columns<Row>.begin());
  }
};

/// Which of a table's columns the cells of a row belong to.
template <class Row>
struct header {
  static constexpr std::size_t no_column = columns<Row>.size();
  std::vector<std::size_t> column_of_cell;
  std::bitset<columns<Row>.size()> present;
  bool usable = false;  ///< whether it has any column of the table
};

/// Finds the columns that the names in a header line stand for, at least one, and reports those
/// that are wrong. Columns in `ignored_names` are left out; "all" stands for every
/// unknown one.
template <class Row>
header<Row> read_header(const csv_row& row, const std::vector<std::string>& ignored_names,
                        table_report& report);

/// Reads all rows of a table and hands each to `use`; `ignored` is as in read_header().
template <class Row>
void read_table(const opened_table& opened, const std::vector<std::string>& ignored,
                table_report& report, const std::function<void(const checked_row<Row>&)>& use);

}  // namespace gait_walk

#endif

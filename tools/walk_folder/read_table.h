#ifndef TOOLS_WALK_FOLDER_READ_TABLE_H
#define TOOLS_WALK_FOLDER_READ_TABLE_H

/// \file
/// One table as rows of values: what can be said about it without the other tables.

#include "columns.h"
#include "input_error.h"
#include "open_table.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <functional>

namespace gait_walk {

/// What is said about one table.
struct table_report {
  input_error_list errors;
  input_error_list warnings;
  bool was_read = true;         ///< whether it could be opened, and read to its end
  bool every_row_known = true;  ///< whether each row that was read is known by its foot and index

  /// Whether what no row says is not in the table. Where a row is unknown or unread, it may be the
  /// very row that seems missing.
  bool is_complete() const { return was_read && every_row_known; }
};

/// A row whose cells were read: members whose cells could not be read hold their defaults.
template <class Row>
struct checked_row {
  Row row;
  std::size_t line = 0;
  std::bitset<columns<Row>.size()> good;

  /// Whether the cell of a member was read.
  template <class Value, class Base>
  bool has(Value Base::*member) const {
    const decltype(column<Row>::member) wanted = static_cast<Value Row::*>(member);
    const auto is_wanted = [&](const column<Row>& column) { return column.member == wanted; };
    const auto place =
        std::find_if(columns<Row>.begin(), columns<Row>.end(), is_wanted) - columns<Row>.begin();
    return good.test(static_cast<std::size_t>(place));
  }
};

/// Reads all rows of a table and hands each to `use`.
template <class Row>
void read_table(const opened_table& opened, table_report& report,
                const std::function<void(const checked_row<Row>&)>& use);

}  // namespace gait_walk

#endif

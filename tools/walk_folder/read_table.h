#ifndef TOOLS_WALK_FOLDER_READ_TABLE_H
#define TOOLS_WALK_FOLDER_READ_TABLE_H

/// \file
/// One table as rows of values: what can be said about it without the other tables.

#include "columns.h"
#include "fault.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <functional>
#include <istream>
#include <memory>
#include <string>

namespace gait_walk {

/// What is said about one table.
struct table_report {
  fault_list faults;
  fault_list warnings;
  /// Whether every row is known by its foot and index. Where one is not, it may be the very row
  /// that seems missing.
  bool every_row_known = true;
};

/// A table to be read, or the reason why it cannot be.
struct opened_table {
  std::istream* text = nullptr;
  std::unique_ptr<std::istream> owned;
  std::string complaint;
  bool missing = false;
};

/// A row whose cells were read: the members whose cells had a fault hold their defaults.
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

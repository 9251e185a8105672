#ifndef TOOLS_WALK_FOLDER_MINUS_ONE_H
#define TOOLS_WALK_FOLDER_MINUS_ONE_H

/// \file
/// What -1 stands for in a table: a measurement, or a value that is missing.
///
/// To the library, gait_missing is a missing value, and it is -1. An angle of -1 degree is a
/// measurement all the same. Other columns cannot be negative; a table with -1 in one of them uses
/// it as its word for missing.

#include "columns.h"
#include "input_error.h"

#include <gait/result.h>

#include <cstddef>
#include <limits>
#include <string_view>
#include <variant>

namespace gait_walk {

/// A -1 that was measured: the next double towards zero. Every reader stores it for a cell of -1,
/// until all of the table is read.
inline constexpr double measured_minus_one =
    gait_missing + std::numeric_limits<double>::epsilon() / 2.0;

/// The cells of a table in which -1 was taken as missing.
struct missing_minus_ones {
  std::size_t cells = 0;
  short_list lines;
  std::string_view column;  ///< the first without a sign that has one
};

/// Decides for a table what its -1 stand for, and makes gait_missing of all of them if that is it.
/// `for_each_row` calls what it is given with each row of the table and its line.
template <class Row, class ForEachRow>
missing_minus_ones settle_minus_ones(ForEachRow for_each_row) {
  missing_minus_ones found;
  const auto for_each_minus_one = [&](auto use) {
    for_each_row([&](auto& row, std::size_t line) {
      using row_type = std::decay_t<decltype(row)>;
      for (const auto& column : columns<Row>) {
        const auto* const measured = std::get_if<double Row::*>(&column.member);
        if (measured != nullptr) {
          double& value = row.*static_cast<double row_type::*>(*measured);
          if (value == measured_minus_one) {
            use(column, value, line);
          }
        }
      }
    });
  };
  for_each_minus_one([&](const auto& column, const double& /*value*/, std::size_t /*line*/) {
    if (!column.rules.has_sign && found.column.empty()) {
      found.column = column.name;
    }
  });
  if (!found.column.empty()) {
    for_each_minus_one([&](const auto& /*column*/, double& value, std::size_t line) {
      value = gait_missing;
      found.lines.add(line);
      ++found.cells;
    });
  }
  return found;
}

}  // namespace gait_walk

#endif

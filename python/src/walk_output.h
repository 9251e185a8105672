#ifndef PYTHON_WALK_OUTPUT_H
#define PYTHON_WALK_OUTPUT_H

/// \file
/// The tables of a walk, and those of its statistics, as columns.

#include "python_values.h"

#include "csv_output.h"
#include "walk.h"
#include "walk_statistics.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace gait_python {

/// A table of a walk folder by the name of its argument: "strides", "feet", "exclusions",
/// "recording" or "about". Throws std::invalid_argument for another name.
std::vector<column_out> columns_of(const gait_walk::walk& walk, std::string_view table);

/// The lines of the table's rows; empty where it has none.
std::vector<std::size_t> lines_of(const gait_walk::walk& walk, std::string_view table);

/// A table of the results, with the columns of its CSV.
std::vector<column_out> columns_of(const gait_report::walk_statistics& walk,
                                   gait_report::csv_table table);

}  // namespace gait_python

#endif

#ifndef TOOLS_REPORT_CSV_OUTPUT_H
#define TOOLS_REPORT_CSV_OUTPUT_H

/// \file
/// Walks as CSV tables, unrounded: a row for each parameter and side, for each walk, or for each
/// stride.

#include "output_format.h"
#include "walk_statistics.h"

#include <string>
#include <vector>

namespace gait_report {

/// A column as the pages describe it.
struct listed_column {
  std::string name;
  std::string meaning;
};

/// The columns of a table, in their order; the same for every walk.
std::vector<listed_column> columns_of(csv_table table);

/// The header line, once for all walks.
std::string csv_header(csv_table table);

/// The rows of one walk. What is missing is an empty cell.
std::string csv_rows(csv_table table, const walk_statistics& walk);

}  // namespace gait_report

#endif

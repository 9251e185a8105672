#ifndef TOOLS_REPORT_CSV_OUTPUT_H
#define TOOLS_REPORT_CSV_OUTPUT_H

/// \file
/// Walks as CSV tables, unrounded: a row for each parameter and side, for each walk, or for each
/// stride.

#include "output_format.h"
#include "walk_statistics.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace gait_report {

/// A column as the pages describe it.
struct listed_column {
  std::string name;
  std::string meaning;
};

/// The columns of a table, in their order; the same for every walk.
std::vector<listed_column> columns_of(csv_table table);

/// A cell: a number, a whole one, a truth value or a text. All cells of a column hold the same of
/// these; what is missing is nullopt, or an empty text.
using table_cell =
    std::variant<std::optional<double>, std::optional<std::int64_t>, bool, std::string>;

using use_row = std::function<void(const std::vector<table_cell>& row)>;

/// Hands over the rows of one walk. A number is the one that people are shown.
void for_each_row(csv_table table, const walk_statistics& walk, const use_row& use);

/// The header line, once for all walks.
std::string csv_header(csv_table table);

/// The rows of one walk. What is missing is an empty cell.
std::string csv_rows(csv_table table, const walk_statistics& walk);

}  // namespace gait_report

#endif

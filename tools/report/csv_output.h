#ifndef TOOLS_REPORT_CSV_OUTPUT_H
#define TOOLS_REPORT_CSV_OUTPUT_H

/// \file
/// The parameters of walks as one CSV table in long form: a row for each parameter and side,
/// unrounded.

#include "walk_statistics.h"

#include <string>

namespace gait_report {

/// The header line, once for all walks.
std::string csv_header();

/// The rows of one walk. A statistic that could not be computed is an empty cell.
std::string csv_rows(const walk_statistics& walk);

}  // namespace gait_report

#endif

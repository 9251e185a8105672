#ifndef TOOLS_GAIT_STATISTICS_CSV_OUTPUT_H
#define TOOLS_GAIT_STATISTICS_CSV_OUTPUT_H

/// \file
/// The parameters of walks as one CSV table in long form: a row for each parameter and side,
/// unrounded.

#include "run_walk.h"

#include <string>

namespace gait_program {

/// The header line, once for all walks.
std::string csv_header();

/// The rows of one walk. A statistic that could not be computed is an empty cell.
std::string csv_rows(const walk_statistics& walk);

}  // namespace gait_program

#endif

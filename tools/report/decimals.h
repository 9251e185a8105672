#ifndef TOOLS_REPORT_DECIMALS_H
#define TOOLS_REPORT_DECIMALS_H

/// \file
/// With how many decimals people are shown what is not a parameter; a parameter's stand in its row
/// of the catalogue.

#include <gait/catalogue.h>

namespace gait_report {

inline constexpr int decimals_of_percent = 1;
inline constexpr int decimals_of_ratio = 3;
inline constexpr int decimals_of_seconds = gait_catalogue::row_of<GCT>.decimals;
inline constexpr int decimals_of_metres = gait_catalogue::row_of<SLENGTH>.decimals;

/// Of times and distances in sentences.
inline constexpr int decimals_of_sums = 1;

}  // namespace gait_report

#endif

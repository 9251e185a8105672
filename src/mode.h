#ifndef GAIT_SRC_MODE_H
#define GAIT_SRC_MODE_H

/// \file
/// Which analysis a walk gets.

#include <gait/result.h>

namespace gait_detail {

/// Whether one foot is analysed alone; otherwise the two feet are analysed together.
inline bool is_single_foot(const gait_result& result) { return result.foot_results.size() == 1; }

}  // namespace gait_detail

#endif

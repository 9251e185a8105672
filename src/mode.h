#ifndef GAIT_SRC_MODE_H
#define GAIT_SRC_MODE_H

/// \file
/// Which analysis a walk gets, and the rate that it is sampled at.

#include <gait/result.h>

namespace gait_detail {

/// Whether one foot is analysed alone; otherwise the two feet are analysed together.
inline bool is_single_foot(const gait_result& result) { return result.foot_results.size() == 1; }

/// Samples per second (Hz). The first entry stands for every foot, in two-feet mode too.
inline double sampling_rate(const gait_result& result) {
  return static_cast<double>(result.foot_results.front().recording->sampling_rate);
}

}  // namespace gait_detail

#endif

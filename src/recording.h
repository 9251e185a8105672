#ifndef GAIT_SRC_RECORDING_H
#define GAIT_SRC_RECORDING_H

/// \file
/// What the library reads of the recordings: how fast they were sampled, and how long they are.

#include "lookup.h"

#include <gait/result.h>

#include <algorithm>
#include <cstdint>

namespace gait_detail {

/// Samples per second (Hz). The first entry stands for every foot, in two-feet mode too.
inline double sampling_rate(const gait_result& result) {
  return static_cast<double>(result.foot_results.front().recording->sampling_rate);
}

/// The number of samples that both signals of a foot have. Throws std::out_of_range when one of
/// them is absent.
inline std::uint64_t sample_count_of(const gait_foot_result& foot) {
  const auto& signals = foot.recording->signals;
  const std::uint64_t signal_1 = lookup(signals, 1).sample_count;
  const std::uint64_t signal_2 = lookup(signals, 2).sample_count;
  return std::min(signal_1, signal_2);
}

}  // namespace gait_detail

#endif

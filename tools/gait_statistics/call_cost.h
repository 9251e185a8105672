#ifndef TOOLS_GAIT_STATISTICS_CALL_COST_H
#define TOOLS_GAIT_STATISTICS_CALL_COST_H

/// \file
/// How long the statistics of a walk will take, told before they are computed.

#include <gait/result.h>

#include <string>

namespace gait_program {

/// The processor time that gait_generate_statistics() is expected to take with this input (s).
///
/// Every index of every parameter is reached by a walk from the front of its list, so that the time
/// grows with the square of the strides; what a step takes depends on the machine and on how much
/// of the list its caches hold. So a few of the very walks are made and timed, and multiplied: some
/// hundred passes over the lists.
double expected_seconds(const gait_result& result);

/// A time for people: "40 seconds", "3 minutes", "2 hours", "5 days".
std::string rough_duration(double seconds);

}  // namespace gait_program

#endif

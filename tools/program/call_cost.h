#ifndef TOOLS_PROGRAM_CALL_COST_H
#define TOOLS_PROGRAM_CALL_COST_H

/// \file
/// How long the statistics of a walk will take, told before they are computed.

#include <gait/result.h>

#include <string>

namespace gait_program {

/// Roughly the processor time that gait_generate_statistics() takes with this input (s): within a
/// factor of two on walks of some thousand strides that exclude few of them, too much where most
/// are excluded.
///
/// Every cycle of every parameter is reached afresh from the front of its list. The time therefore
/// grows with the square of the strides; what a node takes depends on the machine, and on how much
/// of the list its caches hold. So a few cycles of the very lists are reached and timed.
double expected_seconds(const gait_result& result);

/// A time for people: "40 seconds", "3 minutes", "2 hours", "5 days".
std::string rough_duration(double seconds);

}  // namespace gait_program

#endif

#ifndef GAIT_SRC_ASYMMETRY_H
#define GAIT_SRC_ASYMMETRY_H

/// \file
/// How the sides compare: ratios of their means, and the swing asymmetry.

#include <gait/result.h>
#include <gait/statistics.h>

namespace gait_detail {

/// Writes the ratio of the sides' means into every pair of "_L" and "_R" entries whose left one has
/// it enabled.
///
/// The right record gets right / left, the left record its reciprocal; a mean of 0.0 gives 0.0
/// instead of a quotient by it, except that the left record becomes infinite when only the left
/// mean is 0.0.
void write_ratios(gait_statistics& statistics);

/// Adds the swing asymmetry index of every included stride under "asymmetry", and raises its
/// quality flag.
///
/// An entry that is present under "asymmetry" is kept; the flag follows from the new values all the
/// same. Throws std::out_of_range when a side's "swing" is absent.
void add_swing_asymmetry(gait_result& result);

}  // namespace gait_detail

#endif

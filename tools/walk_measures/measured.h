#ifndef TOOLS_WALK_MEASURES_MEASURED_H
#define TOOLS_WALK_MEASURES_MEASURED_H

/// \file
/// What is taken of a parameter's values by every measure.

#include <vector>

namespace gait_measures {

/// The values that are not missing, in their order.
///
/// None when one of them is infinite or not a number: no figure about such values means anything,
/// and one that leaves them out would be about other strides than the library's mean.
std::vector<double> measured_values(const std::vector<double>& values);

}  // namespace gait_measures

#endif

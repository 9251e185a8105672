#ifndef TOOLS_CHARTS_BINS_H
#define TOOLS_CHARTS_BINS_H

/// \file
/// Many points as few: what lies in each of equally wide parts of an axis.

#include "scale.h"

#include <cstddef>
#include <vector>

namespace gait_charts {

struct point {
  double x = 0.0;
  double y = 0.0;
};

/// The points of one part of the axis.
struct bin {
  double x = 0.0;  ///< the middle of the part
  double lowest = 0.0;
  double median = 0.0;  ///< the middle value, or half the sum of the middle two
  double highest = 0.0;
};

/// The parts of the axis that hold points, in order. Points outside of the axis go into the part at
/// its end; a y that is NaN takes no part.
std::vector<bin> binned(const std::vector<point>& points, span axis, std::size_t parts);

}  // namespace gait_charts

#endif

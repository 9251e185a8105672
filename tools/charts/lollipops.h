#ifndef TOOLS_CHARTS_LOLLIPOPS_H
#define TOOLS_CHARTS_LOLLIPOPS_H

/// \file
/// Lollipops: ratios, one below the other, each a stem from 1 to its value on one logarithmic axis.

#include "scale.h"

#include <string>
#include <vector>

namespace gait_charts {

struct lollipop {
  std::string label;     ///< on the left
  double ratio = 1.0;    ///< above 0 to be drawn; anything else is only written
  std::string text;      ///< the number as it is written, on the right
  bool is_drawn = true;  ///< false where the number says nothing
};

struct lollipops {
  std::string label;        ///< what it shows, for those who cannot see it
  span axis = {0.8, 1.25};  ///< a ratio beyond it becomes an arrow at its edge
  std::vector<double> marks = {0.8, 0.9, 1.0, 1.1, 1.25};
  std::vector<lollipop> rows;
};

std::string draw(const lollipops& lollipops);

}  // namespace gait_charts

#endif

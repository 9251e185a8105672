#ifndef TOOLS_CHARTS_STRIP_H
#define TOOLS_CHARTS_STRIP_H

/// \file
/// A strip: values over time, low and wide, to be stacked with others on one time axis.

#include "bins.h"
#include "scale.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gait_charts {

/// A point. One that does not count is drawn hollow.
struct dot {
  point at;
  bool counts = true;
};

/// What a strip shows, in the units of its axes.
struct strip {
  std::string label;           ///< what it shows, for those who cannot see it
  span x;                      ///< the axis that it shares with others
  span y;                      ///< its own scale; a point beyond it becomes an arrow at its edge
  double height = 50.0;        ///< (px)
  std::vector<span> shaded;    ///< stretches of x; not drawn where the points are many
  std::vector<dot> dots;       ///< one whose y is NaN is not drawn
  std::vector<double> gaps;    ///< where a point that counts is missing: a tick at the foot
  std::optional<span> band;    ///< of y
  std::optional<double> line;  ///< a y: drawn through
  std::optional<double> other_line;  ///< a y: dotted
  /// The y from which a stem is drawn to every point, if there are to be stems.
  std::optional<double> stems_from;
};

/// With more points than this, a strip shows for each part of the axis the lowest, the highest and
/// the middle one.
inline constexpr std::size_t most_dots = 1000;
inline constexpr std::size_t parts_of_binned_strip = 200;

/// The plot of a strip, with the labels of its scale on its left.
std::string draw(const strip& strip);

}  // namespace gait_charts

#endif

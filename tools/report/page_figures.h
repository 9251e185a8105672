#ifndef TOOLS_REPORT_PAGE_FIGURES_H
#define TOOLS_REPORT_PAGE_FIGURES_H

/// \file
/// The figures of the HTML report: what is drawn of a walk, as SVG.

#include "parameter_measures.h"
#include "scale.h"
#include "symmetry.h"
#include "walk_statistics.h"
#include "walk_strides.h"
#include "walk_summary.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace gait_report {

/// A walk with everything that the page shows of it, computed once. It refers to the walk, which
/// must outlive it.
struct shown_walk {
  explicit shown_walk(const walk_statistics& statistics);

  const walk_statistics& walk;
  walk_strides strides;
  walk_summary summary;
  std::vector<computed_parameter> parameters;
  /// By side, stride and parameter.
  std::vector<std::vector<std::vector<std::optional<double>>>> values;
  std::unordered_map<std::string, parameter_measures> measures;
  std::optional<gait_measures::swing_asymmetry> swing_asymmetry;
  gait_charts::span time;  ///< from the beginning of the first stride to the end of the last (s)
};

/// The reason of an exclusion as it is shown.
std::string shown_reason(const listed_exclusion& exclusion);

/// Both feet, each stride a box.
std::string draw_time_line(const shown_walk& shown);

/// The labels of the time axis that the time line and all strips share.
std::string draw_time_axis(const shown_walk& shown);

/// One strip of a parameter: whose it is, and its picture.
struct drawn_strip {
  std::string side;    ///< "right", "left", or "cycle" for the two feet together
  std::string letter;  ///< "R", "L", "R, L"
  std::string picture;
};

/// The smallest and the largest value that the strips of a parameter show. Values far beyond the
/// quartiles, and those of strides that are left out, may lie beyond it.
gait_charts::span scale_of(const shown_walk& shown, const computed_parameter& parameter);

/// The strips of a parameter on one scale: a strip a side, or one of the two feet together.
std::vector<drawn_strip> draw_strips(const shown_walk& shown, const computed_parameter& parameter,
                                     gait_charts::span scale);

/// The ratio of every parameter that has one, in the order of the panels. Those that say nothing
/// are written with a mark.
std::string draw_ratios(const std::vector<const computed_parameter*>& parameters);

/// The swing asymmetry of every stride in the statistics (%), with its mean.
std::string draw_swing_asymmetry(const shown_walk& shown);

/// A legend: each look with its meaning. The pictures are SVG.
using legend = std::vector<std::pair<std::string, std::string>>;
legend time_line_legend(const shown_walk& shown);
legend strip_legend(const shown_walk& shown);

/// Whether a foot has so many strides that strips show parts of the time, and the page has no table
/// of strides without its script.
bool has_many_strides(const shown_walk& shown);

}  // namespace gait_report

#endif

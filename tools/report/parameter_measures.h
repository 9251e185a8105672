#ifndef TOOLS_REPORT_PARAMETER_MEASURES_H
#define TOOLS_REPORT_PARAMETER_MEASURES_H

/// \file
/// The figures that stand beside the library's record of a parameter. docs/measures.md says what
/// they are; none of them is the library's.

#include "symmetry.h"
#include "walk_statistics.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace gait_report {

/// The measures of one parameter on one side; nullopt where one is not defined or could not be
/// computed. The first four and the standard error are in the parameter's unit.
struct parameter_measures {
  std::optional<double> q1, q3;             ///< quartiles; q3 - q1 is the record's `iqr`
  std::optional<double> p5, p95;            ///< percentiles, from 20 values on
  std::optional<double> effective_strides;  ///< from 20 values on; never more than n
  std::optional<double> standard_error;     ///< of the mean, by the effective number of strides
  /// Right against left (%): above 0, the right mean is the larger one. The same on both sides.
  std::optional<double> symmetry_index;
};

/// The measures of every parameter of the walk on every side, by the record's key ("gct_R").
///
/// A parameter without ratio and CV, a moment in the recording, has no effective number of strides
/// and no standard error: its mean says nothing. A parameter without a ratio or without a CV has no
/// symmetry index. The step length of a foot alone has no measures where missing stride lengths
/// were halved into it.
std::unordered_map<std::string, parameter_measures> measures_of(const walk_statistics& walk);

/// The same for a caller who has the walk's parameters_of() already.
std::unordered_map<std::string, parameter_measures> measures_of(
    const walk_statistics& walk, const std::vector<computed_parameter>& parameters);

/// The swing asymmetry in percent: entry i of its values belongs to cycle i of `info.cycles`.
/// nullopt when one foot was analysed alone.
std::optional<gait_measures::swing_asymmetry> swing_asymmetry_in_percent(
    const walk_statistics& walk);

}  // namespace gait_report

#endif

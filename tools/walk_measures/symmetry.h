#ifndef TOOLS_WALK_MEASURES_SYMMETRY_H
#define TOOLS_WALK_MEASURES_SYMMETRY_H

/// \file
/// How the right side compares with the left, in percent. The library's records hold the ratio of
/// the means, and a swing asymmetry that is scaled by the sampling rate.
///
/// Both come from the symmetry index of R. O. Robinson, W. Herzog and B. M. Nigg, "Use of force
/// platform variables to quantify the effects of chiropractic manipulation on gait symmetry",
/// J. Manipulative Physiol. Ther. 10(4), 1987, 172-176. Mind the side that comes first: right in
/// the symmetry index, as in the library's ratio; left in the swing asymmetry, as in the library's.

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace gait_measures {

/// The symmetry index of two means: 100 * (right - left) / ((right + left) / 2), from -200 to 200
/// percent. Above 0, the right mean is the larger one; of two negative means, the one further from
/// 0.
///
/// It is for parameters on a ratio scale. None unless both means are finite and have one sign: near
/// a sum of 0 the index grows without limit, and beside a mean of 0 it is 200 whatever the other
/// one is.
std::optional<double> symmetry_index(double right_mean, double left_mean);

/// The swing asymmetry of each stride in percent, 100 * (left - right) / (left + right), whatever
/// the sampling rate, and its statistics.
///
/// The library's is this one times the sampling rate (Hz) / 100. The symmetry index of the two
/// swings of a stride is -2 times this one.
struct swing_asymmetry {
  /// One entry for each included cycle of both feet, in their order; none where a swing is missing
  /// or not above 0.
  std::vector<std::optional<double>> values;
  std::size_t n = 0;           ///< how many of the values there are
  std::optional<double> mean;  ///< (%); none without any value
  std::optional<double> sd;    ///< (percentage points), divisor n - 1; none below two values
};

/// The swing asymmetry of strides whose swings are given side by side: entry i of both belongs to
/// the same stride. Of sides that differ in length, the shorter one counts.
///
/// A stride counts as it does for the library's swing asymmetry: where both swings are above 0. One
/// that is infinite is left out as well.
swing_asymmetry swing_asymmetry_in_percent(const std::vector<double>& right,
                                           const std::vector<double>& left);

/// What the sign of a swing asymmetry says, the library's or that in percent: "left swing longer",
/// "right swing longer" or "both swings equally long". Empty for NaN.
std::string_view direction_in_words(double swing_asymmetry);

}  // namespace gait_measures

#endif

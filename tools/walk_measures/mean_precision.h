#ifndef TOOLS_WALK_MEASURES_MEAN_PRECISION_H
#define TOOLS_WALK_MEASURES_MEAN_PRECISION_H

/// \file
/// How precisely a walk's mean is known, given that a stride resembles those before it.

#include <cstddef>
#include <optional>
#include <vector>

namespace gait_measures {

/// Of fewer measured strides, the autocorrelations are too uncertain to count with.
inline constexpr std::size_t fewest_strides_for_mean_precision = 20;

/// How precisely a mean over consecutive strides is known.
struct mean_precision {
  /// The number of independent strides whose mean would vary as much as the mean of these; never
  /// more than they are.
  double effective_strides = 0.0;
  /// Standard error of the mean, s / sqrt(effective_strides), in the parameter's unit. It is about
  /// this stretch of walking: a 95 % interval made of it holds the person's mean less often than
  /// 95 times in 100 (docs/measures.md).
  double standard_error = 0.0;
};

/// The precision of the mean of the values that are not missing.
///
/// The effective number of strides is n / (1 + 2 * sum of r_k), where r_k is the autocorrelation at
/// a lag of k strides: the sum of the products of deviations from the mean of all strides that are
/// k apart, divided by the sum of all squared deviations. Strides that were left out or not
/// measured are gaps: a pair that lacks one of its two strides is left out, and no stride moves up
/// in place of another. The sum ends where r_k + r_(k+1), for k = 2, 4, 6, ..., is no longer above
/// 0: the initial positive sequence of C. J. Geyer, "Practical Markov chain Monte Carlo",
/// Statistical Science 7(4), 1992, 473-483. Lags at which no two strides were measured are passed
/// over.
///
/// Where long and short strides alternate, the formula gives more strides than there are. Their
/// number is the limit all the same: the figure warns of a mean that is less certain than it looks,
/// and never vouches for one that is more certain than as many independent strides would make it.
///
/// \param values     a record's `values`; gait_missing where a stride has none
/// \param positions  of each value, its stride's position in time order, such as its index in the
///                   list of all cycles of the foot; that of a missing value may be anything
///
/// None below fewest_strides_for_mean_precision measured values; where one of them is infinite or
/// NaN; where all are equal, because there is nothing to correlate; and where the positions of
/// measured values do not rise from each to the next. Throws std::invalid_argument when there are
/// not as many positions as values.
///
/// O(n * k) for strides that span n positions and a sum that ends at lag k, which is small unless
/// the walk drifts; memory O(n).
std::optional<mean_precision> precision_of_mean(const std::vector<double>& values,
                                                const std::vector<int>& positions);

}  // namespace gait_measures

#endif

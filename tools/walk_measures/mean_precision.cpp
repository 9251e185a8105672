#include "mean_precision.h"

#include "measured.h"

#include <gait/rounded_product.h>
#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <stdexcept>

namespace gait_measures {
namespace {

/// The positions of the values that are not missing.
std::vector<int> measured_positions(const std::vector<double>& values,
                                    const std::vector<int>& positions) {
  std::vector<int> measured;
  measured.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!gait_is_missing(values[i])) {
      measured.push_back(positions[i]);
    }
  }
  return measured;
}

bool rise(const std::vector<int>& positions) {
  return std::adjacent_find(positions.begin(), positions.end(), std::greater_equal<>()) ==
         positions.end();
}

/// The deviations of strides from their mean, by their position from the first stride on. A gap
/// deviates by 0, so that it adds nothing to a sum of products.
class deviations {
public:
  deviations(const std::vector<double>& sample, const std::vector<int>& positions) {
    const auto place = [&](int position) {
      return static_cast<std::size_t>(std::int64_t{position} - positions.front());
    };
    single_.resize(place(positions.back()) + 1, 0.0);
    is_measured_.resize(single_.size(), 0);
    const double mean =
        std::accumulate(sample.begin(), sample.end(), 0.0) / static_cast<double>(sample.size());
    for (std::size_t i = 0; i < sample.size(); ++i) {
      single_[place(positions[i])] = sample[i] - mean;
      is_measured_[place(positions[i])] = 1;
    }
    with_next_ = single_;
    std::transform(single_.begin() + 1, single_.end(), single_.begin(), with_next_.begin(),
                   std::plus<>());
  }

  /// How many positions the strides span.
  std::size_t span() const { return single_.size(); }

  double squares() const { return products(single_, 0); }

  /// The products of strides that are `lag` apart and of strides that are one more apart, added up.
  /// Each stride meets the sum of both others, which is half the work.
  double pair_of_lags(std::size_t lag) const { return products(with_next_, lag); }

  /// Whether any two measured strides are `lag` apart.
  bool has_pairs(std::size_t lag) const {
    for (std::size_t i = lag; i < span(); ++i) {
      if (is_measured_[i - lag] != 0 && is_measured_[i] != 0) {
        return true;
      }
    }
    return false;
  }

private:
  double products(const std::vector<double>& later, std::size_t lag) const {
    double sum = 0.0;
    for (std::size_t i = lag; i < span(); ++i) {
      sum += gait_detail::rounded_product(single_[i - lag], later[i]);
    }
    return sum;
  }

  std::vector<double> single_;
  std::vector<double> with_next_;  ///< each added to the one after it
  std::vector<char> is_measured_;  // quicker than bits
};

/// 1 + 2 * the sum of the autocorrelations, over the initial positive sequence. The first pair, of
/// lags 0 and 1, holds the squares themselves.
double autocorrelation_time(const deviations& strides) {
  double sum = 0.0;
  for (std::size_t lag = 0; lag < strides.span(); lag += 2) {
    const double pair = strides.pair_of_lags(lag);
    if (pair > 0.0) {
      sum += pair;
    } else if (strides.has_pairs(lag) || strides.has_pairs(lag + 1)) {
      break;
    }
  }
  return 2.0 * (sum / strides.squares()) - 1.0;
}

}  // namespace

std::optional<mean_precision> precision_of_mean(const std::vector<double>& values,
                                                const std::vector<int>& positions) {
  if (values.size() != positions.size()) {
    throw std::invalid_argument("precision_of_mean: as many positions as values are needed");
  }
  const std::vector<double> sample = measured_values(values);
  if (sample.size() < fewest_strides_for_mean_precision) {
    return std::nullopt;
  }
  const std::vector<int> measured = measured_positions(values, positions);
  const auto [least, greatest] = std::minmax_element(sample.begin(), sample.end());
  if (!rise(measured) || *least == *greatest) {
    return std::nullopt;
  }
  const deviations strides(sample, measured);
  const double squares = strides.squares();
  // Values may lie so near to or far from one another that no double holds their squares.
  if (!(squares > 0.0) || !std::isfinite(squares)) {
    return std::nullopt;
  }
  const auto n = static_cast<double>(sample.size());
  mean_precision precision;
  precision.effective_strides = n / std::max(1.0, autocorrelation_time(strides));
  precision.standard_error = std::sqrt(squares / (n - 1.0) / precision.effective_strides);
  return precision;
}

}  // namespace gait_measures

#include "symmetry.h"

#include <gait/rounded_product.h>

#include <algorithm>
#include <cmath>

namespace gait_measures {
namespace {

/// A quotient, or none where it is not a number: of infinite operands, or of some too large to add.
std::optional<double> finite(double quotient) {
  return std::isfinite(quotient) ? std::optional(quotient) : std::nullopt;
}

std::optional<double> asymmetry_of_stride(double right, double left) {
  return right > 0.0 && left > 0.0 ? finite(100.0 * (left - right) / (left + right)) : std::nullopt;
}

void describe(swing_asymmetry& asymmetry) {
  double sum = 0.0;
  for (const auto& value : asymmetry.values) {
    if (value) {
      sum += *value;
      ++asymmetry.n;
    }
  }
  if (asymmetry.n == 0) {
    return;
  }
  const double mean = sum / static_cast<double>(asymmetry.n);
  asymmetry.mean = mean;
  if (asymmetry.n < 2) {
    return;
  }
  double squares = 0.0;
  for (const auto& value : asymmetry.values) {
    if (value) {
      squares += gait_detail::rounded_product(*value - mean, *value - mean);
    }
  }
  asymmetry.sd = std::sqrt(squares / (static_cast<double>(asymmetry.n) - 1.0));
}

}  // namespace

std::optional<double> symmetry_index(double right_mean, double left_mean) {
  const bool one_sign =
      (right_mean > 0.0 && left_mean > 0.0) || (right_mean < 0.0 && left_mean < 0.0);
  return one_sign ? finite(100.0 * (right_mean - left_mean) / ((right_mean + left_mean) / 2.0))
                  : std::nullopt;
}

swing_asymmetry swing_asymmetry_in_percent(const std::vector<double>& right,
                                           const std::vector<double>& left) {
  swing_asymmetry asymmetry;
  const std::size_t strides = std::min(right.size(), left.size());
  asymmetry.values.reserve(strides);
  for (std::size_t i = 0; i < strides; ++i) {
    asymmetry.values.push_back(asymmetry_of_stride(right[i], left[i]));
  }
  describe(asymmetry);
  return asymmetry;
}

std::string_view direction_in_words(double swing_asymmetry) {
  if (swing_asymmetry > 0.0) {
    return "left swing longer";
  }
  if (swing_asymmetry < 0.0) {
    return "right swing longer";
  }
  return swing_asymmetry == 0.0 ? "both swings equally long" : "";
}

}  // namespace gait_measures

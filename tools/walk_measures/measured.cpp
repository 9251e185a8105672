#include "measured.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace gait_measures {

std::vector<double> measured_values(const std::vector<double>& values) {
  std::vector<double> measured;
  measured.reserve(values.size());
  std::copy_if(values.begin(), values.end(), std::back_inserter(measured),
               [](double value) { return !gait_is_missing(value); });
  const bool all_finite = std::all_of(measured.begin(), measured.end(),
                                      [](double value) { return std::isfinite(value); });
  return all_finite ? measured : std::vector<double>();
}

}  // namespace gait_measures

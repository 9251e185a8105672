#include <gait/eigen.h>

#include "measured.h"
#include "quantiles.h"

namespace gait_measures {

quantiles quantiles_of(const std::vector<double>& values) {
  const std::vector<double> measured = measured_values(values);
  quantiles found;
  if (measured.empty()) {
    return found;
  }
  const Eigen::Map<const Eigen::ArrayXd> sample(measured.data(),
                                                static_cast<Eigen::Index>(measured.size()));
  const Eigen::Array2d quartiles = sample.percentile(Eigen::Array2d(25.0, 75.0));
  found.q1 = quartiles[0];
  found.q3 = quartiles[1];
  if (measured.size() >= fewest_values_for_outer_percentiles) {
    const Eigen::Array2d outer = sample.percentile(Eigen::Array2d(5.0, 95.0));
    found.p5 = outer[0];
    found.p95 = outer[1];
  }
  return found;
}

}  // namespace gait_measures

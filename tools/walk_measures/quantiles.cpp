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
  // Each request of its own sorts the values anew.
  const Eigen::Array4d all = sample.percentile(Eigen::Array4d(25.0, 75.0, 5.0, 95.0));
  found.q1 = all[0];
  found.q3 = all[1];
  if (measured.size() >= fewest_values_for_outer_percentiles) {
    found.p5 = all[2];
    found.p95 = all[3];
  }
  return found;
}

}  // namespace gait_measures

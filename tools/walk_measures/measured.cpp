#include "measured.h"

#include <gait/statistics.h>

#include <cmath>
#include <cstddef>

namespace gait_measures {

std::vector<double> measured_values(const std::vector<double>& values) {
  std::vector<double> measured(values.size());
  std::size_t count = 0;
  bool all_finite = true;
  for (const double value : values) {
    if (!gait_is_missing(value)) {
      measured[count++] = value;
      all_finite = all_finite && std::isfinite(value);
    }
  }
  measured.resize(all_finite ? count : 0);
  return measured;
}

}  // namespace gait_measures

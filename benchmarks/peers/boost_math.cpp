// Boost.Math's univariate statistics. Its quartiles are of another definition, so that they are
// picked by hand.

#include "peer.h"

#include <boost/math/statistics/univariate_statistics.hpp>

#include <cmath>

namespace {

/// Hyndman and Fan's definition 5, by partial sorting.
double quantile(column& values, double fraction) {
  const double place = std::clamp(fraction * static_cast<double>(values.size()) - 0.5, 0.0,
                                  static_cast<double>(values.size() - 1));
  const auto below = values.begin() + static_cast<std::ptrdiff_t>(place);
  std::nth_element(values.begin(), below, values.end());
  if (below + 1 == values.end()) {
    return *below;
  }
  return *below +
         (*std::min_element(below + 1, values.end()) - *below) * (place - std::floor(place));
}

void describe(const column& values) {
  column sample = measured(values);
  namespace statistics = boost::math::statistics;
  const double mean = statistics::mean(sample);
  const double deviation = std::sqrt(statistics::sample_variance(sample));
  const auto [min, max] = std::minmax_element(sample.begin(), sample.end());
  keep(mean);
  keep(deviation);
  keep(100.0 * deviation / mean);
  keep(*min);
  keep(*max);
  keep(statistics::median(sample));
  keep(quantile(sample, 0.75) - quantile(sample, 0.25));
}

}  // namespace

int main(int /*count*/, char** arguments) {
  const auto columns = columns_of(gait_walk::read_walk_folder(arguments[1]).walk);
  print_time_of([&] { std::for_each(columns.begin(), columns.end(), describe); });
}

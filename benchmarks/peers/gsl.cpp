// The GNU Scientific Library. Its own quantile is definition 7, so that the quartiles are
// interpolated by hand.

#include "peer.h"

#include <gsl/gsl_sort.h>
#include <gsl/gsl_statistics.h>

#include <cmath>

namespace {

/// Hyndman and Fan's definition 5.
double quantile_of_sorted(const column& sorted, double fraction) {
  const double place = fraction * static_cast<double>(sorted.size()) - 0.5;
  const double below = std::floor(std::clamp(place, 0.0, static_cast<double>(sorted.size() - 1)));
  const auto i = static_cast<std::size_t>(below);
  return i + 1 < sorted.size() ? sorted[i] + (sorted[i + 1] - sorted[i]) * (place - below)
                               : sorted[i];
}

void describe(const column& values) {
  column sample = measured(values);
  const double mean = gsl_stats_mean(sample.data(), 1, sample.size());
  const double deviation = gsl_stats_sd_m(sample.data(), 1, sample.size(), mean);
  keep(mean);
  keep(deviation);
  keep(100.0 * deviation / mean);
  gsl_sort(sample.data(), 1, sample.size());
  keep(gsl_stats_median_from_sorted_data(sample.data(), 1, sample.size()));
  keep(quantile_of_sorted(sample, 0.75) - quantile_of_sorted(sample, 0.25));
  keep(sample.front());
  keep(sample.back());
}

}  // namespace

int main(int /*count*/, char** arguments) {
  const auto columns = columns_of(gait_walk::read_walk_folder(arguments[1]).walk);
  print_time_of([&] { std::for_each(columns.begin(), columns.end(), describe); });
}

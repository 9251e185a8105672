#include "bins.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace gait_charts {
namespace {

double median_of(const std::vector<double>& sorted) {
  const std::size_t half = sorted.size() / 2;
  return sorted.size() % 2 == 1 ? sorted[half] : 0.5 * (sorted[half - 1] + sorted[half]);
}

}  // namespace

std::vector<bin> binned(const std::vector<point>& points, span axis, std::size_t parts) {
  const linear_scale part_of(axis, {0.0, static_cast<double>(parts)});
  const auto last = static_cast<double>(parts - 1);
  std::vector<std::vector<double>> values(parts);
  for (const auto& [x, y] : points) {
    if (!std::isnan(y)) {
      const double part = std::fmin(std::fmax(std::floor(part_of(x)), 0.0), last);
      values[static_cast<std::size_t>(part)].push_back(y);
    }
  }
  const linear_scale middle_of({0.0, static_cast<double>(parts)}, axis);
  std::vector<bin> bins;
  for (std::size_t i = 0; i < parts; ++i) {
    std::vector<double>& sorted = values[i];
    if (!sorted.empty()) {
      std::sort(sorted.begin(), sorted.end());
      bins.push_back({middle_of(static_cast<double>(i) + 0.5), sorted.front(), median_of(sorted),
                      sorted.back()});
    }
  }
  return bins;
}

}  // namespace gait_charts

// Reads samples from standard input, one a line, and prints the library's statistics of each on a
// line:
//
//     PERCENTAGE,... VALUE,...    ->    valid mean std median iqr min max PERCENTILE...
//
// Numbers go in and out in hexadecimal floating point, which loses nothing.

#include <gait/gait.h>

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <list>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<double> numbers_of(const std::string& list) {
  std::vector<double> numbers;
  std::istringstream items(list);
  for (std::string item; std::getline(items, item, ',');) {
    numbers.push_back(std::strtod(item.c_str(), nullptr));
  }
  return numbers;
}

gait_statistics_parameter statistics_of(const std::vector<double>& sample) {
  gait_foot_result foot;
  for (const double value : sample) {
    foot.cycles.emplace_back().gct = value;
  }
  std::list<int> cycles(sample.size());
  std::iota(cycles.begin(), cycles.end(), 0);
  gait_statistics statistics;
  gait_statistics_build_parameter<gait_foot_result, GCT>(statistics, foot, cycles, "", GCT{});
  return statistics.parameters.at("gct");
}

Eigen::ArrayXd percentiles_of(const std::vector<double>& sample,
                              const std::vector<double>& percentages) {
  const auto vector_of = [](const std::vector<double>& values) {
    return Eigen::Map<const Eigen::VectorXd>(values.data(),
                                             static_cast<Eigen::Index>(values.size()));
  };
  return vector_of(sample).percentile(vector_of(percentages));
}

}  // namespace

int main() {
  std::cout << std::hexfloat;
  for (std::string percentages, sample; std::cin >> percentages >> sample;) {
    const std::vector<double> values = numbers_of(sample);
    const gait_statistics_parameter s = statistics_of(values);
    std::cout << s.valid << ' ' << s.mean << ' ' << s.std << ' ' << s.median << ' ' << s.iqr << ' '
              << s.min << ' ' << s.max;
    for (const double percentile : percentiles_of(values, numbers_of(percentages))) {
      std::cout << ' ' << percentile;
    }
    std::cout << '\n';
  }
}

// Reads strides from standard input, one walk a line, and prints their measures on a line:
//
//     POSITION,... RIGHT,... LEFT,...  ->  q1 q3 p5 p95 effective_strides standard_error
//                                          symmetry_index n mean sd
//
// The first six are of the right values, n, mean and sd of the swing asymmetry. Numbers go in and
// out in hexadecimal floating point, which loses nothing; what is not there is printed as "nan".

#include "mean_precision.h"
#include "quantiles.h"
#include "symmetry.h"

#include <gait/statistics.h>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<double> numbers_of(const std::string& list) {
  std::vector<double> numbers;
  const char* at = list.c_str();
  while (*at != '\0') {
    char* end = nullptr;
    numbers.push_back(std::strtod(at, &end));
    at = *end == ',' ? end + 1 : end;
  }
  return numbers;
}

/// The mean of the values that are not missing.
double mean_of(const std::vector<double>& values) {
  double sum = 0.0;
  double n = 0.0;
  for (const double value : values) {
    if (!gait_is_missing(value)) {
      sum += value;
      ++n;
    }
  }
  return sum / n;
}

void print(const std::optional<double>& figure) {
  std::cout << figure.value_or(std::numeric_limits<double>::quiet_NaN()) << ' ';
}

}  // namespace

int main() {
  std::ios::sync_with_stdio(false);
  std::cout << std::hexfloat;
  for (std::string positions, right, left; std::cin >> positions >> right >> left;) {
    const std::vector<double> places = numbers_of(positions);
    const std::vector<double> values = numbers_of(right);
    const std::vector<double> others = numbers_of(left);
    const auto quantiles = gait_measures::quantiles_of(values);
    for (const auto& figure : {quantiles.q1, quantiles.q3, quantiles.p5, quantiles.p95}) {
      print(figure);
    }
    const auto precision =
        gait_measures::precision_of_mean(values, std::vector<int>(places.begin(), places.end()));
    print(precision ? std::optional(precision->effective_strides) : std::nullopt);
    print(precision ? std::optional(precision->standard_error) : std::nullopt);
    print(gait_measures::symmetry_index(mean_of(values), mean_of(others)));
    const auto swing = gait_measures::swing_asymmetry_in_percent(values, others);
    print(static_cast<double>(swing.n));
    print(swing.mean);
    print(swing.sd);
    std::cout << '\n';
  }
}

#include "scale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace gait_charts {
namespace {

/// The multiples of a step that lie in a stretch: the first one's factor, and how many.
struct multiples {
  double first;
  double count;
};

multiples multiples_in(span data, double unit) {
  const double first = std::ceil(data.from / unit);
  return {first, std::floor(data.to / unit) - first + 1.0};
}

std::string label_of(double value, int exponent, bool is_fraction) {
  constexpr int longest = 6;
  std::array<char, 400> buffer{};
  char* const begin = buffer.data();
  char* const end = begin + buffer.size();
  const bool is_short = std::abs(exponent) <= longest;
  const int decimals = std::max(0, -exponent + (is_fraction ? 1 : 0));
  const auto result = is_short
                          ? std::to_chars(begin, end, value, std::chars_format::fixed, decimals)
                          : std::to_chars(begin, end, value, std::chars_format::general, 4);
  return {begin, result.ptr};
}

}  // namespace

double linear_scale::operator()(double value) const {
  const double width = data_.to - data_.from;
  const double share = width > 0.0 ? (value - data_.from) / width : 0.5;
  return drawn_.from + share * (drawn_.to - drawn_.from);
}

log_scale::log_scale(span data, span drawn)
    : data_(data), of_logarithms_({std::log(data.from), std::log(data.to)}, drawn) {}

double log_scale::operator()(double value) const { return of_logarithms_(std::log(value)); }

std::vector<tick> ticks(span data, std::size_t least) {
  const double width = data.to - data.from;
  if (!(width > 0.0) || !std::isfinite(width)) {
    return {};
  }
  constexpr std::array<double, 4> steps = {5.0, 2.5, 2.0, 1.0};
  const int largest = static_cast<int>(std::floor(std::log10(width)));
  constexpr int smaller = 3;  // powers of ten below that of the width: far more ticks than wanted
  for (int exponent = largest; exponent >= largest - smaller; --exponent) {
    for (const double step : steps) {
      const double unit = step * std::pow(10.0, exponent);
      const multiples found = multiples_in(data, unit);
      if (found.count < static_cast<double>(least)) {
        continue;
      }
      std::vector<tick> result;
      for (std::size_t i = 0; i < static_cast<std::size_t>(found.count); ++i) {
        // Adding 0 makes a 0 of a -0.
        const double value = (found.first + static_cast<double>(i)) * unit + 0.0;
        result.push_back({value, label_of(value, exponent, step == 2.5)});
      }
      return result;
    }
  }
  return {};
}

span widened(span data, double share) {
  const double margin = share * (data.to - data.from);
  return {data.from - margin, data.to + margin};
}

}  // namespace gait_charts

#include "values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace gait_checks {

std::string number(double value) {
  std::array<char, 32> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 6);
  return {text.data(), end.ptr};
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 != 0) {
    return *middle;
  }
  return (*middle + *std::max_element(values.begin(), middle)) / 2.0;
}

bool differs(double found, double expected, double tolerance) {
  return std::abs(found - expected) > tolerance;
}

std::string in_words(const interval& interval, std::string_view unit) {
  const std::string after = unit.empty() ? "" : " " + std::string(unit);
  const std::string lowest = number(interval.lowest);
  const std::string highest = number(interval.highest) + after;
  if (std::isinf(interval.highest)) {
    return (interval.lowest_is_in ? "at least " : "more than ") + lowest + after;
  }
  const std::string to_highest = (interval.highest_is_in ? "" : "less than ") + highest;
  if (std::isinf(interval.lowest)) {
    return (interval.highest_is_in ? "at most " : "") + to_highest;
  }
  return (interval.lowest_is_in ? "" : "more than ") + lowest + " to " + to_highest;
}

}  // namespace gait_checks

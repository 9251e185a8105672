#include "tally.h"

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

std::string expected(double lowest, double highest) {
  if (std::isinf(highest)) {
    return "expected at least " + number(lowest);
  }
  if (std::isinf(lowest)) {
    return "expected at most " + number(highest);
  }
  return "expected " + number(lowest) + " to " + number(highest);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 != 0) {
    return *middle;
  }
  return (*middle + *std::max_element(values.begin(), middle)) / 2.0;
}

std::vector<finding> tally::findings(alarm when) const {
  if (!alarms(when)) {
    return {};
  }
  finding found;
  found.table = table_;
  found.column = column_;
  found.broken = broken();
  found.compared = compared_;
  found.counted = counted_;
  found.text = text_;
  found.places = places_;
  return {found};
}

}  // namespace gait_checks

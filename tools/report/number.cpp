#include "number.h"

#include "minus_one.h"
#include "number_text.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>

namespace gait_report {
namespace {

using gait_walk::text_of;

std::string infinite_or_nan(double value) {
  if (std::isnan(value)) {
    return "NaN";
  }
  return value < 0.0 ? "-inf" : "inf";
}

/// "-0.00" says that a number is negative, which its digits do not.
bool is_zero_with_sign(const std::string& text) {
  return text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos;
}

}  // namespace

double shown_value(double value) { return value == gait_walk::measured_minus_one ? -1.0 : value; }

std::string shortest(double value) {
  return std::isfinite(value) ? text_of(shown_value(value)) : infinite_or_nan(value);
}

std::string shortest(float value) {
  return std::isfinite(value) ? text_of(value) : infinite_or_nan(static_cast<double>(value));
}

std::string rounded(double value, int decimals) {
  if (!std::isfinite(value)) {
    return infinite_or_nan(value);
  }
  const auto form =
      std::abs(value) < 1e12 ? std::chars_format::fixed : std::chars_format::scientific;
  const std::string text = text_of(shown_value(value), form, decimals);
  return is_zero_with_sign(text) ? text.substr(1) : text;
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace gait_report

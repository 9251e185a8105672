#include "unit_slips.h"

#include "values.h"

#include <algorithm>
#include <cmath>

namespace gait_checks {

std::vector<unit_slip> slips_of(dimension dim, double sampling_rate) {
  switch (dim) {
    case dimension::time_s:
      return {{1000.0, "milliseconds?"}, {sampling_rate, "samples?"}, {1.0 / 60.0, "minutes?"}};
    case dimension::time_ms:
      return {{0.001, "seconds?"}};
    case dimension::share:
      return {{0.01, "a fraction?"}};
    case dimension::length:
      return {{100.0, "centimetres?"}, {1000.0, "millimetres?"}};
    case dimension::speed:
      return {{3.6, "km/h?"}, {100.0, "cm/s?"}, {1000.0, "mm/s?"}};
    case dimension::cadence:
      return {{0.5, "strides/min?"}, {1.0 / 60.0, "Hz?"}};
    case dimension::angle:
    case dimension::rotation:
      return {{0.017453292519943295, "radians?"}};
    case dimension::impact:
      return {{9.80665, "m/s2?"}};
  }
  return {};
}

std::string_view guess(double factor, const std::vector<unit_slip>& slips) {
  constexpr double tolerance = 0.05;
  for (const unit_slip& slip : slips) {
    if (std::abs(factor / slip.factor - 1.0) < tolerance) {
      return slip.words;
    }
  }
  return "";
}

std::string guess_rate(const std::vector<double>& factors, std::size_t compared, double rate) {
  constexpr std::size_t fewest_strides = 3;
  if (factors.size() < fewest_strides || 10 * factors.size() < 9 * compared) {
    return "";
  }
  const double factor = median(factors);
  const auto is_alike = [&](double other) { return std::abs(other / factor - 1.0) < 0.02; };
  const auto alike = std::count_if(factors.begin(), factors.end(), is_alike);
  const bool all_are_alike = 10 * static_cast<std::size_t>(alike) >= 9 * factors.size();
  const double mended = std::round(rate / factor);
  constexpr double lowest_of_a_sensor = 10.0;  // (Hz)
  return all_are_alike && mended >= lowest_of_a_sensor
             ? "a sampling rate of " + number(mended) + " Hz?"
             : "";
}

}  // namespace gait_checks

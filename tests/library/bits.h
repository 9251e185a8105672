#ifndef GAIT_TESTS_LIBRARY_BITS_H
#define GAIT_TESTS_LIBRARY_BITS_H

/// \file
/// Doubles compared by their bits: 0.0 is not -0.0, and sums that differ in their last bit differ.
/// And numbers at the ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ios>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace gait_test {

inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr int int_max = std::numeric_limits<int>::max();
inline constexpr int int_min = std::numeric_limits<int>::min();

inline std::uint64_t bits(double value) {
  std::uint64_t pattern = 0;
  static_assert(sizeof(pattern) == sizeof(value));
  std::memcpy(&pattern, &value, sizeof(value));
  return pattern;
}

/// Every bit, for people. All NaNs are one: which of them an operation gives is the processor's
/// choice.
inline std::string exact(double value) {
  std::ostringstream text;
  if (value != value) {
    return "nan";
  }
  text << std::hexfloat << value;
  return text.str();
}

inline bool same_bits(double a, double b) { return (a != a && b != b) || bits(a) == bits(b); }

MATCHER_P(SameBits, expected, "is " + exact(expected) + " to the bit") {
  *result_listener << "which is " << exact(arg);
  return same_bits(arg, expected);
}

/// A list of exactly these values, to the bit.
inline auto SameBitsEach(const std::vector<double>& expected) {
  std::vector<testing::Matcher<double>> each;
  std::transform(expected.begin(), expected.end(), std::back_inserter(each),
                 [](double value) { return SameBits(value); });
  return testing::ElementsAreArray(each);
}

}  // namespace gait_test

#endif

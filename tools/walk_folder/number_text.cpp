#include "number_text.h"

#include <fast_float/fast_float.h>

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace gait_walk {

namespace {

/// fast_float reads a number that is too large as infinity, and one that is too small as 0.
template <class Float>
bool is_out_of_range(std::string_view text, Float value) {
  if (std::isinf(value)) {
    return text.find_first_of("0123456789") != std::string_view::npos;
  }
  if (value != 0) {
    return false;
  }
  const std::string_view digits = text.substr(0, text.find_first_of("eE"));
  return digits.find_first_of("123456789") != std::string_view::npos;
}

/// Reads what a text begins with. Returns the error, and the end of the number.
template <class Number>
std::pair<std::errc, const char*> read_beginning(std::string_view text, Number& value) {
  const char* const end = text.data() + text.size();
  if constexpr (std::is_floating_point_v<Number>) {
    const auto [last, error] = fast_float::from_chars(text.data(), end, value);
    const bool out_of_range = error == std::errc() && is_out_of_range(text, value);
    return {out_of_range ? std::errc::result_out_of_range : error, last};
  } else {
    const auto [last, error] = std::from_chars(text.data(), end, value);
    return {error, last};
  }
}

}  // namespace

template <class Number>
std::errc read_number(std::string_view text, Number& value) {
  const auto [error, last] = read_beginning(text, value);
  return last == text.data() + text.size() ? error : std::errc::invalid_argument;
}

template std::errc read_number(std::string_view, int&);
template std::errc read_number(std::string_view, std::intmax_t&);
template std::errc read_number(std::string_view, std::uint64_t&);
template std::errc read_number(std::string_view, float&);
template std::errc read_number(std::string_view, double&);

}  // namespace gait_walk

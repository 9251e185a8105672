#ifndef TOOLS_WALK_FOLDER_NUMBER_TEXT_H
#define TOOLS_WALK_FOLDER_NUMBER_TEXT_H

/// \file
/// Numbers as text, and text as numbers: the same in every locale.

#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

namespace gait_walk {

/// A number as std::to_chars writes it. A number with decimals must be finite, and in a form whose
/// text is no longer than the buffer.
template <class Number, class... Form>
std::string text_of(Number value, Form... form) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, form...).ptr;
  return {buffer.data(), end};
}

/// Reads a text, all of it, as a number: a whole one, or one with decimals, which may also be
/// "inf" or "nan".
///
/// Returns std::errc() if `value` is that number, std::errc::invalid_argument for a text that is no
/// number, std::errc::result_out_of_range for a number that the type cannot hold, or holds as 0
/// only. For int, std::intmax_t, std::uint64_t, float and double.
template <class Number>
std::errc read_number(std::string_view text, Number& value);

}  // namespace gait_walk

#endif

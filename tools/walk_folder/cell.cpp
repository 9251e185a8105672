#include "cell.h"

#include "csv_table.h"
#include "minus_one.h"
#include "number_text.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace gait_walk {

namespace {

/// read_number() of a cell, which may begin with a plus sign.
template <class Number>
std::errc parse(std::string_view cell, Number& value) {
  if (cell.size() > 1 && cell[0] == '+' && cell[1] != '-') {
    cell.remove_prefix(1);
  }
  return read_number(cell, value);
}

/// parse() that takes no form of "nan" for a number.
std::errc parse_measured(std::string_view cell, double& value) {
  const std::errc error = parse(cell, value);
  return error == std::errc() && std::isnan(value) ? std::errc::invalid_argument : error;
}

bool has_decimal_comma(std::string_view cell) {
  std::string with_point(cell);
  std::replace(with_point.begin(), with_point.end(), ',', '.');
  double ignored = 0;
  return with_point != cell && parse_measured(with_point, ignored) == std::errc();
}

/// A whole number without the ".0" that other software writes behind it.
std::string_view without_zero_fraction(std::string_view cell) {
  const std::size_t point = cell.find('.');
  const bool is_zero = point != std::string_view::npos &&
                       cell.find_first_not_of('0', point + 1) == std::string_view::npos;
  return is_zero ? cell.substr(0, point) : cell;
}

template <class Whole>
std::string read_whole(std::string_view cell, const column_rules& rules, Whole lowest,
                       Whole& value) {
  Whole number = 0;
  const std::errc error = parse(without_zero_fraction(cell), number);
  if (error == std::errc() && number >= lowest) {
    value = number;
    return {};
  }
  // A minus sign is no part of an unsigned number: "-5" is told apart from "abc" by reading it as a
  // signed one.
  std::intmax_t negative = 0;
  if (error != std::errc::invalid_argument ||
      parse(without_zero_fraction(cell), negative) != std::errc::invalid_argument) {
    return found(cell) + ", expected a whole number from " + std::to_string(lowest) + " to " +
           std::to_string(std::numeric_limits<Whole>::max());
  }
  double fraction = 0;
  if (parse_measured(cell, fraction) == std::errc() && std::isfinite(fraction)) {
    return found(cell) + ", expected a whole number without decimals" +
           std::string(rules.if_fraction);
  }
  if (has_decimal_comma(cell)) {
    return found(cell) + ", expected a whole number without a comma";
  }
  return found(cell) + ", expected a whole number";
}

template <class Whole>
std::string read_optional(std::string_view cell, const column_rules& rules, Whole lowest,
                          std::optional<Whole>& value) {
  value.reset();
  if (is_not_measured(cell)) {
    return {};
  }
  Whole number = 0;
  std::string complaint = read_whole(cell, rules, lowest, number);
  if (complaint.empty()) {
    value = number;
  }
  return complaint;
}

}  // namespace

std::string lower(std::string_view text) {
  std::string lower(text);
  // std::tolower would ask the locale.
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

bool is_not_measured(std::string_view cell) {
  constexpr std::array<std::string_view, 7> words = {"",     "na",   "nan", "n/a",
                                                     "#n/a", "null", "none"};
  const bool may_be_a_number = !cell.empty() && cell[0] >= '+' && cell[0] <= '9';
  return cell.size() <= 4 && !may_be_a_number &&
         std::find(words.begin(), words.end(), lower(cell)) != words.end();
}

std::string read_cell(std::string_view cell, const column_rules& /*rules*/, double& value) {
  if (is_not_measured(cell)) {
    value = gait_missing;
    return {};
  }
  double number = 0;
  const std::errc error = parse_measured(cell, number);
  if (error == std::errc() && std::isfinite(number)) {
    value = number == gait_missing ? measured_minus_one : number;
    return {};
  }
  if (error == std::errc()) {
    return found(cell) + ", expected a finite number or an empty cell";
  }
  if (error == std::errc::result_out_of_range) {
    return found(cell) +
           ", expected a number that is neither too large nor too small to compute with";
  }
  if (has_decimal_comma(cell)) {
    return found(cell) + " with a decimal comma, expected a decimal point";
  }
  return found(cell) + ", expected a number or an empty cell";
}

std::string read_cell(std::string_view cell, const column_rules& rules, int& value) {
  return read_whole(cell, rules, rules.lowest, value);
}

std::string read_cell(std::string_view cell, const column_rules& rules, std::optional<int>& value) {
  return read_optional(cell, rules, rules.lowest, value);
}

std::string read_cell(std::string_view cell, const column_rules& rules,
                      std::optional<std::uint64_t>& value) {
  return read_optional(cell, rules, std::uint64_t{0}, value);
}

std::string read_cell(std::string_view cell, const column_rules& /*rules*/, std::string& value) {
  value = cell;
  return {};
}

std::string to_cell(double value) {
  if (value == gait_missing) {
    return {};
  }
  if (value == measured_minus_one) {
    return "-1";
  }
  if (!std::isfinite(value)) {
    throw std::invalid_argument("a walk folder cannot hold infinities or NaN");
  }
  return text_of(value);
}

std::string to_cell(int value) { return text_of(value); }
std::string to_cell(const std::optional<int>& value) {
  return value ? text_of(*value) : std::string();
}
std::string to_cell(const std::optional<std::uint64_t>& value) {
  return value ? text_of(*value) : std::string();
}

std::string to_cell(const std::string& value) {
  if (!utf8::is_valid(value) || value.find('\0') != std::string::npos) {
    throw std::invalid_argument("a walk folder cannot hold a text that is not UTF-8");
  }
  return csv_cell(value);
}

}  // namespace gait_walk

#ifndef TOOLS_WALK_FOLDER_CELL_H
#define TOOLS_WALK_FOLDER_CELL_H

/// \file
/// Cells as values, and values as cells. The locale of the program has no say in either.

#include "columns.h"
#include "names.h"
#include "shown_text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gait_walk {

/// Whether a cell says that there is no value: empty, NA, NaN or n/a, in capitals or not.
bool is_not_measured(std::string_view cell);

// Each of these reads a cell into `value`, and returns what is wrong with the cell ("found ...,
// expected ..."), or an empty text. `limits` bounds whole numbers.
std::string read_cell(std::string_view cell, const whole_limits& limits, double& value);
std::string read_cell(std::string_view cell, const whole_limits& limits, int& value);
std::string read_cell(std::string_view cell, const whole_limits& limits, std::optional<int>& value);
std::string read_cell(std::string_view cell, const whole_limits& limits,
                      std::optional<std::uint64_t>& value);
std::string read_cell(std::string_view cell, const whole_limits& limits, std::string& value);

template <class Name>
std::string read_cell(std::string_view cell, const whole_limits& /*limits*/, Name& value) {
  if (const auto known = value_named<Name>(cell)) {
    value = *known;
    return {};
  }
  std::string all;
  for (const auto& entry : names<Name>) {
    all += (all.empty() ? "" : ", ") + std::string(entry.name);
  }
  return found(cell) + ", expected one of: " + all;
}

// The cells that read_cell() reads back as the same value. Throws std::invalid_argument for a value
// that has none.
std::string to_cell(double value);
std::string to_cell(int value);
std::string to_cell(const std::optional<int>& value);
std::string to_cell(const std::optional<std::uint64_t>& value);
std::string to_cell(const std::string& value);

template <class Name>
std::string to_cell(Name value) {
  return std::string(name_of(value));
}

}  // namespace gait_walk

#endif

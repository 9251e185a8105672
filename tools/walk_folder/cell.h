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
#include <type_traits>

namespace gait_walk {

/// A name or word in lower case, whatever the locale.
std::string lower(std::string_view text);

/// Whether a cell says that there is no value: empty, or one of the words for it (NA, NULL, ...).
bool is_not_measured(std::string_view cell);

/// The name that a word in lower case stands for: a foot may be given by its first letter.
template <class Name>
std::string full_word(const std::string& word) {
  if constexpr (std::is_same_v<Name, side> || std::is_same_v<Name, analysed_cycles>) {
    return word == "l" ? "left" : word == "r" ? "right" : word;
  }
  return word;
}

// Each of these reads a cell into `value`, and returns what is wrong with the cell ("found ...,
// expected ..."), or an empty text. Words may be written in capitals.
std::string read_cell(std::string_view cell, const column_rules& rules, double& value);
std::string read_cell(std::string_view cell, const column_rules& rules, int& value);
std::string read_cell(std::string_view cell, const column_rules& rules, std::optional<int>& value);
std::string read_cell(std::string_view cell, const column_rules& rules,
                      std::optional<std::uint64_t>& value);
std::string read_cell(std::string_view cell, const column_rules& rules, std::string& value);

template <class Name>
std::string read_cell(std::string_view cell, const column_rules& /*rules*/, Name& value) {
  if (const auto known = value_named<Name>(full_word<Name>(lower(cell)))) {
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

#ifndef TOOLS_WALK_FOLDER_NAMES_H
#define TOOLS_WALK_FOLDER_NAMES_H

/// \file
/// The words for the values of enumerations: in tables, on the command line and in reports.

#include "walk.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace gait_walk {

/// A value and its words.
template <class Value>
struct named {
  Value value;
  std::string_view name;
  std::string_view in_words = {};  ///< for people, where the name alone does not do
};

template <class Value>
struct enumeration_without_names {
  static_assert(sizeof(Value) == 0, "this enumeration has no names: specialise names for it");
};

/// The names of an enumeration's values, in the order in which they are listed.
template <class Value>
inline constexpr enumeration_without_names<Value> names;
template <>
inline constexpr auto names<side> =
    std::array<named<side>, 2>{{{side::left, "left"}, {side::right, "right"}}};
template <>
inline constexpr auto names<analysed_cycles> =
    std::array<named<analysed_cycles>, 3>{{{analysed_cycles::feet, "feet", "both feet"},
                                           {analysed_cycles::left, "left", "left foot"},
                                           {analysed_cycles::right, "right", "right foot"}}};
template <>
inline constexpr auto names<exclusion_list> = std::array<named<exclusion_list>, 4>{
    {{exclusion_list::excluded_1, "excluded_1"},
     {exclusion_list::excluded_1_fallback, "excluded_1_fallback"},
     {exclusion_list::excluded_2, "excluded_2"},
     {exclusion_list::excluded_2_fallback, "excluded_2_fallback"}}};

template <class Value>
constexpr const named<Value>& words_of(Value value) {
  std::size_t place = 0;
  while (names<Value>.at(place).value != value) {
    ++place;
  }
  return names<Value>[place];
}

template <class Value>
constexpr std::string_view name_of(Value value) {
  return words_of(value).name;
}

/// Words as they begin a sentence.
inline std::string capitalised(std::string_view words) {
  std::string text(words);
  text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

/// The value of a name; nullopt for a text that is none.
template <class Value>
constexpr std::optional<Value> value_named(std::string_view name) {
  for (const auto& entry : names<Value>) {
    if (entry.name == name) {
      return entry.value;
    }
  }
  return std::nullopt;
}

}  // namespace gait_walk

#endif

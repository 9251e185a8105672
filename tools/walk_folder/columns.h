#ifndef TOOLS_WALK_FOLDER_COLUMNS_H
#define TOOLS_WALK_FOLDER_COLUMNS_H

/// \file
/// The columns of the tables, in the order in which they are written; reader and writer share
/// them.

#include "walk.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace gait_walk {

struct recording_row {
  side foot = side::left;
  int sampling_rate = 0;
  std::optional<std::uint64_t> signal_1_samples;
  std::optional<std::uint64_t> signal_2_samples;
};

struct foot_cycle_row : gait_foot_cycle {
  side foot = side::left;
};

struct feet_cycle_row : feet_cycle {
  int index = 0;
};

using exclusion_row = exclusion;

/// What holds for a column beyond the type of its values.
struct column_rules {
  bool required = false;  ///< whether a table cannot do without it
  bool has_sign = false;  ///< whether what is measured may be negative, so that -1 may be a value
  int lowest = 0;         ///< the lowest whole number that it takes; the highest is its type's
  std::string_view if_fraction = {};  ///< what to do about a number that is not whole
};

inline constexpr column_rules required = {true};
inline constexpr column_rules with_sign = {false, true};
inline constexpr column_rules rate_rules = {
    true, false, 1,
    ": give the nearest whole rate, and multiply first_sample, last_sample, signal_1_samples and "
    "signal_2_samples by new rate / old rate"};
inline constexpr column_rules sample_rules = {
    true, false, 0, ": if these are seconds, multiply them by the sampling rate and round"};
// The library allows an excluded index out of range, also a negative one.
inline constexpr column_rules excluded_index_rules = {true, false,
                                                      std::numeric_limits<int>::lowest()};

/// One column: its name in the header line, the member of the row that it fills, and its rules.
template <class Row>
struct column {
  using row_member =
      std::variant<double Row::*, int Row::*, std::optional<int> Row::*,
                   std::optional<std::uint64_t> Row::*, side Row::*, analysed_cycles Row::*,
                   exclusion_list Row::*, std::string Row::*>;

  template <class Value, class Base>
  constexpr column(std::string_view its_name, Value Base::*filled,
                   const column_rules& its_rules = {})
      : name(its_name), member(static_cast<Value Row::*>(filled)), rules(its_rules) {}

  std::string_view name;
  row_member member;
  column_rules rules;
};

// Braced rows are counted by the compiler only where they make an array of C.
// NOLINTBEGIN(modernize-avoid-c-arrays)
template <class Row, std::size_t Count, std::size_t... Place>
constexpr auto array_of(const column<Row> (&columns)[Count],
                        std::index_sequence<Place...> /*all*/) {
  return std::array<column<Row>, Count>{columns[Place]...};
}

/// The columns of a table, in their order; as many as there are.
template <class Row, std::size_t Count>
constexpr auto table_of(const column<Row> (&columns)[Count]) {
  return array_of(columns, std::make_index_sequence<Count>{});
}
// NOLINTEND(modernize-avoid-c-arrays)

template <class Row>
struct row_without_table {
  static_assert(sizeof(Row) == 0,
                "this row has no table: specialise columns and table_name for it");
};

/// The columns of a row's table.
template <class Row>
inline constexpr row_without_table<Row> columns = {};

/// The file of a row's table in a walk folder.
template <class Row>
inline constexpr row_without_table<Row> table_name = {};

template <>
inline constexpr auto columns<recording_row> = table_of<recording_row>({
    {"foot", &recording_row::foot, required},
    {"sampling_rate", &recording_row::sampling_rate, rate_rules},
    {"signal_1_samples", &recording_row::signal_1_samples},
    {"signal_2_samples", &recording_row::signal_2_samples},
});

template <>
inline constexpr auto columns<foot_cycle_row> = table_of<foot_cycle_row>({
    {"foot", &foot_cycle_row::foot, required},
    {"index", &foot_cycle_row::index},
    {"first_sample", &foot_cycle_row::first_sample, sample_rules},
    {"last_sample", &foot_cycle_row::last_sample, sample_rules},
    {"hs", &foot_cycle_row::hs},
    {"gct", &foot_cycle_row::gct},
    {"swing", &foot_cycle_row::swing},
    {"stance", &foot_cycle_row::stance},
    {"contact", &foot_cycle_row::contact},
    {"cadence", &foot_cycle_row::cadence},
    {"ldr", &foot_cycle_row::ldr},
    {"ffr", &foot_cycle_row::ffr},
    {"pur", &foot_cycle_row::pur},
    {"slength", &foot_cycle_row::slength},
    {"swidth", &foot_cycle_row::swidth},
    {"path_length", &foot_cycle_row::path_length},
    {"speed", &foot_cycle_row::speed},
    {"ta", &foot_cycle_row::ta, with_sign},
    {"peakswing", &foot_cycle_row::peakswing},
    {"top", &foot_cycle_row::top, with_sign},
    {"hsp", &foot_cycle_row::hsp, with_sign},
    {"step_time", &foot_cycle_row::step_time},
    {"step_length", &foot_cycle_row::step_length},
    {"strike_eversion", &foot_cycle_row::strike_eversion, with_sign},
    {"max_hc", &foot_cycle_row::max_hc},
    {"min_tc", &foot_cycle_row::min_tc},
    {"max_tc1", &foot_cycle_row::max_tc1},
    {"max_tc2", &foot_cycle_row::max_tc2},
    {"mtc_speed", &foot_cycle_row::mtc_speed},
    {"impact_vert", &foot_cycle_row::impact_vert},
    {"impact_hor", &foot_cycle_row::impact_hor},
});

template <>
inline constexpr auto columns<feet_cycle_row> = table_of<feet_cycle_row>({
    {"index", &feet_cycle_row::index},
    {"gct", &feet_cycle_row::gct},
    {"ds", &feet_cycle_row::ds},
    {"right_index", &feet_cycle_row::right_index, required},
    {"left_index", &feet_cycle_row::left_index, required},
});

template <>
inline constexpr auto columns<exclusion_row> = table_of<exclusion_row>({
    {"cycles", &exclusion_row::cycles, required},
    {"list", &exclusion_row::list, required},
    {"index", &exclusion_row::index, excluded_index_rules},
    {"reason", &exclusion_row::reason},
});

template <>
inline constexpr auto columns<about_row> = table_of<about_row>({
    {"name", &about_row::name, required},
    {"value", &about_row::value, required},
});

template <>
inline constexpr std::string_view table_name<recording_row> = "recording.csv";
template <>
inline constexpr std::string_view table_name<foot_cycle_row> = "foot_cycles.csv";
template <>
inline constexpr std::string_view table_name<feet_cycle_row> = "feet_cycles.csv";
template <>
inline constexpr std::string_view table_name<exclusion_row> = "exclusions.csv";
template <>
inline constexpr std::string_view table_name<about_row> = "about.csv";

/// A table's file in a folder, as messages name it.
template <class Row>
std::string table_file(const std::filesystem::path& folder) {
  return (folder / table_name<Row>).string();
}

}  // namespace gait_walk

#endif

#ifndef TOOLS_WALK_FOLDER_COLUMNS_H
#define TOOLS_WALK_FOLDER_COLUMNS_H

/// \file
/// The columns of the four tables, in the order in which they are written; reader and writer share
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

/// The lowest whole number that a column takes; the highest is its type's.
struct whole_limits {
  int lowest = 0;
};

/// One column: its name in the header line, and the member of the row that it fills.
template <class Row>
struct column {
  using row_member =
      std::variant<double Row::*, int Row::*, std::optional<int> Row::*,
                   std::optional<std::uint64_t> Row::*, side Row::*, analysed_cycles Row::*,
                   exclusion_list Row::*, std::string Row::*>;

  template <class Value, class Base>
  constexpr column(std::string_view its_name, Value Base::*filled, whole_limits its_limits = {})
      : name(its_name), member(static_cast<Value Row::*>(filled)), limits(its_limits) {}

  std::string_view name;
  row_member member;
  whole_limits limits;
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
    {"foot", &recording_row::foot},
    {"sampling_rate", &recording_row::sampling_rate, {1}},
    {"signal_1_samples", &recording_row::signal_1_samples},
    {"signal_2_samples", &recording_row::signal_2_samples},
});

template <>
inline constexpr auto columns<foot_cycle_row> = table_of<foot_cycle_row>({
    {"foot", &foot_cycle_row::foot},
    {"index", &foot_cycle_row::index},
    {"first_sample", &foot_cycle_row::first_sample},
    {"last_sample", &foot_cycle_row::last_sample},
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
    {"ta", &foot_cycle_row::ta},
    {"peakswing", &foot_cycle_row::peakswing},
    {"top", &foot_cycle_row::top},
    {"hsp", &foot_cycle_row::hsp},
    {"step_time", &foot_cycle_row::step_time},
    {"step_length", &foot_cycle_row::step_length},
    {"strike_eversion", &foot_cycle_row::strike_eversion},
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
    {"right_index", &feet_cycle_row::right_index},
    {"left_index", &feet_cycle_row::left_index},
});

template <>
inline constexpr auto columns<exclusion_row> = table_of<exclusion_row>({
    {"cycles", &exclusion_row::cycles},
    {"list", &exclusion_row::list},
    // The library allows an index out of range, also a negative one.
    {"index", &exclusion_row::index, {std::numeric_limits<int>::lowest()}},
    {"reason", &exclusion_row::reason},
});

template <>
inline constexpr std::string_view table_name<recording_row> = "recording.csv";
template <>
inline constexpr std::string_view table_name<foot_cycle_row> = "foot_cycles.csv";
template <>
inline constexpr std::string_view table_name<feet_cycle_row> = "feet_cycles.csv";
template <>
inline constexpr std::string_view table_name<exclusion_row> = "exclusions.csv";

/// A table's file in a folder, as messages name it.
template <class Row>
std::string table_file(const std::filesystem::path& folder) {
  return (folder / table_name<Row>).string();
}

}  // namespace gait_walk

#endif

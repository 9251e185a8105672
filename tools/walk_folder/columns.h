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
#include <variant>

namespace gait_walk {

/// The words for the values of an enumeration.
template <class Value>
struct named {
  Value value;
  std::string_view name;
};

template <class Value>
inline constexpr std::array<named<Value>, 0> names = {};
template <>
inline constexpr std::array<named<side>, 2> names<side> = {
    {{side::left, "left"}, {side::right, "right"}}};
template <>
inline constexpr std::array<named<analysed_cycles>, 3> names<analysed_cycles> = {
    {{analysed_cycles::feet, "feet"},
     {analysed_cycles::left, "left"},
     {analysed_cycles::right, "right"}}};
template <>
inline constexpr std::array<named<exclusion_list>, 4> names<exclusion_list> = {
    {{exclusion_list::excluded_1, "excluded_1"},
     {exclusion_list::excluded_1_fallback, "excluded_1_fallback"},
     {exclusion_list::excluded_2, "excluded_2"},
     {exclusion_list::excluded_2_fallback, "excluded_2_fallback"}}};

template <class Value>
constexpr std::string_view name_of(Value value) {
  for (const auto& entry : names<Value>) {
    if (entry.value == value) {
      return entry.name;
    }
  }
  return {};
}

struct recording_row {
  side foot = side::left;
  int sampling_rate = 0;
  std::uint64_t signal_1_samples = 0;
  std::uint64_t signal_2_samples = 0;
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
  std::string_view name;
  std::variant<double Row::*, int Row::*, std::uint64_t Row::*, std::optional<int> Row::*,
               side Row::*, analysed_cycles Row::*, exclusion_list Row::*, std::string Row::*>
      member;
  whole_limits limits = {};
};

template <class Row>
inline constexpr std::array<column<Row>, 0> columns = {};

template <>
inline constexpr std::array<column<recording_row>, 4> columns<recording_row> = {{
    {"foot", &recording_row::foot},
    {"sampling_rate", &recording_row::sampling_rate, {1}},
    {"signal_1_samples", &recording_row::signal_1_samples},
    {"signal_2_samples", &recording_row::signal_2_samples},
}};

/// A member of gait_foot_cycle as a member of the row that holds one.
template <class Value>
constexpr Value foot_cycle_row::*of_cycle(Value gait_foot_cycle::*member) {
  return member;
}

template <>
inline constexpr std::array<column<foot_cycle_row>, 31> columns<foot_cycle_row> = {{
    {"foot", &foot_cycle_row::foot},
    {"index", of_cycle(&gait_foot_cycle::index)},
    {"first_sample", of_cycle(&gait_foot_cycle::first_sample)},
    {"last_sample", of_cycle(&gait_foot_cycle::last_sample)},
    {"hs", of_cycle(&gait_foot_cycle::hs)},
    {"gct", of_cycle(&gait_foot_cycle::gct)},
    {"swing", of_cycle(&gait_foot_cycle::swing)},
    {"stance", of_cycle(&gait_foot_cycle::stance)},
    {"contact", of_cycle(&gait_foot_cycle::contact)},
    {"cadence", of_cycle(&gait_foot_cycle::cadence)},
    {"ldr", of_cycle(&gait_foot_cycle::ldr)},
    {"ffr", of_cycle(&gait_foot_cycle::ffr)},
    {"pur", of_cycle(&gait_foot_cycle::pur)},
    {"slength", of_cycle(&gait_foot_cycle::slength)},
    {"swidth", of_cycle(&gait_foot_cycle::swidth)},
    {"path_length", of_cycle(&gait_foot_cycle::path_length)},
    {"speed", of_cycle(&gait_foot_cycle::speed)},
    {"ta", of_cycle(&gait_foot_cycle::ta)},
    {"peakswing", of_cycle(&gait_foot_cycle::peakswing)},
    {"top", of_cycle(&gait_foot_cycle::top)},
    {"hsp", of_cycle(&gait_foot_cycle::hsp)},
    {"step_time", of_cycle(&gait_foot_cycle::step_time)},
    {"step_length", of_cycle(&gait_foot_cycle::step_length)},
    {"strike_eversion", of_cycle(&gait_foot_cycle::strike_eversion)},
    {"max_hc", of_cycle(&gait_foot_cycle::max_hc)},
    {"min_tc", of_cycle(&gait_foot_cycle::min_tc)},
    {"max_tc1", of_cycle(&gait_foot_cycle::max_tc1)},
    {"max_tc2", of_cycle(&gait_foot_cycle::max_tc2)},
    {"mtc_speed", of_cycle(&gait_foot_cycle::mtc_speed)},
    {"impact_vert", of_cycle(&gait_foot_cycle::impact_vert)},
    {"impact_hor", of_cycle(&gait_foot_cycle::impact_hor)},
}};

template <class Value>
constexpr Value feet_cycle_row::*of_feet(Value feet_cycle::*member) {
  return member;
}

template <>
inline constexpr std::array<column<feet_cycle_row>, 5> columns<feet_cycle_row> = {{
    {"index", &feet_cycle_row::index},
    {"gct", of_feet(&feet_cycle::gct)},
    {"ds", of_feet(&feet_cycle::ds)},
    {"right_index", of_feet(&feet_cycle::right_index)},
    {"left_index", of_feet(&feet_cycle::left_index)},
}};

template <>
inline constexpr std::array<column<exclusion_row>, 4> columns<exclusion_row> = {{
    {"cycles", &exclusion_row::cycles},
    {"list", &exclusion_row::list},
    // The library allows an index out of range, also a negative one.
    {"index", &exclusion_row::index, {std::numeric_limits<int>::lowest()}},
    {"reason", &exclusion_row::reason},
}};

template <class Row>
inline constexpr std::string_view table_name;
template <>
inline constexpr std::string_view table_name<recording_row> = "recording.csv";
template <>
inline constexpr std::string_view table_name<foot_cycle_row> = "foot_cycles.csv";
template <>
inline constexpr std::string_view table_name<feet_cycle_row> = "feet_cycles.csv";
template <>
inline constexpr std::string_view table_name<exclusion_row> = "exclusions.csv";

/// A table's file in a folder, as faults name it.
template <class Row>
std::string table_file(const std::filesystem::path& folder) {
  return (folder / table_name<Row>).string();
}

}  // namespace gait_walk

#endif

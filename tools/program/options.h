#ifndef TOOLS_PROGRAM_OPTIONS_H
#define TOOLS_PROGRAM_OPTIONS_H

/// \file
/// The command line.

#include "output_format.h"
#include "walk.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace gait_program {

inline constexpr int exit_fine = 0;
inline constexpr int exit_failed = 1;
inline constexpr int exit_bad_usage = 2;

struct options {
  std::vector<std::filesystem::path> walks;
  /// What to analyse; asked for `feet`, the only foot of a walk that has one.
  gait_walk::analysed_cycles analysed = gait_walk::analysed_cycles::feet;
  float settings_value = 0.0F;
  /// As asked for; else that of the output file's ending.
  gait_report::output_format format = gait_report::output_format::table;
  gait_report::csv_table table = gait_report::csv_table::parameters;
  std::optional<std::filesystem::path> output;  ///< the standard output where there is none
  /// Whether `output` is a folder, for a page of each walk.
  bool output_is_a_folder = false;
  std::optional<std::size_t> width;        ///< of the text report (characters, 20 to 10000)
  std::optional<std::size_t> max_strides;  ///< of a foot; no limit where there is none
  /// Whether walks are the walk folders below those that are given.
  bool recursive = false;
  std::vector<std::string> ignored_columns;  ///< "all" for every unknown one
  std::vector<std::string> without_checks;
  bool strict = false;  ///< whether findings and warnings leave a walk out
  bool list_parameters = false;
  bool list_checks = false;
};

/// What is said instead of running: the help, the version, or what is wrong with the command line.
struct reply {
  int exit_code;
  std::string text;
};

/// The options of a command line, or the reply to one that asks for help or is wrong. Throws
/// nothing but std::bad_alloc.
std::variant<options, reply> parse_command_line(int argc, const char* const* argv);

}  // namespace gait_program

#endif

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
  gait_report::output_format format = gait_report::output_format::table;
  std::optional<std::filesystem::path> output;  ///< the standard output where there is none
  std::optional<std::size_t> width;             ///< of the text report (characters, 20 to 10000)
  std::optional<std::size_t> max_strides;       ///< of a foot; no limit where there is none
  bool list_parameters = false;
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

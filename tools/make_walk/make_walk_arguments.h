#ifndef TOOLS_MAKE_WALK_MAKE_WALK_ARGUMENTS_H
#define TOOLS_MAKE_WALK_MAKE_WALK_ARGUMENTS_H

/// \file
/// The command line of gait-make-walk, for the parser and for the printer of the manual page.

#include "walk_model.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace gait_make_walk {

inline constexpr int exit_failed = 1;
inline constexpr int exit_bad_usage = 2;

struct arguments {
  std::filesystem::path folder;
  bool force = false;  ///< whether a folder that is there may be written into
  gait_walk::walk_settings settings;
};

/// Describes the program, and adds what it takes. What is parsed is written to `arguments`, which
/// has to outlive the parsing.
void add_options(CLI::App& app, arguments& arguments);

}  // namespace gait_make_walk

#endif

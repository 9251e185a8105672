#ifndef TOOLS_PROGRAM_COMMAND_LINE_H
#define TOOLS_PROGRAM_COMMAND_LINE_H

/// \file
/// The command line as CLI11 has it, for the parser and for the printer of the manual page.

#include "options.h"

#include <CLI/CLI.hpp>

namespace gait_program {

/// Describes the program, and adds what it takes. What is parsed is written to `options`, which has
/// to outlive the parsing.
void add_options(CLI::App& app, options& options);

}  // namespace gait_program

#endif

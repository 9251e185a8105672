#ifndef TOOLS_PROGRAM_TERMINAL_H
#define TOOLS_PROGRAM_TERMINAL_H

/// \file
/// What the standard output and the standard error are connected to.

#include "text_layout.h"

#include <cstddef>
#include <optional>

namespace gait_program {

/// The style of a pipe or a file: 100 characters wide, without escape codes.
inline constexpr gait_report::text_style pipe_style{100, false};

/// The style that the standard output asks for: a terminal's own width, and bold headings unless
/// the environment says otherwise (NO_COLOR, TERM=dumb); pipe_style when it is no terminal.
gait_report::text_style standard_output_style();

bool standard_output_is_a_terminal();

/// Whether the terminal, if there is one, understands escape codes.
bool can_move_the_cursor();

/// How wide the terminal is that the standard error is connected to; nullopt for a pipe or a file,
/// where a message keeps to one line.
std::optional<std::size_t> standard_error_width();

}  // namespace gait_program

#endif

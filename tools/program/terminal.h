#ifndef TOOLS_PROGRAM_TERMINAL_H
#define TOOLS_PROGRAM_TERMINAL_H

/// \file
/// What the standard output is connected to.

#include "text_layout.h"

namespace gait_program {

/// The style of a pipe or a file: 100 characters wide, without escape codes.
inline constexpr gait_report::text_style pipe_style{100, false};

/// The style that the standard output asks for: a terminal's own width, and bold headings unless
/// the environment says otherwise (NO_COLOR, TERM=dumb); pipe_style when it is no terminal.
gait_report::text_style standard_output_style();

}  // namespace gait_program

#endif

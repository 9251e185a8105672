#ifndef TOOLS_GAIT_STATISTICS_TERMINAL_H
#define TOOLS_GAIT_STATISTICS_TERMINAL_H

/// \file
/// What the standard output is connected to, and what may be sent there.

#include "text_layout.h"

#include <string>
#include <string_view>

namespace gait_program {

/// The style of a pipe or a file: 100 characters wide, without escape codes.
inline constexpr text_style pipe_style{100, false};

/// The style that the standard output asks for: a terminal's own width, and bold headings unless
/// the environment says otherwise (NO_COLOR, TERM=dumb); pipe_style when it is no terminal.
text_style standard_output_style();

/// Text with its control characters replaced, so that a folder's name or a table's cell cannot
/// steer a terminal.
std::string printable(std::string_view text);

}  // namespace gait_program

#endif

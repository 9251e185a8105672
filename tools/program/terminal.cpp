#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace gait_program {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// The width of the terminal behind a descriptor; nullopt where there is none.
std::optional<std::size_t> terminal_width(int descriptor) {
  if (isatty(descriptor) == 0) {
    return std::nullopt;
  }
  winsize size{};
  // A terminal that does not know its size says 0.
  const bool is_known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return is_known ? size.ws_col : pipe_style.width;
}

}  // namespace

gait_report::text_style standard_output_style() {
  gait_report::text_style style = pipe_style;
  if (const auto width = terminal_width(STDOUT_FILENO)) {
    style.width = *width;
    style.bold = environment("NO_COLOR").empty() && can_move_the_cursor();
  }
  return style;
}

bool standard_output_is_a_terminal() { return isatty(STDOUT_FILENO) != 0; }

bool can_move_the_cursor() { return environment("TERM") != "dumb"; }

std::optional<std::size_t> standard_error_width() { return terminal_width(STDERR_FILENO); }

}  // namespace gait_program

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

}  // namespace

gait_report::text_style standard_output_style() {
  gait_report::text_style style = pipe_style;
  if (isatty(STDOUT_FILENO) == 0) {
    return style;
  }
  winsize size{};
  // A terminal that does not know its size says 0.
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    style.width = size.ws_col;
  }
  style.bold = environment("NO_COLOR").empty() && environment("TERM") != "dumb";
  return style;
}

}  // namespace gait_program

#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

namespace gait_program {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

text_style standard_output_style() {
  text_style style = pipe_style;
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

std::string printable(std::string_view text) {
  std::string result;
  unsigned char before = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    // Control characters have codes up to 0x1f, 0x7f, and 0x80 to 0x9f: in UTF-8, 0xc2 and the code
    // itself.
    const bool is_control = byte < 0x20 || byte == 0x7f || (before == 0xc2 && byte < 0xa0);
    if (before == 0xc2 && is_control) {
      result.pop_back();
    }
    result += is_control ? '?' : c;
    before = byte;
  }
  return result;
}

}  // namespace gait_program

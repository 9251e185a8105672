#include "ending.h"

#include "new_file.h"
#include "options.h"
#include "output.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

namespace gait_program {

int report_the_end() {
  try {
    throw;
  } catch (const reader_is_gone&) {
    remove_temporary_name();
    static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
    static_cast<void>(std::raise(SIGPIPE));
    constexpr int shells_status_of_the_signal = 128 + SIGPIPE;
    return shells_status_of_the_signal;
  } catch (const std::exception& error) {
    std::cerr << "gait-statistics: " + std::string(error.what()) + "\n";
    return exit_failed;
  }
}

void end_at_once() {
  const int exit_code = report_the_end();
  remove_temporary_name();
  std::_Exit(exit_code);
}

}  // namespace gait_program

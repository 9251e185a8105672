#include "ending.h"
#include "options.h"
#include "output.h"
#include "report_walks.h"

#include <sys/resource.h>

#include <iostream>
#include <optional>
#include <variant>

namespace {

using namespace gait_program;

/// Lets the stack grow as far as the system allows. On orders of values that were made for it, the
/// sort of the percentiles is as many calls deep as there are strides, and the usual eight
/// megabytes would end at some hundred thousand.
void let_stack_grow() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_STACK, &limit) == 0) {
    limit.rlim_cur = limit.rlim_max;
    static_cast<void>(::setrlimit(RLIMIT_STACK, &limit));
  }
}

int say(const reply& reply) {
  if (reply.exit_code == exit_fine) {
    output(std::nullopt).write(reply.text);
  } else {
    std::cerr << reply.text;
  }
  return reply.exit_code;
}

int run(const options& options) {
  if (options.list_parameters) {
    return report_parameter_list(options);
  }
  return options.list_checks ? report_check_list(options) : report_walks(options);
}

}  // namespace

int main(int argc, char** argv) {
  prepare_standard_streams();
  let_stack_grow();
  try {
    const auto parsed = parse_command_line(argc, argv);
    const auto* instead = std::get_if<reply>(&parsed);
    return instead != nullptr ? say(*instead) : run(std::get<options>(parsed));
  } catch (...) {
    return report_the_end();
  }
}

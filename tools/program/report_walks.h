#ifndef TOOLS_PROGRAM_REPORT_WALKS_H
#define TOOLS_PROGRAM_REPORT_WALKS_H

/// \file
/// Walks, one after the other, in the form and to the place that the options ask for.

#include "options.h"

namespace gait_program {

/// Reads, analyses and reports every walk of the options; what is wrong with one goes to the
/// standard error, and the rest goes on. Returns exit_fine, or exit_failed when a walk was left
/// out, exit_bad_usage when the output would replace a table of a walk.
///
/// Throws std::system_error when the output cannot be written, reader_is_gone when nobody reads it.
int report_walks(const options& options);

/// Print the catalogue, and the table of data checks. Return exit_fine, and throw as report_walks()
/// does.
int report_parameter_list(const options& options);
int report_check_list(const options& options);

}  // namespace gait_program

#endif

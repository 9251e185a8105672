#ifndef TOOLS_PROGRAM_ENDING_H
#define TOOLS_PROGRAM_ENDING_H

/// \file
/// How the program ends when it cannot go on.

namespace gait_program {

/// Says what is wrong, and returns the exit code. To be called while the exception that ends the
/// program is handled.
///
/// When the reader of the standard output is gone, the program is ended here without a message, by
/// the signal SIGPIPE, as `cat` and `grep` end, so that a shell sees the status that it knows
/// (141). That status is returned where the signal is blocked.
int report_the_end();

/// Does the same, and ends the program without waiting for other threads. Nothing half written is
/// left.
[[noreturn]] void end_at_once();

}  // namespace gait_program

#endif

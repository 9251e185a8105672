#ifndef TOOLS_PROGRAM_OUTPUT_H
#define TOOLS_PROGRAM_OUTPUT_H

/// \file
/// Where the results go: the standard output, or a file that is replaced only by a whole one.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace gait_program {

/// Makes failed writes arrive as errors, and not as a signal or in the wrong file: a closed pipe
/// and a limit of the file size end in an error of write(), and no file that is opened later takes
/// the place of a closed standard stream.
void prepare_standard_streams();

/// Thrown when the reader of the standard output has closed its end, as `head` does after the
/// lines that it wants.
struct reader_is_gone {};

/// Ends the program without a message by the signal SIGPIPE, as `cat` and `grep` end, so that a
/// shell sees the status that it knows (141). Returns that status where the signal is blocked.
int end_by_broken_pipe();

/// The destination of the results.
///
/// The standard output is written at once. What is meant for a file is held until finish(), then
/// written to a temporary file beside it, which is renamed: the file has its old content or the
/// new, never a part of it, also when the disk is full. Signals that end the program wait
/// meanwhile, so that the temporary file does not stay. A device or a pipe cannot be replaced, and
/// is written as it is. Without finish() the file is not touched.
///
/// Everything throws std::system_error, with a message that names the destination, when it cannot
/// be written, and reader_is_gone when nobody reads the standard output.
class output {
public:
  /// To a file, or (nullopt) to the standard output.
  explicit output(std::optional<std::filesystem::path> file);

  void write(std::string_view text);
  void finish();

private:
  std::optional<std::filesystem::path> file_;
  bool can_be_replaced_ = true;
  std::string held_;
};

}  // namespace gait_program

#endif

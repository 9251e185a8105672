#ifndef TOOLS_PROGRAM_OUTPUT_H
#define TOOLS_PROGRAM_OUTPUT_H

/// \file
/// Where the results go: the standard output, or a file that is replaced only by a whole one.

#include "new_file.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

namespace gait_program {

/// Makes failed writes arrive as errors, and not as a signal or in the wrong file: a closed pipe
/// and a limit of the file size end in an error of write(), and no file that is opened later takes
/// the place of a closed standard stream.
void prepare_standard_streams();

/// Thrown when the reader of the standard output has closed its end, as `head` does after the
/// lines that it wants.
struct reader_is_gone {};

/// The destination of the results, which are written as they come.
///
/// A file is written beside the one that it replaces, and takes its place in finish(): the
/// destination has its old content or the new, never a part of it, also when the disk is full or a
/// signal ends the program (see new_file). A device or a pipe cannot be replaced, and is written as
/// it is. Without finish() a file is not touched.
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
  std::unique_ptr<new_file> new_file_;  ///< null where nothing is replaced
  std::unique_ptr<open_file> device_;   ///< null before the first write
};

}  // namespace gait_program

#endif

#ifndef TOOLS_PROGRAM_NEW_FILE_H
#define TOOLS_PROGRAM_NEW_FILE_H

/// \file
/// A file that takes another one's place when it is whole.

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace gait_program {

/// Throws what errno says as a std::system_error, "cannot write DESTINATION: ...".
[[noreturn]] void fail_to_write(const std::string& destination);

/// Writes all of a text, whatever signals interrupt it. Throws std::system_error when it cannot.
void write_all(int descriptor, std::string_view text, const std::string& destination);

/// An open file, closed at the end.
class open_file {
public:
  /// Throws std::system_error where the descriptor is negative: the file could not be opened.
  open_file(int descriptor, std::string destination);
  open_file(const open_file&) = delete;
  open_file(open_file&&) = delete;
  open_file& operator=(const open_file&) = delete;
  open_file& operator=(open_file&&) = delete;
  ~open_file();

  int descriptor() const { return descriptor_; }
  void write(std::string_view text) const { write_all(descriptor_, text, destination_); }

  /// Closes the file; a network file system reports a full disk no earlier.
  void close();

private:
  int descriptor_;
  std::string destination_;
};

/// A file that is written beside the one whose place it is to take.
///
/// Where the system can do that, it has no name until it is whole, and nothing is left of it
/// however the program ends. Elsewhere it has a temporary name, which the destructor removes, and
/// the signals that end the program (but for SIGKILL). One file at a time may have such a name.
///
/// Everything throws std::system_error, with a message that names the destination, when the file
/// cannot be written.
class new_file {
public:
  explicit new_file(const std::filesystem::path& destination);
  new_file(const new_file&) = delete;
  new_file(new_file&&) = delete;
  new_file& operator=(const new_file&) = delete;
  new_file& operator=(new_file&&) = delete;
  ~new_file();

  void write(std::string_view text) const { file_.write(text); }

  /// Gives the file its place, with the permissions of the one that it replaces.
  void take_place();

private:
  std::filesystem::path destination_;
  std::string temporary_name_;  ///< empty while the file has no name
  open_file file_;
};

/// Removes the temporary name of a file, if one has it. For programs that end without destructors.
void remove_temporary_name();

}  // namespace gait_program

#endif

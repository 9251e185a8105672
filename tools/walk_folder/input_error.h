#ifndef TOOLS_WALK_FOLDER_INPUT_ERROR_H
#define TOOLS_WALK_FOLDER_INPUT_ERROR_H

/// \file
/// What is wrong with the input, or worth a warning, and where.

#include "wording.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_walk {

/// One thing that is wrong with a table, or worth a warning.
struct input_error {
  std::string file;      ///< as the caller named it, with the table's name
  std::size_t line = 0;  ///< from 1; 0 where the file as a whole is meant
  std::string column;    ///< empty where the line as a whole is meant
  std::string text;      ///< "found ..., expected ..."

  /// `file:line: column NAME: text`, without the parts that do not apply.
  std::string message() const;
};

/// A walk that cannot be read. what() is the first error's message.
class walk_error : public std::runtime_error {
public:
  explicit walk_error(std::vector<input_error> errors);
  const std::vector<input_error>& errors() const { return errors_; }

private:
  std::vector<input_error> errors_;
};

/// Lines or indices for a message: the first few of them, and how many there are.
class short_list {
public:
  /// A number that was the last one already counts once.
  void add(std::size_t number);
  std::size_t count() const { return count_; }

  /// "line 3", "lines 3, 4", "lines 3, 4, 5, 6, 7, ...".
  /// Each number is shown less `less`.
  std::string text(std::string_view one, std::string_view several, std::size_t less = 0) const;

private:
  std::vector<std::size_t> first_;
  std::size_t last_ = 0;
  std::size_t count_ = 0;
};

/// Collects what is said about one table, up to a limit; what is beyond it is counted. What is
/// wrong in the same way with cells of one column is said once, with the other lines.
class input_error_list {
public:
  input_error_list(std::string file, std::size_t limit, const wording& words = {})
      : file_(std::move(file)), limit_(limit), words_(words) {}

  void add(std::size_t line, std::string_view column, std::string text);

  /// Appends the errors to `all`, in the order of their lines.
  void append_to(std::vector<input_error>& all) &&;

private:
  struct entry {
    input_error error;
    short_list further;  ///< lines of which the same is to be said
  };
  entry* like(const input_error& error);

  std::string file_;
  std::size_t limit_;
  wording words_;
  std::size_t beyond_limit_ = 0;
  std::vector<entry> entries_;
};

}  // namespace gait_walk

#endif

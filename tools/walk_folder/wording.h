#ifndef TOOLS_WALK_FOLDER_WORDING_H
#define TOOLS_WALK_FOLDER_WORDING_H

/// \file
/// What messages call the places of a walk's tables, and what they advise.

#include <cstddef>
#include <string>
#include <string_view>

namespace gait_walk {

/// The words of messages. As they stand here, they fit tables in files and the command line. A
/// caller that holds its tables elsewhere has words of its own.
struct wording {
  std::string_view line = "line";
  std::string_view lines = "lines";
  std::string_view on_line = "on line";
  std::size_t first_line = 1;  ///< the number by which messages name the first line
  std::string_view header = "the header line";
  std::string_view recording = "recording.csv";
  std::string_view ignore_column = "--ignore-column";
  std::string_view ignore_all = "--ignore-column all";

  /// What is to be taken from a line's number, which counts from 1.
  std::size_t less() const { return 1 - first_line; }

  /// "again (as on line 3)"
  std::string again(std::size_t line_before) const {
    return "again (as " + std::string(on_line) + " " + std::to_string(line_before - less()) + ")";
  }
};

}  // namespace gait_walk

#endif

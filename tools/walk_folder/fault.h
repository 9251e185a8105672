#ifndef TOOLS_WALK_FOLDER_FAULT_H
#define TOOLS_WALK_FOLDER_FAULT_H

/// \file
/// The faults of one table, and texts from tables made fit to be shown.

#include "walk_folder.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_walk {

/// Collects what is said about one table, up to a limit; what is beyond it is counted.
class fault_list {
public:
  fault_list(std::string file, std::size_t limit) : file_(std::move(file)), limit_(limit) {}

  void add(std::size_t line, std::string_view column, std::string text);

  /// Appends the faults to `all`, in the order of their lines.
  void append_to(std::vector<fault>& all) &&;

private:
  std::string file_;
  std::size_t limit_;
  std::size_t beyond_limit_ = 0;
  std::vector<fault> faults_;
};

/// A text of a table shortened, and without what would act on a terminal.
std::string shown(std::string_view text);

/// A cell for a message, in quotation marks.
std::string in_quotes(std::string_view cell);

/// How a message about a cell begins.
std::string found(std::string_view cell);

}  // namespace gait_walk

#endif

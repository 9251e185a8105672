#ifndef TOOLS_WALK_FOLDER_ROW_INDICES_H
#define TOOLS_WALK_FOLDER_ROW_INDICES_H

/// \file
/// The indices of a cycle list's rows: each from 0 to the last, each once.

#include "read_table.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gait_walk {

/// Where each index of a cycle list stands.
class row_indices {
public:
  void add(int index, std::size_t line) { places_.push_back({index, line}); }
  std::size_t size() const { return places_.size(); }
  bool empty() const { return places_.empty(); }

  /// Reports indices that occur twice and, if no row is unknown, those that are left out. `whose`
  /// says whose indices they are: " of the left foot". Returns whether none is left out.
  bool check(table_report& report, const std::string& whose);

  /// Whether a row has this index; check() must have been called.
  bool contains(int index) const;

  /// The line of each row: in the order of add(), and by index once check() was called and found
  /// nothing.
  std::vector<std::size_t> lines() const;

private:
  struct place {
    int index;
    std::size_t line;
  };
  std::vector<place> places_;
};

}  // namespace gait_walk

#endif

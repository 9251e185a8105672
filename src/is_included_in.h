#ifndef GAIT_SRC_IS_INCLUDED_IN_H
#define GAIT_SRC_IS_INCLUDED_IN_H

/// \file
/// Looking an index up in a list of excluded ones.

#include <algorithm>
#include <list>

/// Whether an index occurs in a list: what takes excluded cycles out of the selection.
class IsIncludedIn {
public:
  /// The list must outlive the predicate.
  explicit IsIncludedIn(const std::list<int>& indices) : indices_(indices) {}

  bool operator()(int index) const {
    return std::find(indices_.begin(), indices_.end(), index) != indices_.end();
  }

private:
  const std::list<int>& indices_;
};

#endif

#ifndef GAIT_SRC_LOOKUP_H
#define GAIT_SRC_LOOKUP_H

/// \file
/// Finding what must be there.

#include <stdexcept>

namespace gait_detail {

/// The value under a key that must be there.
///
/// Throws std::out_of_range with a text of its own: that of `at` differs from one standard library
/// to the next, and callers compare it.
template <class Map>
auto& lookup(Map& map, const typename Map::key_type& key) {
  const auto found = map.find(key);
  if (found == map.end()) {
    throw std::out_of_range("unordered_map::at: key not found");
  }
  return found->second;
}

}  // namespace gait_detail

#endif

#ifndef GAIT_TESTS_LIBRARY_CATALOGUE_KEYS_H
#define GAIT_TESTS_LIBRARY_CATALOGUE_KEYS_H

/// \file
/// Keys of parameters, from the catalogue that is typed by hand.

#include <gait/catalogue.h>

#include <set>
#include <string>
#include <vector>

namespace gait_test {

/// The keys of one of two sides, or of a foot alone, in the order in which they are built.
inline std::vector<std::string> keys_of_side(bool both_feet, const std::string& suffix = "") {
  std::vector<std::string> keys;
#define ROW(tag, result, key, description, unit, decimals, sides, spread, when, source) \
  if (gait_catalogue::is_built(gait_catalogue::when, both_feet)) {                      \
    keys.push_back(key + suffix);                                                       \
  }
#include "../static/catalogue.inc"
#undef ROW
  return keys;
}

/// The keys of the parameters whose sides are not compared.
inline std::set<std::string> keys_without_ratio() {
  std::set<std::string> keys;
#define ROW(tag, result, key, description, unit, decimals, sides, spread, when, source) \
  if (gait_catalogue::sides == gait_catalogue::no_ratio) {                              \
    keys.insert(key);                                                                   \
  }
#include "../static/catalogue.inc"
#undef ROW
  return keys;
}

/// The keys of the parameters that have no relative spread.
inline std::set<std::string> keys_without_variation() {
  std::set<std::string> keys;
#define ROW(tag, result, key, description, unit, decimals, sides, spread, when, source) \
  if (gait_catalogue::spread == gait_catalogue::no_cv) {                                \
    keys.insert(key);                                                                   \
  }
#include "../static/catalogue.inc"
#undef ROW
  return keys;
}

}  // namespace gait_test

#endif

#ifndef TOOLS_WALK_FOLDER_NEAREST_NAME_H
#define TOOLS_WALK_FOLDER_NEAREST_NAME_H

/// \file
/// What a column of another name may be.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace gait_walk {

/// A name without what makes no difference: capitals, blanks, underscores, dashes, points, and a
/// unit in brackets.
std::string bare_name(std::string_view name);

/// The number of letters to insert, delete or replace that makes one name of the other (Levenshtein
/// 1966).
std::size_t edit_distance(std::string_view a, std::string_view b);

/// The one of `known` that is close to `name`, in its letters or by a usual other name, or nothing.
/// They are compared as bare_name() makes them.
std::string_view nearest_name(std::string_view name, const std::vector<std::string_view>& known);

}  // namespace gait_walk

#endif

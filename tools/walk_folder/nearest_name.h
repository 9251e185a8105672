#ifndef TOOLS_WALK_FOLDER_NEAREST_NAME_H
#define TOOLS_WALK_FOLDER_NEAREST_NAME_H

/// \file
/// What a column of another name may be.

#include <string_view>
#include <vector>

namespace gait_walk {

/// The one of `known` that is close to `name`, in its letters or by a usual other name, or nothing.
/// A unit in brackets, capitals, blanks and underscores make no difference.
std::string_view nearest_name(std::string_view name, const std::vector<std::string_view>& known);

}  // namespace gait_walk

#endif

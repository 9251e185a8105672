#ifndef TOOLS_WALK_FOLDER_FIND_WALKS_H
#define TOOLS_WALK_FOLDER_FIND_WALKS_H

/// \file
/// Where walk folders are.

#include <filesystem>
#include <vector>

namespace gait_walk {

/// The file beside a table into which it is written, until it is whole.
std::filesystem::path part_of(const std::filesystem::path& table);

/// Whether a folder holds recording.csv or foot_cycles.csv, or one of them half written, or a file
/// that is likely to be meant as foot_cycles.csv.
bool is_walk_folder(const std::filesystem::path& folder);

/// A folder, if it is a walk folder or cannot be looked into, and those below it, sorted by path.
std::vector<std::filesystem::path> walk_folders_from(const std::filesystem::path& folder);

/// Walk folders a few levels below a folder, for a message about it, sorted by path: not all where
/// there is much to search. Those that cannot be looked into are not among them.
std::vector<std::filesystem::path> some_walk_folders_below(const std::filesystem::path& folder);

}  // namespace gait_walk

#endif

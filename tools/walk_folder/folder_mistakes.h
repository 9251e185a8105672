#ifndef TOOLS_WALK_FOLDER_FOLDER_MISTAKES_H
#define TOOLS_WALK_FOLDER_FOLDER_MISTAKES_H

/// \file
/// What people give in place of a walk folder, and what to do about it.

#include <filesystem>
#include <string>
#include <string_view>

namespace gait_walk {

/// Throws walk_error, which says what to do, for all that is no walk folder.
void require_walk_folder(const std::filesystem::path& folder);

/// What is in a folder under a name that is nearly a table's, and what to do about it, or an empty
/// text.
std::string misnamed_table(const std::filesystem::path& folder, std::string_view table);

/// Why a table that a folder lacks may be missing.
std::string missing_table(const std::filesystem::path& folder, std::string_view table);

/// What an interrupted writing left of a table, or an empty text.
std::string half_written_table(const std::filesystem::path& folder, std::string_view table);

}  // namespace gait_walk

#endif

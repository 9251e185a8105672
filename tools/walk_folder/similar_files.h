#ifndef TOOLS_WALK_FOLDER_SIMILAR_FILES_H
#define TOOLS_WALK_FOLDER_SIMILAR_FILES_H

/// \file
/// Files that are likely to be meant as a table, under another name.

#include <filesystem>
#include <string>
#include <string_view>

namespace gait_walk {

/// The table of which a file has nearly the name: in its letters, capitals or ending; and whether
/// it is a workbook by its ending.
struct similar_name {
  std::string table;  ///< empty where there is none
  bool is_workbook = false;
};

/// Hidden files, copies that editors keep ("exclusions.csv~", ".bak") and about.txt, which people
/// write for themselves, are like no table.
similar_name similar_to(const std::filesystem::path& name);

/// The other files of a folder that have nearly a table's name, one of each kind: the first by
/// name, or an empty name.
struct similar_files {
  std::string text;
  std::string workbook;
};
similar_files files_like(const std::filesystem::path& folder, std::string_view table);

}  // namespace gait_walk

#endif

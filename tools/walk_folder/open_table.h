#ifndef TOOLS_WALK_FOLDER_OPEN_TABLE_H
#define TOOLS_WALK_FOLDER_OPEN_TABLE_H

/// \file
/// Where the text of a table comes from.

#include <filesystem>
#include <istream>
#include <memory>
#include <string>

namespace gait_walk {

/// A table to be read, or the reason why it cannot be.
struct opened_table {
  std::istream* text = nullptr;
  std::unique_ptr<std::istream> owned;
  std::string complaint;
  bool missing = false;
};

/// A table in a file.
opened_table open_file(const std::filesystem::path& file);

/// A table that the caller has opened; null where there is none.
opened_table open_stream(std::istream* stream);

/// Throws walk_error, which says why, when there is no such folder.
void require_folder(const std::filesystem::path& folder);

}  // namespace gait_walk

#endif

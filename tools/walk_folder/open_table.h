#ifndef TOOLS_WALK_FOLDER_OPEN_TABLE_H
#define TOOLS_WALK_FOLDER_OPEN_TABLE_H

/// \file
/// Where the text of a table comes from.

#include <filesystem>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

namespace gait_walk {

/// A table to be read, or the reason why it cannot be.
struct opened_table {
  std::istream* text = nullptr;
  std::unique_ptr<std::istream> owned;
  std::string complaint;
  bool missing = false;
  std::string remark = {};  ///< what is worth a warning, though the table can be read
};

/// A table of a walk folder.
opened_table open_file(const std::filesystem::path& folder, std::string_view table);

/// A table that the caller has opened; null where there is none.
opened_table open_stream(std::istream* stream);

}  // namespace gait_walk

#endif

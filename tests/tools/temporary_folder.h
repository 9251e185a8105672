#ifndef TESTS_TOOLS_TEMPORARY_FOLDER_H
#define TESTS_TOOLS_TEMPORARY_FOLDER_H

/// \file
/// A folder for a test's files.

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tool_tests {

/// A new folder, removed with all that is in it.
class temporary_folder {
public:
  temporary_folder() {
    std::string name = (std::filesystem::temp_directory_path() / "gait_test_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw std::runtime_error("no temporary folder can be made");
    }
    path_ = name;
  }
  ~temporary_folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  temporary_folder(const temporary_folder&) = delete;
  temporary_folder& operator=(const temporary_folder&) = delete;
  temporary_folder(temporary_folder&&) = delete;
  temporary_folder& operator=(temporary_folder&&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

private:
  std::filesystem::path path_;
};

}  // namespace tool_tests

#endif

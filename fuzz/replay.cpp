/// \file
/// Runs a fuzz target on the files of folders, without a fuzzer: for compilers that have none, and
/// for the tests.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The fuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

namespace fs = std::filesystem;

/// The file itself, or the files of a folder, by name.
std::vector<fs::path> files_of(const fs::path& path) {
  if (!fs::is_directory(path)) {
    return {path};
  }
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void run(const fs::path& file) {
  std::ifstream stream;
  stream.exceptions(std::ios::failbit | std::ios::badbit);
  stream.open(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream),
                                std::istreambuf_iterator<char>()};
  // In memory that ends where the input does, as a fuzzer gives it.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int count, char** arguments) {
  try {
    std::size_t inputs = 0;
    for (int i = 1; i < count; ++i) {
      for (const fs::path& file : files_of(arguments[i])) {
        run(file);
        ++inputs;
      }
    }
    std::printf("%zu inputs run\n", inputs);
    return inputs != 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

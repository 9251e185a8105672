#include "walk_folder.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstddef>
#include <istream>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace walk_folder_tests;
using gait_walk::read_walk_folder;

TEST(HostileInput, OfTablesThroughPipesIsReadOneAfterTheOther) {
  const temporary_folder folder;
  const std::vector<std::string> names = {"recording.csv", "foot_cycles.csv", "feet_cycles.csv",
                                          "exclusions.csv"};
  for (const std::string& name : names) {
    ASSERT_EQ(mkfifo((folder.path() / name).c_str(), 0600), 0);
  }
  // More than a pipe holds: the writer cannot run ahead of the reader.
  tables walk;
  walk.foot_cycles += std::string(200000, '\n');
  std::thread writer([&] { write_tables(walk, folder.path()); });
  const gait_walk::walk read = read_walk_folder(folder.path()).walk;
  writer.join();
  EXPECT_EQ(read.left->cycles.size(), 2U);
  EXPECT_EQ(read.exclusions.size(), 1U);
}

/// A text without end, of one character.
class endless : public std::streambuf {
public:
  endless(char character, std::size_t most)
      : text_(std::size_t{1} << 16U, character), left_(most) {}
  std::size_t given() const { return given_; }

protected:
  int_type underflow() override {
    if (given_ >= left_) {
      return traits_type::eof();
    }
    given_ += text_.size();
    setg(text_.data(), text_.data(), text_.data() + text_.size());
    return traits_type::to_int_type(text_.front());
  }

private:
  std::string text_;
  std::size_t left_;
  std::size_t given_ = 0;
};

TEST(HostileInput, OfALineOfAHundredMegabytesIsNotReadToItsEnd) {
  for (const char character : {'a', ',', '"', ' '}) {
    endless buffer(character, 100U << 20U);
    std::istream recording(&buffer);
    gait_walk::walk_tables tables;
    tables.recording = &recording;
    const messages errors = errors_thrown_by([&] { gait_walk::read_walk_tables(tables); });
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors.front(),
              "recording.csv:1: found a row of more than 1048576 bytes, expected a shorter one: is "
              "a quotation mark left open?");
    EXPECT_LT(buffer.given(), 2U << 20U);
  }
}

TEST(HostileInput, OfAHeaderOfManyColumnsIsReportedShortly) {
  tables walk;
  walk.exclusions = exclusions_header + std::string(500000, ',') + "\n";
  const messages errors = errors_of(walk);
  ASSERT_EQ(errors.size(), 21U);
  EXPECT_EQ(errors[0],
            "w/exclusions.csv:1: found no name for column 5, expected one: name it, or leave "
            "it out with --ignore-column all");
  EXPECT_EQ(errors[20], "w/exclusions.csv: and 499980 more");
}

}  // namespace

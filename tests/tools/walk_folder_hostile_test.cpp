#include "analysis.h"
#include "walk_folder.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <istream>
#include <random>
#include <streambuf>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace walk_folder_tests;
using gait_walk::read_walk_folder;
using namespace std::string_view_literals;

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
  EXPECT_EQ(errors[0], "w/exclusions.csv:1: found no name for column 5, expected one");
  EXPECT_EQ(errors[20], "w/exclusions.csv: and 499980 more");
}

/// A few bytes of a text changed, left out, doubled or put in.
std::string spoilt(std::string text, std::mt19937_64& random) {
  constexpr std::string_view bytes = "\0\"\r\n,;\t -+.eE019nai\x80\xC3\xFF\xEF"sv;
  const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
  for (std::size_t changes = 1 + below(4); changes != 0; --changes) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t length = std::min(below(8), text.size() - at);
    switch (below(4)) {
      case 0:
        text.erase(at, length);
        break;
      case 1:
        text.insert(at, text.substr(at, length));
        break;
      case 2:
        text.insert(at, 1, bytes[below(bytes.size())]);
        break;
      default:
        text.replace(at, length, length, bytes[below(bytes.size())]);
        break;
    }
  }
  return text;
}

/// Whether a walk is read, and then whole enough to be analysed. An exception other than walk_error
/// ends the test.
bool is_read(const tables& text) {
  try {
    const gait_walk::walk walk = read(text).walk;
    if (gait_walk::check_analysis(walk, gait_walk::analysed_cycles::feet, "w").empty()) {
      gait_walk::make_analysis(walk);
    }
    return true;
  } catch (const gait_walk::walk_error& error) {
    EXPECT_FALSE(error.errors().empty());
    return false;
  }
}

TEST(HostileInput, GivesAWholeWalkOrErrors) {
  // Every run spoils the same walks, so that a failure can be repeated.
  std::mt19937_64 random(20240607);  // NOLINT(cert-msc32-c,cert-msc51-cpp)
  int whole = 0;
  constexpr int walks = 4000;
  for (int i = 0; i < walks; ++i) {
    tables walk;
    const std::array<std::string*, 4> all = {&walk.recording, &walk.foot_cycles, &walk.feet_cycles,
                                             &walk.exclusions};
    std::string& one = *all.at(random() % all.size());
    one = spoilt(one, random);
    whole += is_read(walk) ? 1 : 0;
  }
  EXPECT_GT(whole, 0);
  EXPECT_LT(whole, walks);
}

}  // namespace

#include "bytes_of_walk.h"
#include "temporary_folder.h"
#include "walk_folder.h"
#include "walk_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;
using gait_walk::analysed_cycles;
using gait_walk::exclusion_list;
using gait_walk::make_walk;
using gait_walk::side;
using gait_walk::walk;
using gait_walk::walk_settings;
using gait_walk::worn_on;
using tool_tests::bytes_of;
using tool_tests::temporary_folder;

/// One of everything that a walk can have.
walk_settings eventful_walk() {
  walk_settings settings;
  settings.strides = 120;
  settings.turns = 3;
  settings.pauses = 2;
  settings.outliers = 3;
  settings.lost = 5;
  return settings;
}

const std::list<gait_foot_cycle>& cycles_of(const walk& walk, side side) {
  return (side == side::left ? walk.left : walk.right).value().cycles;
}

/// How many cycles are excluded for each reason, by the list that they are in.
std::map<std::string, int> excluded(const walk& walk, analysed_cycles cycles, exclusion_list list) {
  std::map<std::string, int> counts;
  for (const gait_walk::exclusion& exclusion : walk.exclusions) {
    if (exclusion.cycles == cycles && exclusion.list == list) {
      ++counts[exclusion.reason];
    }
  }
  return counts;
}

std::string file_text(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

struct run_result {
  int exit_code;
  std::string output;
};

/// Runs a gait-make-walk command line in a folder.
run_result run(const fs::path& folder, const std::string& arguments) {
  const fs::path output = folder / "output.txt";
  const std::string command = "cd '" + folder.string() + "' && '" GAIT_MAKE_WALK "' " + arguments +
                              " >'" + output.string() + "' 2>&1";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, file_text(output)};
}

// The model

TEST(WalkModel, ValuesOfAStrideAgreeWithEachOther) {
  const walk walk = make_walk(eventful_walk());
  for (const side side : {side::left, side::right}) {
    int position = 0;
    for (const gait_foot_cycle& cycle : cycles_of(walk, side)) {
      const int samples = cycle.last_sample - cycle.first_sample + 1;
      EXPECT_EQ(cycle.index, position++);
      EXPECT_NEAR(cycle.hs, cycle.first_sample / 100.0, 1e-9);
      EXPECT_NEAR(cycle.gct, samples / 100.0, 1e-9);
      EXPECT_NEAR(cycle.cadence, 120.0 / cycle.gct, 0.0005 + 1e-9);
      EXPECT_NEAR(cycle.swing + cycle.stance, 100.0, 1e-9);
      EXPECT_NEAR(cycle.ldr + cycle.ffr + cycle.pur, 100.0, 1e-9);
      EXPECT_NEAR(cycle.contact, cycle.stance / 100.0 * cycle.gct * 1000.0, 0.01);
      EXPECT_NEAR(cycle.speed, cycle.slength / cycle.gct, 0.0001);
      EXPECT_LT(cycle.step_time, cycle.gct);
      EXPECT_LT(cycle.step_length, cycle.slength);
    }
  }
}

TEST(WalkModel, HoldsTheStridesAndEventsOfItsSettings) {
  const walk walk = make_walk(eventful_walk());
  EXPECT_EQ(walk.feet.size(), 120U);
  EXPECT_EQ(cycles_of(walk, side::left).size(), 117U);
  EXPECT_EQ(cycles_of(walk, side::right).size(), 118U);
  for (const auto cycles : {analysed_cycles::feet, analysed_cycles::left, analysed_cycles::right}) {
    const int turning = cycles == analysed_cycles::right ? 9 : 12;
    EXPECT_EQ(excluded(walk, cycles, exclusion_list::excluded_1),
              (std::map<std::string, int>{{"turn", turning}, {"outlier", 3}}));
    EXPECT_EQ(excluded(walk, cycles, exclusion_list::excluded_2),
              (std::map<std::string, int>{{"start", 3}, {"stop", 3}}));
  }
}

TEST(WalkModel, MissingTakesOutItsShareOfTheValues) {
  walk_settings settings;
  settings.strides = 1000;
  settings.missing = 0.2;
  const walk walk = make_walk(settings);
  int missing = 0;
  for (const gait_foot_cycle& cycle : cycles_of(walk, side::left)) {
    EXPECT_NE(cycle.gct, gait_missing);
    for (const auto field : gait_test::measured_fields) {
      missing += cycle.*field == gait_missing ? 1 : 0;
    }
  }
  constexpr std::size_t always_measured = 3;  // hs, gct and cadence
  const std::size_t values = 1000 * (gait_test::measured_fields.size() - always_measured);
  EXPECT_NEAR(missing / static_cast<double>(values), 0.2, 0.01);
}

TEST(WalkModel, OfAFootAloneKnowsNothingOfTheOther) {
  walk_settings settings = eventful_walk();
  settings.feet = worn_on::left;
  const walk left = make_walk(settings);
  EXPECT_FALSE(left.right);
  EXPECT_TRUE(left.feet.empty());
  for (const gait_foot_cycle& cycle : cycles_of(left, side::left)) {
    EXPECT_EQ(cycle.step_time, gait_missing);
    EXPECT_EQ(cycle.step_length, gait_missing);
  }
  settings.feet = worn_on::right;
  EXPECT_FALSE(make_walk(settings).left);
}

TEST(WalkModel, OfAnyLengthFromOneStrideOnKeepsACycle) {
  walk_settings settings;
  settings.turns = 0;
  for (settings.strides = 1; settings.strides <= 10; ++settings.strides) {
    const walk walk = make_walk(settings);
    EXPECT_EQ(walk.feet.size(), static_cast<std::size_t>(settings.strides));
    EXPECT_EQ(walk.exclusions.size(), settings.strides < 4 ? 0U : 3U * 2U);
  }
}

TEST(WalkModel, RefusesSettingsOutOfRange) {
  const auto refused = [](auto change) {
    walk_settings settings;
    change(settings);
    EXPECT_THROW(make_walk(settings), std::invalid_argument);
  };
  refused([](walk_settings& s) { s.strides = 0; });
  refused([](walk_settings& s) { s.strides = 1'000'001; });
  refused([](walk_settings& s) { s.strides = 11; });
  refused([](walk_settings& s) { s.turns = -1; });
  refused([](walk_settings& s) { s.turns = 1'000'000; });
  refused([](walk_settings& s) { s.pauses = 4; });
  refused([](walk_settings& s) { s.lost = 5; });
  refused([](walk_settings& s) { s.outliers = 3, s.lost = 2; });
  refused([](walk_settings& s) { s.missing = 1.1; });
  refused([](walk_settings& s) { s.missing = std::nan(""); });
  refused([](walk_settings& s) { s.rate = 49; });
  refused([](walk_settings& s) { s.rate = 1001; });
}

TEST(WalkModel, IsTheSameWithEveryCompilerAndAnotherWithAnotherSeed) {
  walk_settings settings = eventful_walk();
  settings.strides = 10'000;
  settings.missing = 0.01;
  std::uint64_t digest = 0xcbf29ce484222325U;  // FNV-1a
  const std::string bytes = bytes_of(make_walk(settings));
  for (const char c : bytes) {
    digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  }
  EXPECT_EQ(digest, 16086689571517033007U);
  settings.seed = 2;
  EXPECT_TRUE(bytes_of(make_walk(settings)) != bytes);
}

// The program

TEST(MakeWalkProgram, WritesTheWalkOfItsOptions) {
  const temporary_folder folder;
  const run_result result = run(folder.path(),
                                "some/walk --strides 60 --seed 7 --feet both --turns 2 --pauses 1 "
                                "--outliers 1 --lost 2 --missing 0.1 --rate 200");
  ASSERT_EQ(result.exit_code, 0) << result.output;
  EXPECT_EQ(result.output, "");
  const walk_settings settings = {"walk", 7, 60, worn_on::both, 2, 1, 1, 2, 0.1, 200};
  EXPECT_TRUE(bytes_of(gait_walk::read_walk_folder(folder / "some" / "walk").walk) ==
              bytes_of(make_walk(settings)));
}

TEST(MakeWalkProgram, RefusesAFolderThatIsThereUnlessForced) {
  const temporary_folder folder;
  ASSERT_EQ(run(folder.path(), "walk").exit_code, 0);
  const std::string before = file_text(folder / "walk" / "foot_cycles.csv");

  const run_result refused = run(folder.path(), "walk --seed 2");
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_EQ(refused.output, "gait-make-walk: walk is there already (--force writes over it)\n");
  EXPECT_EQ(file_text(folder / "walk" / "foot_cycles.csv"), before);

  EXPECT_EQ(run(folder.path(), "walk --seed 2 --force").exit_code, 0);
  EXPECT_NE(file_text(folder / "walk" / "foot_cycles.csv"), before);
}

TEST(MakeWalkProgram, AnswersBadUsageWithCodeTwoAndWritesNothing) {
  const temporary_folder folder;
  for (const std::string arguments : {"", "walk --strides many", "walk --strides 0",
                                      "walk --feet three", "walk --no-such-option"}) {
    EXPECT_EQ(run(folder.path(), arguments).exit_code, 2) << arguments;
    EXPECT_FALSE(fs::exists(folder / "walk")) << arguments;
  }
  EXPECT_EQ(run(folder.path(), "walk --turns 40").output,
            "gait-make-walk: that many turns and pauses need at least 246 strides\n");
  EXPECT_EQ(run(folder.path(), "--help").exit_code, 0);
}

// The examples

TEST(ExampleWalks, AreMadeAgainToTheBitByTheCommandInTheirReadme) {
  for (const char* name : {"two_feet_turn", "one_foot_short"}) {
    const temporary_folder folder;
    const fs::path original = fs::path(GAIT_EXAMPLE_WALKS) / name;
    const std::string readme = file_text(original / "README.md");
    EXPECT_NE(readme.find("modelled, not measured"), std::string::npos) << name;
    const std::string prompt = "    gait-make-walk ";
    const auto begin = readme.find(prompt);
    ASSERT_NE(begin, std::string::npos) << name;
    const auto arguments = begin + prompt.size();
    const run_result result =
        run(folder.path(), readme.substr(arguments, readme.find('\n', begin) - arguments));
    ASSERT_EQ(result.exit_code, 0) << result.output;
    for (const char* table :
         {"recording.csv", "foot_cycles.csv", "feet_cycles.csv", "exclusions.csv"}) {
      EXPECT_EQ(file_text(folder / name / table), file_text(original / table)) << name << table;
    }
  }
}

}  // namespace

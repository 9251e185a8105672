#include "walk_folder.h"

#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <ios>
#include <iterator>
#include <limits>
#include <locale>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace walk_folder_tests;
using gait_walk::analysed_cycles;
using gait_walk::exclusion_list;
using gait_walk::read_walk_folder;
using gait_walk::walk;
using gait_walk::write_walk_folder;

/// The measured fields in the order of their columns.
constexpr std::array<double gait_foot_cycle::*, 27> measured_fields = {
    &gait_foot_cycle::hs,          &gait_foot_cycle::gct,
    &gait_foot_cycle::swing,       &gait_foot_cycle::stance,
    &gait_foot_cycle::contact,     &gait_foot_cycle::cadence,
    &gait_foot_cycle::ldr,         &gait_foot_cycle::ffr,
    &gait_foot_cycle::pur,         &gait_foot_cycle::slength,
    &gait_foot_cycle::swidth,      &gait_foot_cycle::path_length,
    &gait_foot_cycle::speed,       &gait_foot_cycle::ta,
    &gait_foot_cycle::peakswing,   &gait_foot_cycle::top,
    &gait_foot_cycle::hsp,         &gait_foot_cycle::step_time,
    &gait_foot_cycle::step_length, &gait_foot_cycle::strike_eversion,
    &gait_foot_cycle::max_hc,      &gait_foot_cycle::min_tc,
    &gait_foot_cycle::max_tc1,     &gait_foot_cycle::max_tc2,
    &gait_foot_cycle::mtc_speed,   &gait_foot_cycle::impact_vert,
    &gait_foot_cycle::impact_hor};

// ---- What is read ---------------------------------------------------------------------------------------------

TEST(ReadWalk, FillsEveryRecordOfTheWalk) {
  const walk walk = read({}).walk;
  EXPECT_EQ(walk.name, "w");
  ASSERT_TRUE(walk.left && walk.right);
  EXPECT_EQ(walk.left->sampling_rate, 100);
  EXPECT_EQ(walk.right->signal_2_samples, 1000U);
  EXPECT_EQ(walk.left->cycles.size(), 2U);
  const gait_foot_cycle& cycle = walk.right->cycles.back();
  EXPECT_EQ(cycle.index, 1);
  EXPECT_EQ(cycle.first_sample, 150);
  EXPECT_EQ(cycle.last_sample, 249);
  EXPECT_EQ(cycle.hs, 2.0);
  EXPECT_EQ(cycle.gct, 1.25);
  EXPECT_EQ(cycle.impact_hor, gait_missing);
  ASSERT_EQ(walk.feet.size(), 2U);
  EXPECT_EQ(walk.feet[1].ds, 26.5);
  EXPECT_EQ(walk.feet[1].left_index, 1);
  ASSERT_EQ(walk.exclusions.size(), 1U);
  EXPECT_EQ(walk.exclusions[0].cycles, analysed_cycles::feet);
  EXPECT_EQ(walk.exclusions[0].list, exclusion_list::excluded_1);
  EXPECT_EQ(walk.exclusions[0].index, 1);
  EXPECT_EQ(walk.exclusions[0].reason, "turn");
}

TEST(ReadWalk, FillsEveryColumnIntoTheFieldOfItsName) {
  std::string cells = "left,0,1,2";
  for (int value = 4; value < 31; ++value) {
    cells += "," + std::to_string(value);
  }
  tables text = left_foot_only();
  text.foot_cycles = foot_cycles_header + "\n" + cells + "\n";
  const gait_foot_cycle cycle = read(text).walk.left->cycles.front();
  for (std::size_t i = 0; i < measured_fields.size(); ++i) {
    EXPECT_EQ(cycle.*measured_fields[i], static_cast<double>(i + 4)) << i;
  }
}

TEST(ReadWalk, TakesColumnsInAnyOrder) {
  tables text;
  text.feet_cycles = "left_index,ds,right_index,index,gct\n,25.5,0,0,1.25\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.feet[0].gct, 1.25);
  EXPECT_EQ(walk.feet[0].ds, 25.5);
  EXPECT_EQ(walk.feet[0].right_index, 0);
  EXPECT_FALSE(walk.feet[0].left_index);
}

TEST(ReadWalk, TakesRowsInAnyOrder) {
  tables text;
  text.recording = recording_header + "\nright,100,1000,1000\nleft,100,1000,1000\n";
  text.foot_cycles =
      foot_cycles_header + "\nright,1,150,249,2" + only_gct + "left,0,0,99,1" + only_gct + "right,0,50,149,1" + only_gct;
  text.feet_cycles = feet_cycles_header + "\n1,1.5,,1,\n0,1.25,,0,0\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.right->cycles.front().first_sample, 50);
  EXPECT_EQ(walk.right->cycles.back().first_sample, 150);
  EXPECT_EQ(walk.feet[0].gct, 1.25);
  EXPECT_EQ(walk.feet[1].gct, 1.5);
}

TEST(ReadWalk, TakesEveryWordForNotMeasured) {
  for (const char* word : {"", "NA", "na", "NaN", "nan", "NAN", "n/a", "N/A", " NaN "}) {
    tables text;
    change(text.foot_cycles, ",1.25,", std::string(",") + word + ",");
    change(text.feet_cycles, "0,1.25,25.5,0,0", std::string("0,1.25,") + word + ",0," + word);
    const auto [walk, warnings] = read(text);
    EXPECT_EQ(walk.left->cycles.front().gct, gait_missing) << word;
    EXPECT_EQ(walk.feet[0].ds, gait_missing) << word;
    EXPECT_FALSE(walk.feet[0].left_index) << word;
    EXPECT_TRUE(warnings.empty()) << word;
  }
}

TEST(ReadWalk, TakesNumbersAsProgramsWriteThem) {
  const std::vector<std::pair<std::string, double>> numbers = {{"1", 1.0},      {"+1.5", 1.5},     {"-0.25", -0.25},
                                                               {"1e3", 1000.0}, {"1.5E-2", 0.015}, {".5", 0.5},
                                                               {"5.", 5.0},     {"\"2.5\"", 2.5}};
  for (const auto& [cell, value] : numbers) {
    tables text;
    change(text.foot_cycles, ",1.25,", "," + cell + ",");
    EXPECT_EQ(read(text).walk.left->cycles.front().gct, value) << cell;
  }
}

TEST(ReadWalk, TakesAByteOrderMarkAndWindowsLineBreaksSilently) {
  tables text;
  for (std::string* table : {&text.recording, &text.foot_cycles, &text.feet_cycles, &text.exclusions}) {
    *table = "\xEF\xBB\xBF" + replaced(*table, "\n", "\r\n");
  }
  EXPECT_TRUE(warnings_of(text).empty());
  EXPECT_EQ(read(text).walk.exclusions[0].reason, "turn");
}

TEST(ReadWalk, TakesTheLargestNumberOfSamples) {
  tables text;
  change(text.recording, "left,100,1000", "left,100,18446744073709551615");
  EXPECT_EQ(read(text).walk.left->signal_1_samples, std::numeric_limits<std::uint64_t>::max());
}

TEST(ReadWalk, TakesAWalkOfOneFoot) {
  const walk walk = read(left_foot_only()).walk;
  EXPECT_TRUE(walk.left);
  EXPECT_FALSE(walk.right);
  EXPECT_TRUE(walk.feet.empty());
  EXPECT_TRUE(walk.exclusions.empty());
}

TEST(ReadWalk, NeedsNoTableOfBothFeetForAWalkOfOneFoot) {
  const temporary_folder folder;
  write_tables(left_foot_only(), folder.path());
  fs::remove(folder.path() / "feet_cycles.csv");
  EXPECT_TRUE(read_walk_folder(folder.path()).walk.feet.empty());
}

/// Numbers as in 1.234,5.
struct decimal_comma : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(ReadAndWriteWalk, DoNotDependOnTheLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new decimal_comma));
  const temporary_folder folder;
  write_walk_folder(read({}).walk, folder.path());
  const walk walk = read_walk_folder(folder.path()).walk;
  std::locale::global(before);
  EXPECT_EQ(walk.feet[0].gct, 1.25);
  EXPECT_EQ(text_of(folder.path() / "feet_cycles.csv"), tables().feet_cycles);
}

TEST(ReadWalk, NamesTheWalkAfterItsFolder) {
  const temporary_folder folder;
  write_tables({}, folder.path() / "morning walk");
  EXPECT_EQ(read_walk_folder(folder.path() / "morning walk").walk.name, "morning walk");
  EXPECT_EQ(read_walk_folder((folder.path() / "morning walk").string() + "/").walk.name, "morning walk");
  EXPECT_EQ(read_walk_folder(folder.path() / "morning walk" / ".").walk.name, "morning walk");
}

// ---- What is written ------------------------------------------------------------------------------------------

TEST(WriteWalk, WritesTheTablesThatWereRead) {
  const temporary_folder folder;
  tables text;
  text.foot_cycles = replaced(replaced(text.foot_cycles, "1.0,", "1,"), "2.0,", "2,");
  write_walk_folder(read(text).walk, folder.path() / "new" / "walk");
  EXPECT_EQ(text_of(folder.path() / "new" / "walk" / "recording.csv"), text.recording);
  EXPECT_EQ(text_of(folder.path() / "new" / "walk" / "foot_cycles.csv"), text.foot_cycles);
  EXPECT_EQ(text_of(folder.path() / "new" / "walk" / "feet_cycles.csv"), text.feet_cycles);
  EXPECT_EQ(text_of(folder.path() / "new" / "walk" / "exclusions.csv"), text.exclusions);
}

walk written_and_read(const walk& walk) {
  const temporary_folder folder;
  write_walk_folder(walk, folder.path());
  return read_walk_folder(folder.path()).walk;
}

TEST(WriteWalk, KeepsEveryBitOfANumber) {
  walk walk = read({}).walk;
  const std::vector<double> numbers = {
      0.1,   -0.0, 1.0 / 3.0, DBL_MAX, DBL_MIN, DBL_TRUE_MIN, -DBL_MAX, 1e22, 123456789.123456789, std::nextafter(-1.0, 0.0),
      5e-324};
  for (const double number : numbers) {
    walk.feet[0].ds = number;
    walk.left->cycles.front().ta = number;
    const auto again = written_and_read(walk);
    EXPECT_EQ(again.feet[0].ds, number);
    EXPECT_EQ(std::signbit(again.feet[0].ds), std::signbit(number));
    EXPECT_EQ(again.left->cycles.front().ta, number);
  }
}

TEST(WriteWalk, KeepsEveryReason) {
  walk walk = read({}).walk;
  for (const char* reason : {"", "turn", "turn, left", "\"turn\"", "two\nlines", "two\r\nlines", "\r", " blanks ", "\tb", "\"",
                             "Drehung \303\274ber links", "#", "n/a", ";"}) {
    walk.exclusions[0].reason = reason;
    EXPECT_EQ(written_and_read(walk).exclusions[0].reason, reason);
  }
}

TEST(WriteWalk, KeepsMissingValuesAndLinks) {
  walk walk = read({}).walk;
  walk.feet[1].ds = gait_missing;
  walk.feet[1].left_index.reset();
  const auto again = written_and_read(walk);
  EXPECT_EQ(again.feet[1].ds, gait_missing);
  EXPECT_FALSE(again.feet[1].left_index);
  EXPECT_EQ(again.feet[1].right_index, 1);
}

TEST(WriteWalk, WritesAWalkOfOneFoot) {
  const auto again = written_and_read(read(left_foot_only()).walk);
  EXPECT_TRUE(again.left);
  EXPECT_FALSE(again.right);
}

/// Whether a walk is refused, and nothing of it written.
bool is_refused(const walk& walk) {
  const temporary_folder folder;
  try {
    write_walk_folder(walk, folder.path());
    return false;
  } catch (const std::invalid_argument&) {
    return fs::is_empty(folder.path());
  }
}

TEST(WriteWalk, RefusesNumbersThatNoTableCanHold) {
  walk walk = read({}).walk;
  walk.feet[1].ds = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(is_refused(walk));
  walk.feet[1].ds = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(is_refused(walk));
}

TEST(WriteWalk, RefusesReasonsThatNoTableCanHold) {
  walk walk = read({}).walk;
  for (const std::string& reason : {std::string("\xFF"), std::string("\xC3"), std::string(1, '\0')}) {
    walk.exclusions[0].reason = reason;
    EXPECT_TRUE(is_refused(walk));
  }
}

TEST(WriteWalk, LeavesTheOldTablesWhenTheNewOnesFail) {
  const temporary_folder folder;
  walk walk = read({}).walk;
  write_walk_folder(walk, folder.path());
  walk.left->signal_1_samples = 5;
  walk.exclusions[0].reason = "\xFF";
  EXPECT_THROW(write_walk_folder(walk, folder.path()), std::invalid_argument);
  EXPECT_EQ(text_of(folder.path() / "recording.csv"), tables().recording);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 4);
}

TEST(WriteWalk, SaysThatTheFolderCannotBeMade) {
  const temporary_folder folder;
  write_text(folder.path() / "file", "");
  EXPECT_THROW(write_walk_folder(read({}).walk, folder.path() / "file"), std::exception);
}

TEST(WriteWalk, SaysThatTheDiskIsFull) {
  const temporary_folder folder;
  fs::create_symlink("/dev/full", folder.path() / "foot_cycles.csv.part");
  EXPECT_THROW(write_walk_folder(read({}).walk, folder.path()), std::ios_base::failure);
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

// ---- Measured walks -------------------------------------------------------------------------------------------

bool same_bits(double a, double b) { return a == b && std::signbit(a) == std::signbit(b); }

bool same_cycle(const gait_foot_cycle& a, const gait_foot_cycle& b) {
  return a.index == b.index && a.first_sample == b.first_sample && a.last_sample == b.last_sample &&
         std::all_of(measured_fields.begin(), measured_fields.end(), [&](auto field) { return same_bits(a.*field, b.*field); });
}

bool same_foot(const gait_walk::foot& a, const gait_walk::foot& b) {
  return a.sampling_rate == b.sampling_rate && a.signal_1_samples == b.signal_1_samples &&
         a.signal_2_samples == b.signal_2_samples &&
         std::equal(a.cycles.begin(), a.cycles.end(), b.cycles.begin(), b.cycles.end(), same_cycle);
}

bool same_feet_cycle(const gait_walk::feet_cycle& a, const gait_walk::feet_cycle& b) {
  return same_bits(a.gct, b.gct) && same_bits(a.ds, b.ds) && a.right_index == b.right_index && a.left_index == b.left_index;
}

bool same_exclusion(const gait_walk::exclusion& a, const gait_walk::exclusion& b) {
  return a.cycles == b.cycles && a.list == b.list && a.index == b.index && a.reason == b.reason;
}

void expect_same(const walk& a, const walk& b) {
  EXPECT_TRUE(same_foot(a.left.value(), b.left.value()));
  EXPECT_TRUE(same_foot(a.right.value(), b.right.value()));
  EXPECT_TRUE(std::equal(a.feet.begin(), a.feet.end(), b.feet.begin(), b.feet.end(), same_feet_cycle));
  EXPECT_TRUE(std::equal(a.exclusions.begin(), a.exclusions.end(), b.exclusions.begin(), b.exclusions.end(), same_exclusion));
}

TEST(RealWalks, AreReadWithoutFaultAndWrittenBack) {
  const char* const folder = std::getenv("GAIT_REAL_WALKS");
  if (folder == nullptr) {
    GTEST_SKIP() << "GAIT_REAL_WALKS does not name a folder of measured walks";
  }
  const std::vector<std::string> walks = {"control4",          "healthy_2x20m",           "hunt13", "ms_001_daily_optical",
                                          "ms_001_daily_worn", "ms_001_straight_optical", "park9"};
  for (const std::string& name : walks) {
    SCOPED_TRACE(name);
    const auto [walk, warnings] = read_walk_folder(fs::path(folder) / name);
    EXPECT_EQ(walk.name, name);
    EXPECT_EQ(messages_of(warnings), messages{});
    EXPECT_EQ(messages_of(gait_walk::check_analysis(walk, std::nullopt, name)), messages{});
    expect_same(walk, written_and_read(walk));
  }
}

}  // namespace

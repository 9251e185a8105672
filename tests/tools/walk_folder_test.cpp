#include "walk_folder.h"
#include "analysis.h"

#include "bytes_of_walk.h"
#include "minus_one.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// ---- What is read

TEST(ReadWalk, SkipsRowsOfEmptyCellsAsSpreadsheetsLeaveThem) {
  tables text;
  text.recording += ",,,\n,\n";
  text.foot_cycles += std::string(foot_cycles_columns - 1, ',') + "\n";
  text.feet_cycles += "\"\",,,,\n";
  text.exclusions += ",, ,\n";
  EXPECT_EQ(tool_tests::bytes_of(read(text).walk), tool_tests::bytes_of(read({}).walk));
}

TEST(ReadWalk, CountsRowsOfEmptyCellsAsLines) {
  tables text;
  change(text.feet_cycles, "0,1.25", ",,,,\n0,x");
  EXPECT_EQ(
      errors_of(text),
      (messages{
          "w/feet_cycles.csv:3: column gct: found \"x\", expected a number or an empty cell"}));
}

TEST(ReadWalk, FillsEveryRecordOfTheWalk) {
  const walk walk = read({}).walk;
  EXPECT_EQ(walk.name, "w");
  ASSERT_TRUE(walk.left && walk.right);
  EXPECT_EQ(walk.left->sampling_rate, 100);
  EXPECT_EQ(walk.right->signal_2_samples, 1000U);
  EXPECT_EQ(recorded_samples(*walk.right), 1000U);
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
  for (std::size_t value = 4; value < foot_cycles_columns; ++value) {
    cells += "," + std::to_string(value);
  }
  tables text = left_foot_only();
  text.foot_cycles = foot_cycles_header + "\n" + cells + "\n";
  const gait_foot_cycle cycle = read(text).walk.left->cycles.front();
  const auto& measured_fields = gait_test::measured_fields;
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
  text.foot_cycles = foot_cycles_header + "\nright,1,150,249,2" + only_gct + "left,0,0,99,1" +
                     only_gct + "right,0,50,149,1" + only_gct;
  text.feet_cycles = feet_cycles_header + "\n1,1.5,,1,\n0,1.25,,0,0\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.right->cycles.front().first_sample, 50);
  EXPECT_EQ(walk.right->cycles.back().first_sample, 150);
  EXPECT_EQ(walk.feet[0].gct, 1.25);
  EXPECT_EQ(walk.feet[1].gct, 1.5);
}

TEST(ReadWalk, TakesEveryWordForNotMeasured) {
  for (const char* word : {"", "NA", "na", "NaN", "nan", "NAN", "n/a", "N/A", " NaN ", "NULL",
                           "null", "None", "NONE", "#N/A", "#n/a"}) {
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
  const std::vector<std::pair<std::string, double>> numbers = {
      {"1", 1.0},  {"+1.5", 1.5}, {"-0.25", -0.25}, {"1e3", 1000.0}, {"1.5E-2", 0.015},
      {".5", 0.5}, {"5.", 5.0},   {"\"2.5\"", 2.5}, {"0e9", 0.0}};
  for (const auto& [cell, value] : numbers) {
    tables text;
    change(text.foot_cycles, ",1.25,", "," + cell + ",");
    EXPECT_EQ(read(text).walk.left->cycles.front().gct, value) << cell;
  }
}

TEST(ReadWalk, TakesWholeNumbersWithAFractionOfZero) {
  for (const char* cell : {"100", "100.0", "100.", "+100.00"}) {
    tables text = left_foot_only();
    change(text.recording, "left,100,1000",
           std::string("left,") + cell + ",18446744073709551615.0");
    change(text.foot_cycles, "left,1,100,", std::string("left,1.0,") + cell + ",");
    const walk walk = read(text).walk;
    EXPECT_EQ(walk.left->sampling_rate, 100) << cell;
    EXPECT_EQ(walk.left->signal_1_samples, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(walk.left->cycles.back().first_sample, 100) << cell;
  }
}

TEST(ReadWalk, TakesWordsAndColumnNamesInCapitalsAndFeetByTheirFirstLetter) {
  tables text;
  text.recording = "FOOT,Sampling_Rate\nLeft,100\nR,100\n";
  text.foot_cycles = "Foot,First_sample,LAST_SAMPLE,Gct\nL,0,99,1\nRIGHT,50,149,2\nr,150,249,3\n";
  text.feet_cycles = "Right_Index,LEFT_INDEX\n0,0\n";
  text.exclusions = "Cycles,List,Index\nFeet,Excluded_1,7\nL,excluded_2,0\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.left->cycles.size(), 1U);
  EXPECT_EQ(walk.right->cycles.size(), 2U);
  EXPECT_EQ(walk.right->cycles.back().gct, 3.0);
  EXPECT_EQ(walk.exclusions[0].cycles, analysed_cycles::feet);
  EXPECT_EQ(walk.exclusions[1].cycles, analysed_cycles::left);
}

TEST(ReadWalk, LeavesUnmeasuredWhatHasNoColumn) {
  tables text;
  text.recording = "foot,sampling_rate\nleft,100\nright,100\n";
  text.foot_cycles = "foot,index,first_sample,last_sample,gct\nleft,0,0,99,1\nright,0,50,149,2\n";
  text.feet_cycles = "right_index,left_index\n0,\n";
  text.exclusions = "cycles,list,index\nfeet,excluded_2,5\n";
  const walk walk = read(text).walk;
  EXPECT_FALSE(walk.left->signal_1_samples || walk.left->signal_2_samples);
  EXPECT_FALSE(recorded_samples(*walk.left));
  EXPECT_EQ(walk.left->cycles.front().hs, gait_missing);
  EXPECT_EQ(walk.left->cycles.front().gct, 1.0);
  EXPECT_EQ(walk.feet[0].ds, gait_missing);
  EXPECT_EQ(walk.exclusions[0].reason, "");
}

TEST(ReadWalk, TakesTheLengthOfOneSignalForThatOfTheRecording) {
  tables text;
  text.recording = recording_header + "\nleft,100,,1000\nright,100,2000,\n";
  const walk walk = read(text).walk;
  EXPECT_FALSE(walk.left->signal_1_samples);
  EXPECT_EQ(recorded_samples(*walk.left), 1000U);
  EXPECT_EQ(recorded_samples(*walk.right), 2000U);
}

TEST(ReadWalk, CountsTheRowsOfEachFootWhereThereAreNoIndices) {
  tables text;
  text.foot_cycles = "foot,first_sample,last_sample\nright,50,149\nleft,0,99\nright,150,249\n";
  text.feet_cycles = "gct,right_index,left_index\n7,1,\n8,0,0\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.right->cycles.front().index, 0);
  EXPECT_EQ(walk.right->cycles.back().index, 1);
  EXPECT_EQ(walk.right->cycles.back().first_sample, 150);
  EXPECT_EQ(walk.left->cycles.front().index, 0);
  EXPECT_EQ(walk.feet[0].gct, 7.0);
  EXPECT_EQ(walk.feet[1].right_index, 0);
}

TEST(ReadWalk, KeepsTheLinesOfCyclesByIndex) {
  tables text;
  text.foot_cycles = foot_cycles_header + "\nright,1,150,249,2" + only_gct + "\nleft,0,0,99,1" +
                     only_gct + "right,0,50,149,1" + only_gct;
  text.feet_cycles = feet_cycles_header + "\n1,1.5,,1,\n0,1.25,,0,0\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.left->lines, (std::vector<std::size_t>{4}));
  EXPECT_EQ(walk.right->lines, (std::vector<std::size_t>{5, 2}));
  EXPECT_EQ(walk.feet_lines, (std::vector<std::size_t>{3, 2}));
}

TEST(ReadWalk, NeedsNoExclusions) {
  const temporary_folder folder;
  write_tables({}, folder.path());
  fs::remove(folder.path() / "exclusions.csv");
  EXPECT_TRUE(read_walk_folder(folder.path()).walk.exclusions.empty());
}

TEST(ReadWalk, LeavesOutIgnoredColumnsInAnyTable) {
  tables text;
  text.foot_cycles = "foot,first_sample,last_sample,force (N),GCT\nleft,0,99,x,y\nright,0,99,x,y\n";
  text.feet_cycles = "right_index,Force (n),left_index,\n0,z,0,note\n";
  gait_walk::read_options options;
  options.ignored_columns = {"Force (N)", "gct", "all"};
  const walk walk = read(text, options).walk;
  EXPECT_EQ(walk.left->cycles.front().gct, gait_missing);
  EXPECT_EQ(walk.feet[0].left_index, 0);
}

// ---- Minus one

const double kept = gait_walk::measured_minus_one;

TEST(MinusOne, ThatWasMeasuredIsTheNextNumberTowardsZero) {
  EXPECT_EQ(kept, std::nextafter(-1.0, 0.0));
}

tables with_angles_of_minus_one() {
  tables text;
  text.foot_cycles =
      "foot,first_sample,last_sample,gct,ta,top,hsp,strike_eversion,step_length\n"
      "left,0,99,1,-1,-1.0,-1e0,-1,\nright,50,149,1,,2,3,4,0.5\n";
  text.feet_cycles = "right_index,left_index\n0,0\n";
  text.exclusions = exclusions_header + "\n";
  return text;
}

TEST(MinusOne, IsAMeasurementInColumnsWithASign) {
  const auto [walk, warnings] = read(with_angles_of_minus_one());
  EXPECT_TRUE(warnings.empty());
  const gait_foot_cycle& cycle = walk.left->cycles.front();
  for (const double value : {cycle.ta, cycle.top, cycle.hsp, cycle.strike_eversion}) {
    EXPECT_EQ(value, kept);
  }
  EXPECT_EQ(cycle.step_length, gait_missing);
  EXPECT_EQ(walk.right->cycles.front().ta, gait_missing);
}

TEST(MinusOne, InAColumnWithoutASignMakesItTheWordForMissingInAllOfTheTable) {
  tables text = with_angles_of_minus_one();
  change(text.foot_cycles, "4,0.5", "4,-1");
  const auto [walk, warnings] = read(text);
  const gait_foot_cycle& cycle = walk.left->cycles.front();
  for (const double value : {cycle.ta, cycle.top, cycle.hsp, cycle.strike_eversion}) {
    EXPECT_EQ(value, gait_missing);
  }
  EXPECT_EQ(walk.right->cycles.front().step_length, gait_missing);
  EXPECT_EQ(
      messages_of(warnings),
      (messages{"w/foot_cycles.csv: found -1 in 5 measured cells (lines 2, 3), expected empty "
                "cells: it counts as not measured in all of the table, because step_length "
                "cannot be -1"}));
}

TEST(MinusOne, InOneTableSaysNothingAboutAnother) {
  tables text = with_angles_of_minus_one();
  text.feet_cycles = "right_index,left_index,ds\n0,0,-1\n";
  const walk walk = read(text).walk;
  EXPECT_EQ(walk.left->cycles.front().ta, kept);
  EXPECT_EQ(walk.feet[0].ds, gait_missing);
}

// ---- One foot of two

TEST(ReadWalk, NeedsNoTableOfBothFeetForTheAnalysisOfOne) {
  const temporary_folder folder;
  write_tables({}, folder.path());
  gait_walk::read_options options;
  options.analysed = analysed_cycles::right;
  write_text(folder.path() / "feet_cycles.csv", feet_cycles_header + "\n");
  EXPECT_EQ(read_walk_folder(folder.path(), options).walk.right->cycles.size(), 2U);
  fs::remove(folder.path() / "feet_cycles.csv");
  const walk walk = read_walk_folder(folder.path(), options).walk;
  EXPECT_EQ(walk.right->cycles.size(), 2U);
  EXPECT_TRUE(walk.feet.empty());
}

// ---- about.csv

TEST(ReadWalk, TakesWhatIsSaidAboutTheWalkInItsOrder) {
  tables text;
  text.about = "Value,Name\n2024-05-01,date\nds from stance,derived\n,note\nhs,derived\n";
  const walk walk = read(text).walk;
  ASSERT_EQ(walk.about.size(), 4U);
  EXPECT_EQ(walk.about[0].name, "date");
  EXPECT_EQ(walk.about[0].value, "2024-05-01");
  EXPECT_EQ(walk.about[1].name, "derived");
  EXPECT_EQ(walk.about[2].value, "");
  EXPECT_EQ(walk.about[3].value, "hs");
}

// ---- Which folders are walks

TEST(Expand, LeavesFoldersAsTheyAreUnlessItIsRecursive) {
  EXPECT_EQ(gait_walk::expand({"b", "a", "b"}, false), (std::vector<fs::path>{"b", "a", "b"}));
}

TEST(Expand, FindsEveryWalkFolderBelowSortedByPath) {
  const temporary_folder folder;
  const fs::path top = folder.path() / "top";
  write_tables({}, top / "b" / "2");
  write_tables({}, top / "b" / "10");
  write_tables({}, top / "b");
  write_tables({}, top / "a" / "deep" / "down");
  fs::create_directories(top / "c" / "nothing");
  fs::create_directories(top / "half");
  write_text(top / "half" / "foot_cycles.csv.part", "");
  fs::create_directories(top / "misnamed");
  write_text(top / "misnamed" / "Foot_Cycles.csv", "");
  fs::create_directory_symlink(top, top / "a" / "circle");
  EXPECT_EQ(gait_walk::expand({top}, true),
            (std::vector<fs::path>{top / "a" / "deep" / "down", top / "b", top / "b" / "10",
                                   top / "b" / "2", top / "half", top / "misnamed"}));
}

TEST(Expand, KeepsAFolderWithoutWalksAndTheOrderOfTheFolders) {
  const temporary_folder folder;
  write_tables({}, folder.path() / "z");
  write_tables({}, folder.path() / "y");
  EXPECT_EQ(
      gait_walk::expand({folder.path() / "z", folder.path() / "none", folder.path() / "y"}, true),
      (std::vector<fs::path>{folder.path() / "z", folder.path() / "none", folder.path() / "y"}));
}

TEST(ReadWalk, TakesAByteOrderMarkAndWindowsLineBreaksSilently) {
  tables text;
  for (std::string* table :
       {&text.recording, &text.foot_cycles, &text.feet_cycles, &text.exclusions}) {
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
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new decimal_comma));
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
  EXPECT_EQ(read_walk_folder((folder.path() / "morning walk").string() + "/").walk.name,
            "morning walk");
  EXPECT_EQ(read_walk_folder(folder.path() / "morning walk" / ".").walk.name, "morning walk");
}

// ---- What is written

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
  const std::vector<double> numbers = {0.1,
                                       -0.0,
                                       1.0 / 3.0,
                                       DBL_MAX,
                                       DBL_MIN,
                                       DBL_TRUE_MIN,
                                       -DBL_MAX,
                                       1e22,
                                       123456789.123456789,
                                       std::nextafter(-1.0, -2.0),
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
  for (const char* reason :
       {"", "turn", "turn, left", "\"turn\"", "two\nlines", "two\r\nlines", "\r", " blanks ", "\tb",
        "\"", "Drehung \303\274ber links", "#", "n/a", ";"}) {
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

TEST(WriteWalk, WritesAMeasuredMinusOneThatIsReadAsTheSame) {
  walk walk = read({}).walk;
  walk.left->cycles.front().ta = kept;
  const temporary_folder folder;
  write_walk_folder(walk, folder.path());
  EXPECT_NE(text_of(folder.path() / "foot_cycles.csv").find(",-1,"), std::string::npos);
  const auto again = read_walk_folder(folder.path());
  EXPECT_EQ(again.walk.left->cycles.front().ta, kept);
  EXPECT_EQ(again.walk.left->cycles.back().ta, gait_missing);
  EXPECT_TRUE(again.warnings.empty());
}

TEST(WriteWalk, KeepsUnknownLengthsOfTheRecording) {
  walk walk = read({}).walk;
  walk.left->signal_1_samples.reset();
  walk.right->signal_2_samples = 0;
  const auto again = written_and_read(walk);
  EXPECT_FALSE(again.left->signal_1_samples);
  EXPECT_EQ(again.left->signal_2_samples, 1000U);
  EXPECT_EQ(again.right->signal_2_samples, 0U);
}

TEST(WriteWalk, KeepsWhatIsSaidAboutTheWalk) {
  walk walk = read({}).walk;
  walk.about = {{"note", "two\nlines, \"quoted\""}, {"note", ""}};
  const auto again = written_and_read(walk);
  ASSERT_EQ(again.about.size(), 2U);
  EXPECT_EQ(again.about[0].value, walk.about[0].value);
}

TEST(WriteWalk, RemovesWhatWasSaidAboutAnotherWalk) {
  const temporary_folder folder;
  tables text;
  text.about = about_header + "\nsubject,another\n";
  write_tables(text, folder.path());
  write_text(folder / "about.csv.part", "of an interrupted write");
  write_walk_folder(read({}).walk, folder.path());
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 4);
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
  walk.feet[1].ds = kept;
  EXPECT_TRUE(is_refused(walk));
}

TEST(WriteWalk, RefusesReasonsThatNoTableCanHold) {
  walk walk = read({}).walk;
  for (const std::string& reason :
       {std::string("\xFF"), std::string("\xC3"), std::string(1, '\0')}) {
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

TEST(WriteWalk, LeavesTheOldWalkWhenTheFirstTableCannotBePutInItsPlace) {
  const temporary_folder folder;
  write_tables({}, folder.path());
  fs::remove(folder / "recording.csv");
  fs::create_directories(folder / "recording.csv");
  walk walk = read({}).walk;
  walk.feet[0].gct = 2.0;
  EXPECT_THROW(write_walk_folder(walk, folder.path()), fs::filesystem_error);
  EXPECT_EQ(text_of(folder / "feet_cycles.csv"), tables().feet_cycles);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 4);
}

TEST(WriteWalk, LeavesAHalfWrittenWalkAsSuchWhenALaterTableCannotBePutInItsPlace) {
  const temporary_folder folder;
  fs::create_directories(folder / "feet_cycles.csv");
  EXPECT_THROW(write_walk_folder(read({}).walk, folder.path()), fs::filesystem_error);
  fs::remove(folder / "feet_cycles.csv");
  const messages errors = errors_thrown_by([&] { read_walk_folder(folder.path()); });
  ASSERT_EQ(errors.size(), 2U);
  for (const std::string& error : errors) {
    EXPECT_NE(error.find("left by an interrupted write"), std::string::npos) << error;
  }
  write_text(folder / "about.csv.part", "");
  write_walk_folder(read({}).walk, folder.path());
  EXPECT_EQ(messages_of(read_walk_folder(folder.path()).warnings), messages{});
}

TEST(WriteWalk, SaysThatTheFolderCannotBeMade) {
  const temporary_folder folder;
  write_text(folder.path() / "file", "");
  EXPECT_THROW(write_walk_folder(read({}).walk, folder.path() / "file"), fs::filesystem_error);
}

TEST(WriteWalk, SaysThatTheDiskIsFull) {
  const temporary_folder folder;
  fs::create_symlink("/dev/full", folder.path() / "foot_cycles.csv.part");
  EXPECT_THROW(write_walk_folder(read({}).walk, folder.path()), std::ios_base::failure);
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

// ---- Measured walks

TEST(RealWalks, AreReadWithoutFaultAndWrittenBack) {
  const char* const folder = std::getenv("GAIT_REAL_WALKS");
  if (folder == nullptr) {
    GTEST_SKIP() << "GAIT_REAL_WALKS does not name a folder of measured walks";
  }
  std::size_t walks = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_directory()) {
      continue;
    }
    const std::string name = entry.path().filename().string();
    SCOPED_TRACE(name);
    const auto [walk, warnings] = read_walk_folder(entry.path());
    EXPECT_EQ(walk.name, name);
    EXPECT_EQ(messages_of(warnings), messages{});
    EXPECT_EQ(messages_of(gait_walk::check_analysis(walk, gait_walk::analysed_cycles::feet, name)),
              messages{});
    EXPECT_TRUE(tool_tests::bytes_of(walk) == tool_tests::bytes_of(written_and_read(walk)));
    ++walks;
  }
  EXPECT_GT(walks, 0U) << folder;
}

}  // namespace

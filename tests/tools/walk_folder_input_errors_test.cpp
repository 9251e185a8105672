#include "walk_folder.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace walk_folder_tests;
using gait_walk::input_error;
using gait_walk::read_walk_folder;
using gait_walk::walk_error;

// ---- Messages

TEST(InputError, SaysWhereItIs) {
  EXPECT_EQ((input_error{"w/a.csv", 3, "gct", "found x"}.message()),
            "w/a.csv:3: column gct: found x");
  EXPECT_EQ((input_error{"w/a.csv", 3, "", "found x"}.message()), "w/a.csv:3: found x");
  EXPECT_EQ((input_error{"w/a.csv", 0, "gct", "found x"}.message()),
            "w/a.csv: column gct: found x");
  EXPECT_EQ((input_error{"w/a.csv", 0, "", "found x"}.message()), "w/a.csv: found x");
}

TEST(WalkError, SaysItsFirstError) {
  const walk_error error({{"a", 1, "", "x"}, {"b", 2, "", "y"}});
  EXPECT_STREQ(error.what(), "a:1: x");
  EXPECT_EQ(error.errors().size(), 2U);
}

TEST(InputErrors, OfAFileAreCountedBeyondTheLimit) {
  tables walk;
  walk.exclusions = exclusions_header + "\nx\nx\n";
  for (int i = 0; i < 5; ++i) {
    walk.exclusions += "feet,excluded_1,x,\n";
  }
  EXPECT_EQ(errors_of(walk, {3}),
            (messages{"w/exclusions.csv:2: found 1 cell, expected 4",
                      "w/exclusions.csv:3: found 1 cell, expected 4",
                      "w/exclusions.csv:4: column index: found \"x\", expected a whole number",
                      "w/exclusions.csv: and 4 more"}));
}

TEST(InputErrors, NameTheLineOnWhichARowBegins) {
  tables walk;
  walk.exclusions = exclusions_header + "\n\n\"feet\",excluded_1,1,\"a\nb\"\nfeet,excluded_1,x,\n";
  EXPECT_EQ(errors_of(walk),
            (messages{"w/exclusions.csv:5: column index: found \"x\", expected a whole number"}));
}

TEST(InputErrors, ShowLongCellsShortenedAndControlCharactersEscaped) {
  const auto error_of_cell = [](const std::string& cell) {
    tables walk;
    change(walk.exclusions, "feet,excluded_1,1", "feet,excluded_1," + cell);
    return errors_of(walk);
  };
  const auto shown_as = [](const std::string& cell) {
    return messages{"w/exclusions.csv:2: column index: found \"" + cell +
                    "\", expected a whole number"};
  };
  EXPECT_EQ(error_of_cell(std::string(40, 'x')), shown_as(std::string(40, 'x')));
  EXPECT_EQ(error_of_cell(std::string(41, 'x')), shown_as(std::string(40, 'x') + "..."));
  EXPECT_EQ(error_of_cell(std::string(39, 'x') + "\xC3\xA4"),
            shown_as(std::string(39, 'x') + "..."));
  EXPECT_EQ(error_of_cell("\"a\r\n\tb\"\"\x1B[31m\x7F\""),
            shown_as("a\\r\\n\\tb\\\"\\x1b[31m\\x7f"));
  EXPECT_EQ(error_of_cell("\xC2\x9B"
                          "m"),
            shown_as("\\x9bm"));
  EXPECT_EQ(error_of_cell("\xC2\x80\xC2\x9F"), shown_as("\\x80\\x9f"))
      << "the first and the last of these control characters";
  EXPECT_EQ(error_of_cell("\xC2\xA0\xC3\xA4\xE2\x82\xAC"),
            shown_as("\xC2\xA0\xC3\xA4\xE2\x82\xAC"));
}

// ---- Folders and files

/// What is wrong with a folder, with its path written as "w".
messages errors_of_folder(const fs::path& folder) {
  messages errors = errors_thrown_by([&] { read_walk_folder(folder); });
  for (std::string& error : errors) {
    error = replaced(error, folder.string(), "w");
  }
  return errors;
}

class Folder
    : public testing::Test {  // NOLINT(readability-identifier-naming): the name of the tests
protected:
  Folder() { write_tables({}, folder.path()); }
  const temporary_folder folder;
};

TEST_F(Folder, ThatIsMissing) {
  EXPECT_EQ(errors_of_folder(folder.path() / "none"),
            (messages{"w: found no such folder, expected a walk folder"}));
}

TEST_F(Folder, ThatIsAFile) {
  EXPECT_EQ(errors_of_folder(folder.path() / "recording.csv"),
            (messages{"w: found a file, expected a walk folder"}));
}

TEST_F(Folder, BelowAFile) {
  const messages errors = errors_of_folder(folder.path() / "recording.csv" / "x");
  EXPECT_EQ(errors, (messages{"w: found no such folder, expected a walk folder"}));
}

TEST_F(Folder, WithoutOneTable) {
  for (const std::string table :
       {"recording.csv", "foot_cycles.csv", "feet_cycles.csv", "exclusions.csv"}) {
    fs::rename(folder.path() / table, folder.path() / "elsewhere");
    EXPECT_EQ(errors_of_folder(folder.path()),
              (messages{"w/" + table + ": found no such file, expected a table"}));
    fs::rename(folder.path() / "elsewhere", folder.path() / table);
  }
}

TEST_F(Folder, WithAFolderInPlaceOfATable) {
  fs::remove(folder.path() / "exclusions.csv");
  fs::create_directory(folder.path() / "exclusions.csv");
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/exclusions.csv: found a folder, expected a table"}));
}

TEST_F(Folder, WithALinkInACircle) {
  fs::remove(folder.path() / "exclusions.csv");
  fs::create_symlink(folder.path() / "exclusions.csv", folder.path() / "exclusions.csv");
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/exclusions.csv: found a file that cannot be read (Too many levels of "
                      "symbolic links), expected a table"}));
}

TEST_F(Folder, WithATableThatCannotBeOpened) {
  fs::permissions(folder.path() / "exclusions.csv", fs::perms::none);
  const messages errors = errors_of_folder(folder.path());
  if (errors.empty()) {
    GTEST_SKIP() << "this user may read everything";
  }
  EXPECT_EQ(errors, (messages{"w/exclusions.csv: found a file that cannot be read (Permission "
                              "denied), expected a table"}));
}

TEST_F(Folder, WithATableThatBreaksOff) {
  if (!fs::exists("/proc/self/mem")) {
    GTEST_SKIP() << "there is no /proc/self/mem, which opens but cannot be read from its beginning";
  }
  fs::remove(folder.path() / "exclusions.csv");
  fs::create_symlink("/proc/self/mem", folder.path() / "exclusions.csv");
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/exclusions.csv: found a file that cannot be read, expected a table"}));
}

TEST(Streams, ThatAreMissing) {
  EXPECT_EQ(errors_thrown_by([] { gait_walk::read_walk_tables({}); }),
            (messages{"recording.csv: found no such table, expected one",
                      "foot_cycles.csv: found no such table, expected one",
                      "feet_cycles.csv: found no such table, expected one",
                      "exclusions.csv: found no such table, expected one"}));
}

// ---- Texts that are no tables

/// What is wrong with a walk with this text as its exclusions, without the file's name.
messages errors_of_exclusions(const std::string& text) {
  tables walk;
  walk.exclusions = text;
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, "w/exclusions.csv", "");
  }
  return errors;
}

TEST(Text, ThatIsEmpty) {
  const messages empty = {
      ": found an empty file, expected the header line cycles,list,index,reason"};
  EXPECT_EQ(errors_of_exclusions(""), empty);
  EXPECT_EQ(errors_of_exclusions("\n\n  \n"), empty);
  EXPECT_EQ(errors_of_exclusions("\xEF\xBB\xBF"), empty);
}

TEST(Text, ThatBreaksOffKeepsTheErrorsBefore) {
  EXPECT_EQ(
      errors_of_exclusions(exclusions_header + "\nfeet,excluded_1,x,\nfeet,excluded_1,1,\"turn\n"),
      (messages{":2: column index: found \"x\", expected a whole number",
                ":3: found a quotation mark that is never closed, expected another one"}));
}

TEST(Text, ThatBreaksOffLacksNothingElse) {
  tables walk;
  change(walk.foot_cycles, "left,1,", "left\xFF,1,");
  EXPECT_EQ(errors_of(walk), (messages{"w/foot_cycles.csv:3: found a byte that is not UTF-8, "
                                       "expected UTF-8: save the table as UTF-8"}));
}

// ---- Header lines

TEST(Columns, ThatAreMissingDoNotHideWrongCells) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,reason\nfoot,excluded_1,turn\n"),
            (messages{":1: column index: found no such column, expected it in the header line",
                      ":2: column cycles: found \"foot\", expected one of: feet, left, right"}));
}

TEST(Columns, WithoutWhichNoRowCanBePlacedHideNothingElse) {
  tables walk;
  walk.foot_cycles = replaced(walk.foot_cycles, "foot,index,", "foot,indx,");
  change(walk.foot_cycles, ",1.25", ",x");
  EXPECT_EQ(
      errors_of(walk),
      (messages{
          "w/foot_cycles.csv:1: column indx: found an unknown column, expected index",
          "w/foot_cycles.csv:1: column index: found no such column, expected it in the header line",
          "w/foot_cycles.csv:2: column gct: found \"x\", expected a number or an empty cell"}));
}

TEST(Columns, ThatAreUnknown) {
  EXPECT_EQ(
      errors_of_exclusions("cycles,list,index,reason,date\nfeet,excluded_1,1,turn,today\n"),
      (messages{
          ":1: column date: found an unknown column, expected only cycles,list,index,reason"}));
}

TEST(Columns, ThatAreNearlyKnown) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"Index", "index"}, {"idx", "index"}, {"resaon", "reason"}, {"cycle", "cycles"}};
  for (const auto& [name, nearest] : names) {
    std::string header = exclusions_header;
    header.append(",").append(name);
    std::string error = ":1: column ";
    error.append(name).append(": found an unknown column, expected ").append(nearest);
    EXPECT_EQ(errors_of_exclusions(header), messages{error});
  }
}

TEST(Columns, ThatAreThereTwice) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,index,reason,list\nfeet,excluded_1,1,turn,x\n"),
            (messages{":1: column list: found the column twice, expected it once"}));
}

TEST(Columns, WithoutAName) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,index,reason,\nfeet,excluded_1,1,turn,\n"),
            (messages{":1: found no name for column 5, expected one"}));
}

TEST(Columns, OfWhichNoneIsKnown) {
  EXPECT_EQ(errors_of_exclusions("feet,excluded_1,1,turn\nfeet,excluded_1,2,turn\n"),
            (messages{":1: found \"feet\", expected the header line cycles,list,index,reason"}));
}

// ---- Cells

TEST(Row, WithTooFewOrTooManyCells) {
  EXPECT_EQ(errors_of_exclusions(exclusions_header +
                                 "\nfeet\nfeet,excluded_1,1\nfeet,excluded_1,1,turn,left\n"),
            (messages{":2: found 1 cell, expected 4", ":3: found 3 cells, expected 4",
                      ":4: found 5 cells, expected 4: a reason with a comma in it needs quotation "
                      "marks around it"}));
}

/// What is wrong with the first two-feet cycle with another text in it, without their beginning.
messages errors_of_feet_cycle(const std::string& old, const std::string& text,
                              const std::string& beginning) {
  tables walk;
  change(walk.feet_cycles, old, text);
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, "w/feet_cycles.csv:2: " + beginning, "");
  }
  return errors;
}

messages errors_of_feet_cycle(const std::string& row) {
  return errors_of_feet_cycle("0,1.25,25.5,0,0", row, "");
}

TEST(Row, OfTooManyCellsAsksAboutDecimalCommas) {
  const std::string asks = ": are there decimal commas in place of decimal points?";
  EXPECT_EQ(errors_of_feet_cycle("0,1,25,25.5,0,0"),
            (messages{"found 6 cells, expected 5" + asks}));
  EXPECT_EQ(errors_of_feet_cycle("0,-1,25,25,5,0,0"),
            (messages{"found 7 cells, expected 5" + asks}));
  EXPECT_EQ(errors_of_feet_cycle("0,,25,5,0,0"), (messages{"found 6 cells, expected 5" + asks}));
}

TEST(Row, OfTooManyCellsAsksNothingWhereDecimalCommasDoNotExplainThem) {
  EXPECT_EQ(errors_of_feet_cycle("0,1.25,25.5,0,0,0"), (messages{"found 6 cells, expected 5"}));
  EXPECT_EQ(errors_of_feet_cycle("0,1,25,25.5,0,0,0"), (messages{"found 7 cells, expected 5"}));
  EXPECT_EQ(errors_of_feet_cycle("0,1,-25,25.5,0,0"), (messages{"found 6 cells, expected 5"}));
  EXPECT_EQ(errors_of_feet_cycle("0,1,,25.5,0,0"), (messages{"found 6 cells, expected 5"}));
}

TEST(Row, WithTooFewCellsLacksNothingElse) {
  tables walk;
  change(walk.foot_cycles, "right,0,50,149,1.0" + only_gct, "right,0\n");
  EXPECT_EQ(errors_of(walk), (messages{"w/foot_cycles.csv:4: found 2 cells, expected " +
                                       std::to_string(foot_cycles_columns)}));
}

messages errors_of_measured(const std::string& cell) {
  return errors_of_feet_cycle("25.5", cell, "column ds: ");
}

TEST(Measured, ThatIsNoNumber) {
  for (const std::string cell : {"abc",
                                 "1.5s",
                                 "1.2.3",
                                 "0x10",
                                 "--1",
                                 "+-1",
                                 "+",
                                 "-",
                                 ".",
                                 "e5",
                                 "1e",
                                 "nan(1)",
                                 "-nan",
                                 "1 2",
                                 "null",
                                 "none",
                                 "#N/A",
                                 "25.5%",
                                 "9/8",
                                 "\xE2\x88\x92"
                                 "1.5",
                                 "\xD9\xA2\xD9\xA5"}) {
    EXPECT_EQ(errors_of_measured(cell),
              (messages{"found \"" + cell + "\", expected a number or an empty cell"}));
  }
}

TEST(Measured, WithADecimalComma) {
  EXPECT_EQ(errors_of_measured("\"1,05\""),
            (messages{"found \"1,05\" with a decimal comma, expected a decimal point"}));
  EXPECT_EQ(errors_of_measured("\"-,5\""),
            (messages{"found \"-,5\" with a decimal comma, expected a decimal point"}));
  EXPECT_EQ(errors_of_measured("\"1,2,3\""),
            (messages{"found \"1,2,3\", expected a number or an empty cell"}));
}

TEST(Measured, ThatIsInfinite) {
  for (const std::string cell : {"inf", "-inf", "Infinity", "+INF"}) {
    EXPECT_EQ(errors_of_measured(cell),
              (messages{"found \"" + cell + "\", expected a finite number or an empty cell"}));
  }
}

TEST(Measured, ThatNoDoubleHolds) {
  for (const std::string cell : {"1e999", "-1e999", "1e-999"}) {
    EXPECT_EQ(
        errors_of_measured(cell),
        (messages{
            "found \"" + cell +
            "\", expected a number that is neither too large nor too small to compute with"}));
  }
}

messages errors_of_link(const std::string& cell) {
  tables walk;
  change(walk.feet_cycles, "25.5,0,", "25.5," + cell + ",");
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, "w/feet_cycles.csv:2: column right_index: ", "");
  }
  return errors;
}

TEST(WholeNumber, WithDecimals) {
  for (const std::string cell : {"0.5", "1.0", "1e0", "1."}) {
    EXPECT_EQ(errors_of_link(cell),
              (messages{"found \"" + cell + "\", expected a whole number without decimals"}));
  }
  EXPECT_EQ(errors_of_link("\"1,0\""),
            (messages{"found \"1,0\", expected a whole number without a comma"}));
}

TEST(WholeNumber, OutOfRange) {
  for (const std::string cell :
       {"-1", "2147483648", "-99999999999999999999", "99999999999999999999"}) {
    EXPECT_EQ(errors_of_link(cell),
              (messages{"found \"" + cell + "\", expected a whole number from 0 to 2147483647"}));
  }
}

TEST(WholeNumber, ThatIsNone) {
  for (const std::string cell : {"x", "1x", "inf", "0x1", "-"}) {
    EXPECT_EQ(errors_of_link(cell), (messages{"found \"" + cell + "\", expected a whole number"}));
  }
}

// ---- recording.csv

messages errors_of_recording(const std::string& rows) {
  tables walk;
  walk.recording = recording_header + "\n" + rows;
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, "w/recording.csv", "");
  }
  return errors;
}

TEST(Recording, WithoutRows) {
  EXPECT_EQ(errors_of_recording(""), (messages{": found no row, expected one for each foot"}));
}

TEST(Recording, WithASamplingRateThatIsNone) {
  EXPECT_EQ(errors_of_recording("left,0,1000,1000\nright,,1000,1000\n"),
            (messages{":2: column sampling_rate: found \"0\", expected a whole number from 1 to "
                      "2147483647",
                      ":3: column sampling_rate: found an empty cell, expected a whole number"}));
}

TEST(Recording, WithTwoSamplingRates) {
  EXPECT_EQ(errors_of_recording("left,100,1000,1000\nright,200,1000,1000\n"),
            (messages{":3: column sampling_rate: found \"200\", expected the sampling rate of the "
                      "other foot, \"100\""}));
}

TEST(Recording, WithNumbersOfSamplesThatAreNone) {
  EXPECT_EQ(
      errors_of_recording("left,100,-5,18446744073709551616\nright,100,1.5,\n"),
      (messages{
          ":2: column signal_1_samples: found \"-5\", expected a whole number from 0 to "
          "18446744073709551615",
          ":2: column signal_2_samples: found \"18446744073709551616\", expected a whole number "
          "from 0 to "
          "18446744073709551615",
          ":3: column signal_1_samples: found \"1.5\", expected a whole number without decimals"}));
}

TEST(Recording, ThatNamesAFootTwice) {
  EXPECT_EQ(
      errors_of_recording("left,100,1000,1000\nright,100,1000,1000\nleft,200,1000,1000\n"),
      (messages{":4: column foot: found \"left\" again (as on line 2), expected each foot once"}));
}

TEST(Recording, ThatLacksAFootOfTheCycles) {
  tables walk;
  walk.recording = recording_header + "\nleft,100,1000,1000\n";
  EXPECT_EQ(errors_of(walk), (messages{"w/foot_cycles.csv:4: column foot: found \"right\" (rows: "
                                       "2), expected only feet that recording.csv names",
                                       "w/feet_cycles.csv:2: found a cycle of both feet, expected "
                                       "no row: recording.csv names one foot only"}));
}

// ---- foot_cycles.csv

messages errors_of_foot_cycles(const std::vector<std::string>& rows) {
  tables walk;
  walk.foot_cycles = foot_cycles_header + "\n";
  for (const std::string& row : rows) {
    walk.foot_cycles += row + only_gct;
  }
  walk.feet_cycles = feet_cycles_header + "\n0,1.25,25,,\n";
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, "w/foot_cycles.csv", "");
  }
  return errors;
}

TEST(FootCycles, WithoutAnyOfAFoot) {
  EXPECT_EQ(errors_of_foot_cycles({"left,0,0,99,1"}),
            (messages{": found no cycle of the right foot, expected at least one: recording.csv "
                      "names that foot"}));
  EXPECT_EQ(
      errors_of_foot_cycles({}),
      (messages{
          ": found no cycle of the left foot, expected at least one: recording.csv names that foot",
          ": found no cycle of the right foot, expected at least one: recording.csv names that "
          "foot"}));
}

TEST(FootCycles, OfAnUnknownFootMayBeThoseThatAreMissing) {
  EXPECT_EQ(errors_of_foot_cycles({"left,0,0,99,1", "rigth,0,0,99,1"}),
            (messages{":3: column foot: found \"rigth\", expected one of: left, right"}));
}

TEST(FootCycles, WithAnIndexTwice) {
  EXPECT_EQ(errors_of_foot_cycles({"left,0,0,99,1", "left,1,0,99,1", "left,0,0,99,1",
                                   "left,0,0,99,1", "right,0,0,99,1"}),
            (messages{":4: column index: found \"0\" again (as on line 2), expected each index of "
                      "the left foot once",
                      ":5: column index: found \"0\" again (as on line 2), expected each index of "
                      "the left foot once"}));
}

TEST(FootCycles, WithGapsBetweenIndices) {
  EXPECT_EQ(
      errors_of_foot_cycles({"left,7,0,99,1", "left,0,0,99,1", "left,3,0,99,1", "right,1,0,99,1"}),
      (messages{":2: column index: found \"7\" as the next index of the left foot, expected \"4\": "
                "indices run from 0 "
                "without gaps",
                ":4: column index: found \"3\" as the next index of the left foot, expected \"1\": "
                "indices run from 0 "
                "without gaps",
                ":5: column index: found \"1\" as the next index of the right foot, expected "
                "\"0\": indices run from 0 "
                "without gaps"}));
}

TEST(FootCycles, WithTheHighestIndexTwice) {
  EXPECT_EQ(errors_of_foot_cycles({"left,0,0,99,1", "left,2147483647,0,9,1",
                                   "left,2147483647,0,9,1", "right,0,0,99,1"}),
            (messages{":3: column index: found \"2147483647\" as the next index of the left foot, "
                      "expected \"1\": indices run "
                      "from 0 without gaps",
                      ":4: column index: found \"2147483647\" again (as on line 3), expected each "
                      "index of the left foot once"}));
}

TEST(FootCycles, WithABadIndexMayFillTheGap) {
  EXPECT_EQ(
      errors_of_foot_cycles({"left,0,0,99,1", "left,x,0,99,1", "left,2,0,99,1", "right,0,0,99,1"}),
      (messages{":3: column index: found \"x\", expected a whole number"}));
}

TEST(FootCycles, WithSamplesInTheWrongOrder) {
  EXPECT_EQ(
      errors_of_foot_cycles({"left,0,100,99,1", "right,0,100,100,1"}),
      (messages{
          ":2: column last_sample: found \"99\", expected at least the first sample, \"100\""}));
}

TEST(FootCycles, BeyondALimitAreCounted) {
  tables walk;
  walk.foot_cycles += "left,2,200,299,2.5" + only_gct;
  walk.foot_cycles += "left,x,200,299,2.5" + only_gct;
  EXPECT_EQ(errors_of(walk, {20, 2}),
            (messages{"w/foot_cycles.csv: found 3 strides of the left foot, expected at most 2, "
                      "the limit that was set",
                      "w/foot_cycles.csv:7: column index: found \"x\", expected a whole number"}));
}

TEST(FeetCycles, BeyondALimitAreCounted) {
  tables walk;
  walk.feet_cycles += "2,1.5,26.5,,\n";
  EXPECT_EQ(errors_of(walk, {20, 2}), (messages{"w/feet_cycles.csv: found 3 cycles of both feet, "
                                                "expected at most 2, the limit that was set"}));
}

TEST(Strides, UpToALimitAreRead) {
  const gait_walk::walk walk = read(tables(), {20, 2}).walk;
  EXPECT_EQ(walk.left->cycles.size(), 2U);
  EXPECT_EQ(walk.feet.size(), 2U);
}

// ---- feet_cycles.csv

messages errors_of_feet_cycles(const std::string& rows) {
  tables walk;
  walk.feet_cycles = feet_cycles_header + "\n" + rows;
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, "w/feet_cycles.csv", "");
  }
  return errors;
}

TEST(FeetCycles, WithoutRowsInAWalkOfTwoFeet) {
  EXPECT_EQ(errors_of_feet_cycles(""),
            (messages{": found no row, expected at least one cycle of both feet"}));
}

TEST(FeetCycles, WithAnIndexTwiceOrLeftOut) {
  EXPECT_EQ(
      errors_of_feet_cycles("0,1,,,\n0,1,,,\n2,1,,,\n"),
      (messages{":3: column index: found \"0\" again (as on line 2), expected each index once",
                ":4: column index: found \"2\" as the next index, expected \"1\": indices run from "
                "0 without gaps"}));
}

TEST(FeetCycles, WithLinksToCyclesThatAreNotThere) {
  EXPECT_EQ(
      errors_of_feet_cycles("0,1,,2,1\n1,1,,1,7\n"),
      (messages{
          ":2: column right_index: found \"2\", expected the index of a cycle of the right foot",
          ":3: column left_index: found \"7\", expected the index of a cycle of the left foot"}));
}

TEST(FeetCycles, WithLinksToCyclesThatCouldNotBeRead) {
  tables walk;
  change(walk.foot_cycles, "right,1,", "right,x,");
  EXPECT_EQ(errors_of(walk),
            (messages{"w/foot_cycles.csv:5: column index: found \"x\", expected a whole number"}));
}

// ---- exclusions.csv

TEST(Exclusions, WithUnknownNames) {
  EXPECT_EQ(
      errors_of_exclusions(exclusions_header + "\nboth,excluded_1,1,\nfeet,excluded_3,1,\n,,1,\n"),
      (messages{":2: column cycles: found \"both\", expected one of: feet, left, right",
                ":3: column list: found \"excluded_3\", expected one of: excluded_1, "
                "excluded_1_fallback, excluded_2, "
                "excluded_2_fallback",
                ":4: column cycles: found an empty cell, expected one of: feet, left, right",
                ":4: column list: found an empty cell, expected one of: excluded_1, "
                "excluded_1_fallback, excluded_2, "
                "excluded_2_fallback"}));
}

TEST(Exclusions, WithIndicesThatAreNone) {
  EXPECT_EQ(errors_of_exclusions(
                exclusions_header +
                "\nfeet,excluded_1,,\nfeet,excluded_1,1.5,\nfeet,excluded_1,2147483648,\n"),
            (messages{":2: column index: found an empty cell, expected a whole number",
                      ":3: column index: found \"1.5\", expected a whole number without decimals",
                      ":4: column index: found \"2147483648\", expected a whole number from "
                      "-2147483648 to 2147483647"}));
}

// ---- Warnings

TEST(Warning, AboutAValueThatCountsAsNotMeasured) {
  tables walk;
  change(walk.foot_cycles, ",1.25,", ",-1,");
  change(walk.feet_cycles, "0,1.25,25.5", "0,1.25,-1.000");
  EXPECT_EQ(warnings_of(walk), (messages{"w/foot_cycles.csv:2: column gct: found \"-1\", which "
                                         "counts as not measured, expected an empty cell",
                                         "w/feet_cycles.csv:2: column ds: found \"-1.000\", which "
                                         "counts as not measured, expected an empty cell"}));
}

TEST(Warning, AboutSamplesBeyondTheRecording) {
  tables walk;
  change(walk.recording, "left,100,1000,1000", "left,100,1000,199");
  EXPECT_EQ(
      warnings_of(walk),
      (messages{
          "w/foot_cycles.csv:3: column last_sample: found \"199\", expected less than the number "
          "of samples that recording.csv gives, \"199\""}));
}

TEST(Warning, AboutAFootCycleThatIsLinkedTwice) {
  tables walk;
  change(walk.feet_cycles, "1,1.5,26.5,1,1", "1,1.5,26.5,1,0");
  EXPECT_EQ(
      warnings_of(walk),
      (messages{
          "w/feet_cycles.csv:3: column left_index: found \"0\" again (as on line 2), expected each "
          "cycle of the left foot once"}));
}

TEST(Warning, AboutExcludedIndicesOutOfRange) {
  tables walk;
  walk.exclusions =
      exclusions_header + "\nfeet,excluded_1,2,\nleft,excluded_1,-3,\nright,excluded_1,1,\n";
  EXPECT_EQ(warnings_of(walk), (messages{"w/exclusions.csv:2: column index: found \"2\", expected "
                                         "an index from 0 to 1: it is counted, but excludes "
                                         "no cycle",
                                         "w/exclusions.csv:3: column index: found \"-3\", expected "
                                         "an index from 0 to 1: it is counted, but excludes "
                                         "no cycle"}));
}

TEST(Warning, AboutExclusionsFromCyclesThatTheWalkLacks) {
  tables walk = left_foot_only();
  walk.exclusions =
      exclusions_header + "\nright,excluded_1,0,\nfeet,excluded_1,0,\nleft,excluded_1,0,\n";
  EXPECT_EQ(warnings_of(walk),
            (messages{"w/exclusions.csv:2: column cycles: found \"right\", expected cycles that "
                      "the walk has: nothing is excluded",
                      "w/exclusions.csv:3: column cycles: found \"feet\", expected cycles that the "
                      "walk has: nothing is excluded"}));
}

TEST(Warnings, OfAFileAreCountedBeyondTheLimit) {
  tables walk;
  walk.exclusions =
      exclusions_header + "\nfeet,excluded_1,7,\nfeet,excluded_1,8,\nfeet,excluded_1,9,\n";
  EXPECT_EQ(messages_of(read(walk, {1}).warnings),
            (messages{"w/exclusions.csv:2: column index: found \"7\", expected an index from 0 to "
                      "1: it is counted, but excludes no "
                      "cycle",
                      "w/exclusions.csv: and 2 more"}));
}

}  // namespace

#include "walk_folder.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace walk_folder_tests;
using gait_walk::input_error;
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
  walk.exclusions = exclusions_header + "\nboth,a,x,\nboth,a,1,\nboth,a,x,\n";
  EXPECT_EQ(
      errors_of(walk, {2}),
      (messages{"w/exclusions.csv:2: column cycles: found \"both\", expected one of: feet, left, "
                "right (and in 2 more rows: lines 3, 4)",
                "w/exclusions.csv:2: column list: found \"a\", expected one of: excluded_1, "
                "excluded_1_fallback, excluded_2, excluded_2_fallback (and in 2 more rows: lines "
                "3, 4)",
                "w/exclusions.csv: and 2 more"}));
}

/// The errors of a walk whose exclusions have these indices.
messages errors_of_excluded_indices(const std::vector<std::string>& indices) {
  tables walk;
  walk.exclusions = exclusions_header + "\n";
  for (const std::string& index : indices) {
    walk.exclusions += "feet,excluded_1," + index + ",\n";
  }
  return errors_after("w/exclusions.csv", walk);
}

TEST(InputErrors, OfOneKindInAColumnAreSaidOnceWithTheFirstLines) {
  const std::string first = ":2: column index: found \"a\", expected a whole number";
  EXPECT_EQ(errors_of_excluded_indices({"a", "1", "b"}),
            (messages{first + " (and in 1 more row: line 4)"}));
  EXPECT_EQ(errors_of_excluded_indices({"a", "b", "c", "d", "e", "f"}),
            (messages{first + " (and in 5 more rows: lines 3, 4, 5, 6, 7)"}));
  EXPECT_EQ(errors_of_excluded_indices({"a", "b", "c", "d", "e", "f", "g"}),
            (messages{first + " (and in 6 more rows: lines 3, 4, 5, 6, 7, ...)"}));
}

TEST(InputErrors, OfTwoKindsOrColumnsAreSaidEach) {
  EXPECT_EQ(errors_of_excluded_indices({"a", "1.5"}),
            (messages{":2: column index: found \"a\", expected a whole number",
                      ":3: column index: found \"1.5\", expected a whole number without "
                      "decimals"}));
  tables walk;
  walk.feet_cycles = feet_cycles_header + "\n0,1.25,x,0,0\n1,x,26.5,1,1\n";
  EXPECT_EQ(errors_of(walk).size(), 2U);
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

// ---- Texts that are no tables

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

TEST(Text, ThatIsAWorkbook) {
  for (const std::string& workbook : workbooks) {
    EXPECT_EQ(errors_of_exclusions(workbook),
              (messages{": found an Excel workbook, expected a CSV table: save the sheet as CSV "
                        "(UTF-8)"}));
  }
}

// ---- Header lines

TEST(Columns, ThatAreMissingDoNotHideWrongCells) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,reason\nfoot,excluded_1,turn\n"),
            (messages{":1: column index: found no such column, expected it in the header line",
                      ":2: column cycles: found \"foot\", expected one of: feet, left, right"}));
}

TEST(Columns, WithoutWhichNoRowCanBePlacedHideNothingElse) {
  tables walk;
  walk.foot_cycles = replaced(walk.foot_cycles, "foot,index,", "fot,index,");
  change(walk.foot_cycles, ",1.25", ",x");
  EXPECT_EQ(
      errors_of(walk),
      (messages{
          "w/foot_cycles.csv:1: column fot: found an unknown column, expected foot: rename it, or "
          "leave it out with --ignore-column",
          "w/foot_cycles.csv:1: column foot: found no such column, expected it in the header line",
          "w/foot_cycles.csv:2: column gct: found \"x\", expected a number or an empty cell"}));
}

TEST(Columns, ThatAreUnknown) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,index,reason,date\nfeet,excluded_1,1,turn,today\n"),
            (messages{":1: found an unknown column (\"date\"), expected only known ones: leave it "
                      "out with --ignore-column"}));
  EXPECT_EQ(errors_of_exclusions("date,cycles,q1,q2,list,q3,index\n1,feet,,,excluded_1,,1\n"),
            (messages{":1: found 4 unknown columns (\"date\", \"q1\", \"q2\", ...), expected only "
                      "known ones: leave them out with --ignore-column all, or rename: the table "
                      "has no reason"}));
}

TEST(Columns, ThatAreThereAreNotTheNearestNameOfAnother) {
  tables walk;
  change(walk.feet_cycles, feet_cycles_header, "index,gct,gct (s),right_index,left_index");
  EXPECT_EQ(errors_of(walk),
            (messages{"w/feet_cycles.csv:1: found an unknown column (\"gct (s)\"), expected only "
                      "known ones: leave it out with --ignore-column, or rename: the table has no "
                      "ds"}));
}

TEST(Columns, ThatAreNearlyKnown) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"gct (s)", "gct"},     {"Gct [ms]", "gct"},
      {"slenght", "slength"}, {"Stride Length", "slength"},
      {"stride_time", "gct"}, {"Step-Time", "step_time"},
      {"idx", "index"},       {"SIDE", "foot"}};
  for (const auto& [name, nearest] : names) {
    tables walk;
    change(walk.foot_cycles, nearest, name);
    EXPECT_EQ(errors_of(walk).front(), "w/foot_cycles.csv:1: column " + name +
                                           ": found an unknown column, expected " + nearest +
                                           ": rename it, or leave it out with --ignore-column");
  }
}

TEST(Columns, ThatAreNotIgnoredStayErrors) {
  tables walk;
  change(walk.exclusions, exclusions_header, exclusions_header + ",date");
  gait_walk::read_options options;
  options.ignored_columns = {"dat"};
  EXPECT_EQ(errors_of(walk, options).front(),
            "w/exclusions.csv:1: found an unknown column (\"date\"), expected only known ones: "
            "leave it out with --ignore-column");
}

TEST(Columns, ThatAreRequiredCannotBeIgnored) {
  gait_walk::read_options options;
  options.ignored_columns = {"right_index"};
  EXPECT_EQ(errors_of({}, options),
            (messages{"w/feet_cycles.csv:1: column right_index: found --ignore-column for it, "
                      "expected it to be read: this table cannot do without the column"}));
}

TEST(Columns, ThatAreThereTwice) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,index,reason,list\nfeet,excluded_1,1,turn,x\n"),
            (messages{":1: column list: found the column twice, expected it once"}));
}

TEST(Columns, WithoutAName) {
  EXPECT_EQ(errors_of_exclusions("cycles,list,index,reason,\nfeet,excluded_1,1,turn,\n"),
            (messages{":1: found no name for column 5, expected one: name it, or leave it out with "
                      "--ignore-column all"}));
}

TEST(Columns, OfWhichNoneIsKnown) {
  EXPECT_EQ(errors_of_exclusions("feet,excluded_1,1,turn\nfeet,excluded_1,2,turn\n"),
            (messages{":1: found \"feet\", expected the header line cycles,list,index,reason"}));
}

// ---- Cells

TEST(Row, WithTooFewOrTooManyCells) {
  EXPECT_EQ(errors_of_exclusions(exclusions_header +
                                 "\nfeet\nfeet,excluded_1,1\nfeet,excluded_1,1,turn,left\n"),
            (messages{":2: found 1 cell, expected 4 (and in 1 more row: line 3)",
                      ":4: found 5 cells, expected 4: a text with a comma in it needs quotation "
                      "marks around it"}));
}

/// What is wrong with the first two-feet cycle with another text in it, without their beginning.
messages errors_of_feet_cycle(const std::string& old, const std::string& text,
                              const std::string& beginning) {
  tables walk;
  change(walk.feet_cycles, old, text);
  return errors_after("w/feet_cycles.csv:2: " + beginning, walk);
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
                                 "nil",
                                 "nulls",
                                 "#N/A!",
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
  return errors_after("w/feet_cycles.csv:2: column right_index: ", walk);
}

TEST(WholeNumber, WithDecimals) {
  for (const std::string cell : {"0.5", "1.01", "1e0", ".0"}) {
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

}  // namespace

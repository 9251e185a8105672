#include "walk_folder.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace walk_folder_tests;

// ---- recording.csv

messages errors_of_recording(const std::string& rows) {
  tables walk;
  walk.recording = recording_header + "\n" + rows;
  return errors_after("w/recording.csv", walk);
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

TEST(Recording, WithASamplingRateThatIsNotWhole) {
  EXPECT_EQ(
      errors_of_recording("left,99.9,1000,1000\nright,99.9,1000,1000\n").front(),
      ":2: column sampling_rate: found \"99.9\", expected a whole number without decimals: "
      "give the nearest whole rate, and multiply first_sample, last_sample, signal_1_samples and "
      "signal_2_samples by new rate / old rate (and in 1 more row: line 3)");
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
  return errors_after("w/foot_cycles.csv", walk);
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
                      "the left foot once (and in 1 more row: line 5)"}));
}

TEST(FootCycles, WithGapsBetweenIndices) {
  EXPECT_EQ(
      errors_of_foot_cycles({"left,7,0,99,1", "left,0,0,99,1", "left,3,0,99,1", "right,1,0,99,1"}),
      (messages{":4: column index: found \"3\" where \"1\" comes next, expected the indices of the "
                "left foot from 0 without gaps: give a missing cycle a row without measured "
                "values, or leave the column out (and in 1 more row: line 2)",
                ":5: column index: found \"1\" where \"0\" comes next, expected the indices of the "
                "right foot from 0 without gaps: begin with 0, or leave the column out"}));
}

TEST(FootCycles, WithGapsBetweenIndicesHideTheLinks) {
  tables walk;
  walk.foot_cycles = replaced(walk.foot_cycles, "left,1,", "left,2,");
  EXPECT_EQ(errors_of(walk).size(), 1U);
}

TEST(FootCycles, WithTheHighestIndexTwice) {
  EXPECT_EQ(errors_of_foot_cycles({"left,0,0,99,1", "left,2147483647,0,9,1",
                                   "left,2147483647,0,9,1", "right,0,0,99,1"}),
            (messages{":3: column index: found \"2147483647\" where \"1\" comes next, expected the "
                      "indices of the left foot from 0 without gaps: give a missing cycle a row "
                      "without measured values, or leave the column out",
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
          ":2: column last_sample: found \"99\", less than first_sample (100), expected at least "
          "as much"}));
}

TEST(FootCycles, WithSecondsInPlaceOfSamples) {
  EXPECT_EQ(
      errors_of_foot_cycles({"left,0,0.5,1.25,1", "right,0,0,99,1"}),
      (messages{":2: column first_sample: found \"0.5\", expected a whole number without "
                "decimals: if these are seconds, multiply them by the sampling rate and round",
                ":2: column last_sample: found \"1.25\", expected a whole number without "
                "decimals: if these are seconds, multiply them by the sampling rate and "
                "round"}));
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
  return errors_after("w/feet_cycles.csv", walk);
}

TEST(FeetCycles, WithoutRowsInAWalkOfTwoFeet) {
  EXPECT_EQ(errors_of_feet_cycles(""),
            (messages{": found no row, expected at least one cycle of both feet"}));
}

TEST(FeetCycles, WithAnIndexTwiceOrLeftOut) {
  EXPECT_EQ(
      errors_of_feet_cycles("0,1,,,\n0,1,,,\n2,1,,,\n"),
      (messages{":3: column index: found \"0\" again (as on line 2), expected each index once",
                ":4: column index: found \"2\" where \"1\" comes next, expected the indices from 0 "
                "without gaps: give a missing cycle a row without measured values, or leave the "
                "column out"}));
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
      (messages{":2: column cycles: found \"both\", expected one of: feet, left, right (and in 1 "
                "more row: line 4)",
                ":3: column list: found \"excluded_3\", expected one of: excluded_1, "
                "excluded_1_fallback, excluded_2, excluded_2_fallback (and in 1 more row: line "
                "4)"}));
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

// ---- about.csv

messages errors_of_about(const std::string& rows) {
  tables walk;
  walk.about = about_header + "\n" + rows;
  return errors_of(walk);
}

TEST(About, WithoutAName) {
  EXPECT_EQ(errors_of_about("date,today\n,today\n"),
            (messages{"w/about.csv:3: column name: found an empty cell, expected a name"}));
}

TEST(About, WithACommaOutsideOfQuotationMarks) {
  EXPECT_EQ(errors_of_about("note,slow, tired\n"),
            (messages{"w/about.csv:2: found 3 cells, expected 2: a text with a comma in it needs "
                      "quotation marks around it"}));
}

TEST(About, WithAKeyInPlaceOfAName) {
  tables walk;
  walk.about = "key,value\ndate,today\n";
  EXPECT_EQ(errors_of(walk).front(),
            "w/about.csv:1: column key: found an unknown column, expected name: rename it, or "
            "leave it out with --ignore-column");
}

TEST(About, WithMoreRowsThanAreTaken) {
  std::string rows;
  for (int i = 0; i < 1000; ++i) {
    rows += "derived,x\n";
  }
  EXPECT_EQ(errors_of_about(rows), messages{});
  EXPECT_EQ(errors_of_about(rows + "derived,x\n"),
            (messages{"w/about.csv: found 1001 rows, expected at most 1000"}));
}

TEST(About, ThatIsNotUtf8) {
  EXPECT_EQ(errors_of_about("subject,\xFF\n"),
            (messages{"w/about.csv:2: found a byte that is not UTF-8, expected UTF-8: save the "
                      "table as UTF-8"}));
}

// ---- Warnings

TEST(Warning, AboutMinusOnesThatCountAsNotMeasured) {
  tables walk;
  change(walk.foot_cycles, ",0.5,1.25,", ",-1,-1,");
  change(walk.feet_cycles, "0,1.25,25.5", "0,1.25,-1.000");
  EXPECT_EQ(warnings_of(walk),
            (messages{"w/foot_cycles.csv: found -1 in 2 measured cells (line 2), expected empty "
                      "cells: it counts as not measured in all of the table, because hs cannot be "
                      "-1",
                      "w/feet_cycles.csv: found -1 in 1 measured cell (line 2), expected empty "
                      "cells: it counts as not measured in all of the table, because ds cannot be "
                      "-1"}));
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
                                         "no cycle (and in 1 more row: line 3)"}));
}

TEST(Warning, AboutExclusionsFromCyclesThatTheWalkLacks) {
  tables walk = left_foot_only();
  walk.exclusions =
      exclusions_header + "\nright,excluded_1,0,\nfeet,excluded_1,0,\nleft,excluded_1,0,\n";
  EXPECT_EQ(warnings_of(walk),
            (messages{"w/exclusions.csv:2: column cycles: found \"right\", expected cycles that "
                      "the walk has: nothing is excluded (and in 1 more row: line 3)"}));
}

TEST(Warnings, OfAFileAreCountedBeyondTheLimit) {
  tables walk;
  walk.exclusions = exclusions_header + "\nfeet,excluded_1,7,\nleft,excluded_1,0,\n";
  change(walk.foot_cycles, ",1.25,", ",1.25,-1");
  change(walk.foot_cycles, "right,0,50,149", "right,0,50,1149");
  EXPECT_EQ(messages_of(read(walk, {0}).warnings),
            (messages{"w/foot_cycles.csv: and 2 more", "w/exclusions.csv: and 1 more"}));
}

}  // namespace

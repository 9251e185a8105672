#include "walk_folder.h"
#include "walk_folder_tables.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace walk_folder_tests;
using gait_walk::read_walk_folder;

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
  write_text(folder.path() / "strides.csv", "time,force\n");
  EXPECT_EQ(errors_of_folder(folder.path() / "strides.csv"),
            (messages{"w: found a file, expected a walk folder, with recording.csv and "
                      "foot_cycles.csv in it"}));
}

TEST_F(Folder, ThatIsATableOfOne) {
  fs::create_directory(folder.path() / "x");
  write_text(folder.path() / "x" / "about.csv", "");
  EXPECT_EQ(errors_thrown_by([&] { read_walk_folder(folder.path() / "x" / "about.csv"); }),
            (messages{(folder.path() / "x" / "about.csv").string() +
                      ": found a table, expected a walk folder: give the folder that it is in, \"" +
                      (folder.path() / "x").string() + "\""}));
}

TEST_F(Folder, ThatIsAWorkbook) {
  for (const std::string& workbook : workbooks) {
    write_text(folder.path() / "monday", workbook);
    EXPECT_EQ(errors_of_folder(folder.path() / "monday"),
              (messages{"w: found an Excel workbook, expected a walk folder: save each sheet as "
                        "CSV (UTF-8) in a folder, as recording.csv, foot_cycles.csv and "
                        "feet_cycles.csv"}));
  }
}

TEST_F(Folder, ThatIsAPipeIsNotWaitedFor) {
  ASSERT_EQ(mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(errors_of_folder(folder.path() / "pipe").size(), 1U);
}

TEST_F(Folder, WithoutTables) {
  fs::create_directory(folder.path() / "empty");
  EXPECT_EQ(errors_of_folder(folder.path() / "empty"),
            (messages{"w: found neither recording.csv nor foot_cycles.csv, expected a walk folder "
                      "with both"}));
}

TEST_F(Folder, WithAWorkbookInPlaceOfTables) {
  const fs::path walk = folder.path() / "workbooks";
  fs::create_directory(walk);
  write_text(walk / "b.xlsx", workbooks[0]);
  write_text(walk / "a.xls", workbooks[1]);
  write_text(walk / "~$b.xlsx", "no workbook, but the mark that it is open");
  EXPECT_EQ(errors_of_folder(walk),
            (messages{"w: found no tables, but the workbook \"a.xls\", expected a walk folder: "
                      "save each sheet as CSV (UTF-8), as recording.csv, foot_cycles.csv and "
                      "feet_cycles.csv"}));
}

TEST_F(Folder, WithAWorkbookInPlaceOfOneTable) {
  fs::rename(folder.path() / "foot_cycles.csv", folder.path() / "strides.csv");
  write_text(folder.path() / "strides.xlsx", workbooks[0]);
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/foot_cycles.csv: found no such file, but the workbook "
                      "\"strides.xlsx\", expected a table: save its sheet as CSV (UTF-8) under "
                      "this name"}));
}

TEST_F(Folder, WithAFileThatIsNearlyNamedAsATable) {
  for (const auto& [table, name] :
       std::vector<std::pair<std::string, std::string>>{{"exclusions.csv", "exclusion.csv"},
                                                        {"exclusions.csv", "Exclusions.csv"},
                                                        {"exclusions.csv", "exclusoins.csv"},
                                                        {"exclusions.csv", "exclusions.csv.txt"},
                                                        {"feet_cycles.csv", "feet-cycles.tsv"},
                                                        {"foot_cycles.csv", "Foot Cycles.CSV"},
                                                        {"foot_cycles.csv", "foot_cycles.csv.csv"},
                                                        {"foot_cycles.csv", "fotcycles"},
                                                        {"recording.csv", "recordings.txt"}}) {
    fs::rename(folder.path() / table, folder.path() / name);
    const bool is_optional = table == "exclusions.csv" || table == "feet_cycles.csv";
    EXPECT_EQ(
        errors_of_folder(folder.path()),
        (messages{"w/" + table + ": found no such file, but \"" + name +
                  "\", expected a table: rename it to " + table +
                  (is_optional ? ", or move it out of the folder if it is something else" : "")}));
    fs::rename(folder.path() / name, folder.path() / table);
  }
}

TEST_F(Folder, WithAWorkbookThatIsNamedAsATable) {
  fs::remove(folder.path() / "exclusions.csv");
  write_text(folder.path() / "Exclusions.xlsx", "");
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/exclusions.csv: found no such file, but the workbook "
                      "\"Exclusions.xlsx\", expected a table: save its sheet as CSV (UTF-8), as "
                      "exclusions.csv, or move it out of the folder if it is something else"}));
}

TEST_F(Folder, WithFilesThatAreNoTablesIsRead) {
  fs::remove(folder.path() / "exclusions.csv");
  for (const std::string name : {"exclusions.csv~", "exclusions.csv.bak", ".exclusions.csv",
                                 "exclusions.pdf", "excluded.csv", "about.txt", "left_cycles.csv",
                                 "recording.mp4", "foot_cycles.xlsx", "notes.txt", ".csv"}) {
    write_text(folder.path() / name, "");
  }
  fs::create_directory(folder.path() / "exclusion");
  EXPECT_EQ(messages_of(read_walk_folder(folder.path()).warnings), messages{});
}

TEST_F(Folder, WithAFileBesideATableThatIsTakenForItWarns) {
  write_text(folder.path() / "exclusions (1).csv", "");
  write_text(folder.path() / "Exclusions.csv", "");
  fs::create_hard_link(folder.path() / "foot_cycles.csv", folder.path() / "Foot_Cycles.csv");
  EXPECT_EQ(messages_of(read_walk_folder(folder.path()).warnings),
            (messages{(folder.path() / "exclusions.csv").string() +
                      ": found \"Exclusions.csv\" beside this table, expected one of the two: "
                      "only exclusions.csv is read"}));
}

TEST_F(Folder, WithALinkThatLeadsNowhere) {
  fs::rename(folder.path() / "exclusions.csv", folder.path() / "elsewhere");
  fs::create_symlink("nowhere", folder.path() / "exclusions.csv");
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/exclusions.csv: found a link that leads nowhere, expected a table"}));
}

TEST_F(Folder, OfWalkFolders) {
  const fs::path parent = folder.path() / "all";
  write_tables({}, parent / "b" / "walk");
  EXPECT_EQ(errors_of_folder(parent),
            (messages{"w: found no tables, but walk folders below, expected a walk folder: give "
                      "one, such as \"w/b/walk\", or --recursive for all of them"}));
  write_tables({}, parent / "a");
  EXPECT_EQ(errors_of_folder(parent),
            (messages{"w: found no tables, but walk folders below, expected a walk folder: give "
                      "one, such as \"w/a\", or --recursive for all of them"}));
}

TEST_F(Folder, FarAboveWalkFoldersIsNotSearchedToTheEnd) {
  write_tables({}, folder.path() / "all" / "1" / "2" / "3" / "4");
  EXPECT_EQ(errors_of_folder(folder.path() / "all"),
            (messages{"w: found neither recording.csv nor foot_cycles.csv, expected a walk folder "
                      "with both"}));
  const messages from_below = errors_of_folder(folder.path() / "all" / "1");
  EXPECT_NE(from_below.front().find("walk folders below"), std::string::npos) << from_below.front();
}

TEST_F(Folder, BelowAFile) {
  const messages errors = errors_of_folder(folder.path() / "recording.csv" / "x");
  EXPECT_EQ(errors, (messages{"w: found no such folder, expected a walk folder"}));
}

TEST_F(Folder, WithoutOneTable) {
  const std::vector<std::pair<std::string, std::string>> complaints = {
      {"recording.csv",
       "found no such file beside foot_cycles.csv, feet_cycles.csv, exclusions.csv, expected a "
       "table: is the folder copied or written only in part?"},
      {"foot_cycles.csv",
       "found no such file beside recording.csv, feet_cycles.csv, exclusions.csv, expected a "
       "table: is the folder copied or written only in part?"},
      {"feet_cycles.csv",
       "found no such file, expected a table: write it, or analyse one foot with --foot"}};
  for (const auto& [table, complaint] : complaints) {
    fs::rename(folder.path() / table, folder.path() / "elsewhere");
    EXPECT_EQ(errors_of_folder(folder.path()), (messages{"w/" + table + ": " + complaint}));
    fs::rename(folder.path() / "elsewhere", folder.path() / table);
  }
}

TEST_F(Folder, ThatIsHalfWritten) {
  fs::rename(folder.path() / "foot_cycles.csv", folder.path() / "foot_cycles.csv.part");
  write_text(folder.path() / "exclusions.csv.part", "");
  write_text(folder.path() / "about.csv.part", "");
  const std::string left =
      ".part, left by an interrupted write, expected a whole table: write the walk again";
  EXPECT_EQ(errors_of_folder(folder.path()),
            (messages{"w/foot_cycles.csv: found foot_cycles.csv" + left,
                      "w/exclusions.csv: found exclusions.csv" + left +
                          ", or remove that file if the table is whole",
                      "w/about.csv: found about.csv" + left +
                          ", or remove that file to do without the table"}));
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
                      "feet_cycles.csv: found no such table, expected one"}));
}

}  // namespace

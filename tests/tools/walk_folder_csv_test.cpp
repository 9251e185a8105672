#include "csv_table.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using gait_walk::csv_cell;
using gait_walk::csv_row;
using gait_walk::csv_table;
using gait_walk::table_error;

using row_texts = std::vector<std::string>;
using csv_rows = std::vector<std::pair<std::size_t, row_texts>>;  // line and cells

csv_rows rows_of(const std::string& text) {
  std::istringstream stream(text);
  csv_table table(stream);
  csv_row row;
  csv_rows all;
  while (table.next(row)) {
    row_texts found;
    for (std::size_t i = 0; i < row.size(); ++i) {
      found.emplace_back(row[i]);
    }
    all.emplace_back(row.line, found);
  }
  return all;
}

/// Line and text of what stops the reading.
std::pair<std::size_t, std::string> error_of(const std::string& text) {
  try {
    rows_of(text);
  } catch (const table_error& error) {
    return {error.line(), error.what()};
  }
  return {0, "none"};
}

using csv_error = std::pair<std::size_t, std::string>;

csv_rows two_rows() { return {{1, {"a", "b"}}, {2, {"c", "d"}}}; }

TEST(CsvTable, TakesEveryLineBreak) {
  EXPECT_EQ(rows_of("a,b\nc,d\n"), two_rows());
  EXPECT_EQ(rows_of("a,b\r\nc,d\r\n"), two_rows());
  EXPECT_EQ(rows_of("a,b\rc,d\r"), two_rows());
}

TEST(CsvTable, NeedsNoLineBreakAtTheEnd) {
  EXPECT_EQ(rows_of("a,b\nc,d"), two_rows());
  EXPECT_EQ(rows_of("a,b\nc,"), (csv_rows{{1, {"a", "b"}}, {2, {"c", ""}}}));
}

TEST(CsvTable, SkipsBlankLinesButCountsThem) {
  EXPECT_EQ(rows_of("\na\n\n  \r\n\r\nb\n\n"), (csv_rows{{2, {"a"}}, {6, {"b"}}}));
}

TEST(CsvTable, CountsTheLinesWithinQuotedCells) {
  EXPECT_EQ(rows_of("\"a\nb\r\nc\",d\ne,f\n"),
            (csv_rows{{1, {"a\nb\r\nc", "d"}}, {4, {"e", "f"}}}));
}

TEST(CsvTable, TakesTheByteOrderMarkAway) {
  EXPECT_EQ(rows_of("\xEF\xBB\xBF"
                    "a,b\nc,d\n"),
            two_rows());
  EXPECT_EQ(rows_of("\xEF\xBB\xBF"), csv_rows{});
}

TEST(CsvTable, TakesBlanksAroundCellsAwayButNotWithinQuotes) {
  EXPECT_EQ(rows_of(" a ,\tb\n\" c \",d"), (csv_rows{{1, {"a", "b"}}, {2, {" c ", "d"}}}));
}

TEST(CsvTable, ReadsDoubledQuotationMarksAsOne) {
  EXPECT_EQ(rows_of("\"a \"\"b\"\"\"\n"), (csv_rows{{1, {"a \"b\""}}}));
}

// The chunks are 16384 bytes: the pair of CR and LF, a character of two bytes and a cell lie across
// their border.
TEST(CsvTable, GivesTheSameRowsWhereverChunksEnd) {
  for (const std::size_t length : {16381U, 16382U, 16383U, 16384U, 16385U}) {
    const std::string first(length, 'a');
    EXPECT_EQ(rows_of(first + "\r\nb,c\r\n"), (csv_rows{{1, {first}}, {2, {"b", "c"}}}));
    EXPECT_EQ(rows_of(first + "\xC3\xA4\nb\n"), (csv_rows{{1, {first + "\xC3\xA4"}}, {2, {"b"}}}));
    EXPECT_EQ(rows_of(first + "\n\nb\n"), (csv_rows{{1, {first}}, {3, {"b"}}}));
  }
}

TEST(CsvTable, RefusesWideEncodings) {
  using namespace std::string_literals;
  const csv_error utf16 = {0, "found UTF-16 text, expected UTF-8: save the table as UTF-8"};
  EXPECT_EQ(error_of("\xFF\xFE"
                     "f\0o\0"s),
            utf16);
  EXPECT_EQ(error_of("\xFE\xFF\0f\0o"s), utf16);
  EXPECT_EQ(error_of("f\0o\0o\0"s), utf16);
  EXPECT_EQ(error_of("\0f\0o"s), utf16);
  const csv_error utf32 = {0, "found UTF-32 text, expected UTF-8: save the table as UTF-8"};
  EXPECT_EQ(error_of("\xFF\xFE\0\0f\0\0\0"s), utf32);
  EXPECT_EQ(error_of("\0\0\xFE\xFF\0\0\0f"s), utf32);
  EXPECT_EQ(error_of("f\0\0\0"s), utf32);
  EXPECT_EQ(error_of("\0\0\0f"s), utf32);
}

TEST(CsvTable, RefusesNulBytes) {
  EXPECT_EQ(error_of(std::string("abc\ndef\0", 8)),
            (csv_error{2, "found a NUL byte, expected text"}));
}

TEST(CsvTable, RefusesWhatIsNoUtf8) {
  for (const char* bytes :
       {"\x80", "\xC1\x80", "\xC3(", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "m\374de"}) {
    EXPECT_EQ(
        error_of(std::string("a\n") + bytes),
        (csv_error{2, "found a byte that is not UTF-8, expected UTF-8: save the table as UTF-8"}));
  }
}

TEST(CsvTable, TakesEveryLengthOfUtf8) {
  const std::string text =
      "\x7F\xC2\xA0\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
  EXPECT_EQ(rows_of(text), (csv_rows{{1, {text}}}));
}

TEST(CsvTable, NamesTheLineOfBrokenQuoting) {
  const std::string inside =
      "found a quotation mark inside a cell, expected such marks only around a whole cell";
  EXPECT_EQ(error_of("a\nb\"c\n"), (csv_error{2, inside}));
  EXPECT_EQ(error_of("a\n\"b\"c\n"), (csv_error{2, inside}));
  EXPECT_EQ(error_of("a\n\"b\nb\"c\n"), (csv_error{3, inside}));
}

TEST(CsvTable, NamesTheLineOnWhichAnOpenQuotationBegins) {
  const csv_error open = {2, "found a quotation mark that is never closed, expected another one"};
  EXPECT_EQ(error_of("a\n\"b\nc\nd\n"), open);
  EXPECT_EQ(error_of("a\n\""), open);
}

TEST(CsvTable, RefusesARowThatIsTooLong) {
  const csv_error too_long = {
      2,
      "found a row of more than 1048576 bytes, expected a shorter one: is a "
      "quotation mark left open?"};
  EXPECT_EQ(error_of("a\n\"" + std::string(csv_table::max_row_bytes, 'b')), too_long);
  EXPECT_EQ(error_of("a\n" + std::string(csv_table::max_row_bytes + 1, ',')), too_long);
  EXPECT_EQ(error_of("a\n" + std::string(csv_table::max_row_bytes - 1, 'b') + "\n"),
            (csv_error{0, "none"}));
}

TEST(CsvTable, TellsOtherSeparatorsByTheHeaderLine) {
  const csv_error semicolons = {
      1,
      "found columns separated by semicolons, expected commas: replace each semicolon by a comma"};
  EXPECT_EQ(error_of("a;b\n1;2\n"), semicolons);
  EXPECT_EQ(error_of("\"a\";\"b\"\n"), semicolons);
  EXPECT_EQ(
      error_of("a\tb\n"),
      (csv_error{1,
                 "found columns separated by tabs, expected commas: replace each tab by a comma"}));
  EXPECT_EQ(error_of("a,b;c\n"), (csv_error{0, "none"}));
}

TEST(CsvTable, TellsDecimalCommasBesideOtherSeparators) {
  const std::string both = " and numbers with decimal commas, expected commas and decimal points: ";
  EXPECT_EQ(error_of("a;b\n1,5;2\n"),
            (csv_error{1, "found columns separated by semicolons" + both +
                              "replace each comma by a point, then each semicolon by a comma"}));
  EXPECT_EQ(error_of("a\tb\n1\t2,5\n"),
            (csv_error{1, "found columns separated by tabs" + both +
                              "replace each comma by a point, then each tab by a comma"}));
  EXPECT_EQ(error_of("a;b\nx,y;1, 2;,5;5,\n").second,
            "found columns separated by semicolons, expected commas: replace each semicolon by a "
            "comma");
}

TEST(CsvTable, SaysThatAStreamBrokeOff) {
  struct broken_buffer : std::streambuf {
    int_type underflow() override { throw std::runtime_error("no disk"); }
  } buffer;
  std::istream stream(&buffer);
  csv_table table(stream);
  csv_row row;
  try {
    table.next(row);
    FAIL();
  } catch (const table_error& broken) {
    EXPECT_STREQ(broken.what(), "found a file that cannot be read, expected a table");
  }
}

TEST(CsvCell, IsQuotedOnlyWhereItMustBe) {
  EXPECT_EQ(csv_cell("turn left"), "turn left");
  EXPECT_EQ(csv_cell(""), "");
  EXPECT_EQ(csv_cell("a,b"), "\"a,b\"");
  EXPECT_EQ(csv_cell("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(csv_cell("a\nb"), "\"a\nb\"");
  EXPECT_EQ(csv_cell("a\rb"), "\"a\rb\"");
  EXPECT_EQ(csv_cell(" a"), "\" a\"");
  EXPECT_EQ(csv_cell("a\t"), "\"a\t\"");
}

}  // namespace

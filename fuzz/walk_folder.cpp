/// \file
/// The reader of walk folders on any bytes: a walk that can be analysed, written and read again, or
/// faults.

#include "walk_folder.h"
#include "analysis.h"

#include <gait/generate_statistics.h>

#include "bytes_of_walk.h"
#include "check.h"
#include "walk_folder_tables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using fuzz::check;
using gait_walk::analysed_cycles;
using walk_folder_tests::tables;

constexpr std::size_t faults_per_table = 20;
constexpr std::array<const char*, 5> table_names = {
    "recording.csv", "foot_cycles.csv", "feet_cycles.csv", "exclusions.csv", "about.csv"};

// ---- The tables

/// The texts of the tables; those that are not there are null when they are read.
using table_texts = std::array<std::optional<std::string>, table_names.size()>;

table_texts texts_of(const tables& walk) {
  return {walk.recording, walk.foot_cycles, walk.feet_cycles, walk.exclusions, std::nullopt};
}

/// All tables of a walk, one after the other, with a form feed between them; the last ones may be
/// missing.
table_texts split(std::string_view text) {
  table_texts all;
  for (std::optional<std::string>& table : all) {
    const std::size_t end = std::min(text.find('\f'), text.size());
    table = text.substr(0, end);
    if (end == text.size()) {
      break;
    }
    text.remove_prefix(end + 1);
  }
  return all;
}

/// The first byte says what the others are: one table of a sound walk, of two feet or in capitals
/// of the left one alone, or all of them.
table_texts texts_of(std::string_view input) {
  constexpr std::string_view both_feet = "rfbea";
  constexpr std::string_view left_foot = "RFBEA";
  const char kind = input.empty() ? '\0' : input.front();
  input.remove_prefix(input.empty() ? 0 : 1);
  for (const auto& [kinds, walk] : {std::pair(both_feet, tables()),
                                    std::pair(left_foot, walk_folder_tests::left_foot_only())}) {
    const std::size_t table = kinds.find(kind);
    if (table != std::string_view::npos) {
      table_texts all = texts_of(walk);
      all.at(table) = std::string(input);
      return all;
    }
  }
  return split(input);
}

gait_walk::read_result read(const table_texts& texts) {
  std::array<std::istringstream, table_names.size()> streams;
  std::array<std::istream*, table_names.size()> tables{};
  for (std::size_t i = 0; i < tables.size(); ++i) {
    if (texts[i]) {
      streams[i].str(*texts[i]);
      tables[i] = &streams[i];
    }
  }
  return gait_walk::read_walk_tables({"w", tables[0], tables[1], tables[2], tables[3], tables[4]},
                                     {faults_per_table});
}

// ---- What is said about them

/// Lines as an editor counts them: LF, CRLF and CR end one.
std::size_t lines_of(const std::string& text) {
  std::size_t lines = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool ends_line = text[i] == '\r' || (text[i] == '\n' && (i == 0 || text[i - 1] != '\r'));
    lines += ends_line ? 1 : 0;
  }
  return lines;
}

void check_place(const gait_walk::input_error& fault, const table_texts& texts) {
  for (std::size_t i = 0; i < table_names.size(); ++i) {
    if (fault.file == std::string("w/") + table_names[i]) {
      check(fault.line <= (texts[i] ? lines_of(*texts[i]) : 0),
            "a fault is on a line of its table");
      return;
    }
  }
  fuzz::fail("a fault is in one of the tables");
}

/// Whether a text holds control characters: those of ASCII, or, in UTF-8, U+0080 to U+009F.
bool acts_on_a_terminal(const std::string& text) {
  unsigned char before = '\0';
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F || (before == 0xC2 && byte >= 0x80 && byte <= 0x9F)) {
      return true;
    }
    before = byte;
  }
  return false;
}

/// That each cycle's line is known, and a line of its table.
void check_lines(const std::vector<std::size_t>& lines, std::size_t cycles,
                 const std::optional<std::string>& table) {
  check(lines.size() == cycles, "each cycle has its line");
  for (const std::size_t line : lines) {
    check(line > 1 && line <= lines_of(*table), "a cycle stands below the header line");
  }
}

void check_faults(const std::vector<gait_walk::input_error>& faults, const table_texts& texts) {
  std::map<std::string, std::size_t> count;
  for (const gait_walk::input_error& fault : faults) {
    const std::string message = fault.message();
    check(!fault.text.empty(), "a fault says what is wrong");
    check(!acts_on_a_terminal(message), "a message holds nothing that acts on a terminal");
    check(message.size() < 1000, "a message is short");
    check_place(fault, texts);
    ++count[fault.file];
  }
  for (const auto& [file, faults_of_file] : count) {
    check(faults_of_file <= faults_per_table + 1,
          "beyond the limit, the faults of a table are counted");
  }
}

// ---- What is done with a walk

/// That the entry may be called.
void check_contract(const gait_result& result, bool both_feet) {
  check(result.foot_results.size() == (both_feet ? 2 : 1), "as many feet as are analysed");
  for (const gait_foot_result& foot : result.foot_results) {
    check(foot.recording != nullptr && foot.recording->sampling_rate >= 1,
          "a foot has a recording with a sampling rate");
    check(!foot.cycles.empty(), "a foot has cycles");
    int index = 0;
    for (const gait_foot_cycle& cycle : foot.cycles) {
      check(cycle.index == index++ && cycle.first_sample <= cycle.last_sample,
            "cycles stand in their order");
    }
  }
  if (both_feet) {
    check(result.left_foot == &result.foot_results.front() &&
              result.right_foot == &result.foot_results.back(),
          "the feet are pointed to");
    check(!result.feet_result.cycles.empty(), "two feet have cycles");
  }
}

void analyse(const gait_walk::walk& walk, analysed_cycles asked_for, const table_texts& texts) {
  const std::vector<gait_walk::input_error> faults =
      gait_walk::check_analysis(walk, asked_for, "w");
  if (!faults.empty()) {
    for (const gait_walk::input_error& fault : faults) {
      check(!fault.text.empty() && !fault.file.empty(),
            "what keeps a walk from being analysed is said");
    }
    return;
  }
  check_faults(gait_walk::analysis_warnings(walk, asked_for, "w"), texts);
  gait_walk::analysis analysis = gait_walk::make_analysis(walk, asked_for);
  check_contract(analysis.result, gait_walk::cycles_of(walk, asked_for) == analysed_cycles::feet);
  gait_generate_statistics(analysis.result, {});
  check(!analysis.result.statistics.info.cycles.empty(), "an analysis has cycles to include");
}

void check_written(const gait_walk::walk& walk) {
  // One for all inputs, because making it takes longer than the rest.
  static const tool_tests::temporary_folder folder;
  gait_walk::write_walk_folder(walk, folder.path());
  const gait_walk::walk again = gait_walk::read_walk_folder(folder.path()).walk;
  check(tool_tests::bytes_of(again) == tool_tests::bytes_of(walk),
        "a walk that is written is read as the same");
}

}  // namespace

// The fuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const table_texts texts = texts_of(std::string_view(reinterpret_cast<const char*>(bytes), size));
  try {
    const gait_walk::read_result read_walk = read(texts);
    check_faults(read_walk.warnings, texts);
    check(read_walk.walk.left || read_walk.walk.right, "a walk has a foot");
    for (const auto& foot : {read_walk.walk.left, read_walk.walk.right}) {
      if (foot) {
        check_lines(foot->lines, foot->cycles.size(), texts[1]);
      }
    }
    check_lines(read_walk.walk.feet_lines, read_walk.walk.feet.size(), texts[2]);
    analyse(read_walk.walk, analysed_cycles::feet, texts);
    analyse(read_walk.walk, analysed_cycles::left, texts);
    analyse(read_walk.walk, analysed_cycles::right, texts);
    check_written(read_walk.walk);
  } catch (const gait_walk::walk_error& error) {
    check(!error.errors().empty(), "a walk that is refused has a fault");
    check_faults(error.errors(), texts);
  }
  return 0;
}

#include "finding_text.h"

#include "columns.h"
#include "names.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gait_report {
namespace {

using gait_checks::finding;
using gait_checks::place;

/// More places than these are counted.
constexpr std::size_t most_named = 5;

const std::vector<std::size_t>& lines_of(const table_lines& lines, const place& place) {
  if (place.foot.empty()) {
    return lines.feet;
  }
  return place.foot == "right" ? lines.right : lines.left;
}

/// "line 12", "lines 12, 13 and 14 more", "right 8, left 3"; empty where no place is known.
std::string places_in_words(const finding& finding, const walk_statistics& walk) {
  std::vector<std::size_t> lines;
  std::vector<std::string> strides;
  for (const place& place : finding.places) {
    if (const auto line = line_of(walk, place)) {
      lines.push_back(*line);
    }
    strides.push_back((place.foot.empty() ? "cycle" : std::string(place.foot)) + " " +
                      std::to_string(place.index));
  }
  const bool has_lines = lines.size() == strides.size();
  const std::size_t named = std::min(most_named, strides.size());
  std::string text;
  for (std::size_t i = 0; i < named; ++i) {
    text += (i == 0 ? "" : ", ") + (has_lines ? std::to_string(lines[i]) : strides[i]);
  }
  if (has_lines && named > 0) {
    text.insert(0, finding.broken == 1 ? "line " : "lines ");
  }
  return finding.broken > named && named > 0
             ? text + " and " + std::to_string(finding.broken - named) + " more"
             : text;
}

std::string count_in_words(const finding& finding) {
  const bool is_of_the_whole = finding.places.empty() && finding.broken == finding.compared;
  return "in " + (is_of_the_whole ? "" : std::to_string(finding.broken) + " of ") +
         std::to_string(finding.compared) + " " + std::string(finding.counted);
}

/// "7", "7, 8, 9, 10, 11 and 14 more": each analysed cycle once.
std::string cycles_in_words(const std::vector<int>& cycles) {
  std::string text;
  for (std::size_t i = 0; i < std::min(most_named, cycles.size()); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(cycles[i]);
  }
  return cycles.size() > most_named
             ? text + " and " + std::to_string(cycles.size() - most_named) + " more"
             : text;
}

/// What to do about single strides, with the rows that exclude them.
std::string remedy_in_words(const finding& finding, const walk_statistics& walk) {
  std::vector<int> cycles;
  for (const place& place : finding.places) {
    if (place.cycle && std::find(cycles.begin(), cycles.end(), *place.cycle) == cycles.end()) {
      cycles.push_back(*place.cycle);
    }
  }
  if (finding.remedy.empty() || cycles.empty()) {
    return finding.remedy;
  }
  using gait_walk::exclusion_list;
  const bool is_one = cycles.size() == 1;
  const std::string row = std::string(gait_walk::name_of(walk.analysed)) + "," +
                          std::string(gait_walk::name_of(exclusion_list::excluded_1)) + ",";
  return finding.remedy + " with the row" + (is_one ? " " : "s ") + row +
         (is_one ? cycles_in_words(cycles) : "N") + " in " +
         std::string(gait_walk::table_name<gait_walk::exclusion_row>) +
         " (columns cycles,list,index)" + (is_one ? "" : ", N = " + cycles_in_words(cycles));
}

std::string where_in_words(const finding& finding) {
  return "column " + finding.column + ": " + finding.check + ":";
}

std::string found_in_words(const finding& finding, const walk_statistics& walk) {
  const std::string places = places_in_words(finding, walk);
  return finding.text + ", " + count_in_words(finding) +
         (places.empty() ? "" : " (" + places + ")");
}

}  // namespace

std::optional<std::size_t> line_of(const walk_statistics& walk, const place& place) {
  const auto& lines = lines_of(walk.lines, place);
  const auto index = static_cast<std::size_t>(place.index);
  return index < lines.size() ? std::optional(lines[index]) : std::nullopt;
}

std::string in_words(const finding& finding, const walk_statistics& walk) {
  const std::string remedy = remedy_in_words(finding, walk);
  return where_in_words(finding) + " " + found_in_words(finding, walk) +
         (finding.guess.empty() ? "." : ": " + finding.guess) + " Usually: " + finding.usual_cause +
         "." + (remedy.empty() ? "" : " To mend: " + remedy + ".");
}

std::string in_words(const gait_checks::note& note) {
  return note.source.empty() ? note.text : note.text + " (" + note.source + ")";
}

std::string in_lines(const std::string& first, const finding& finding, const walk_statistics& walk,
                     const text_style& style) {
  std::string text = wrapped(first, where_in_words(finding), 4, style);
  const auto add = [&](const std::string& begin, const std::string& words) {
    text += words.empty() ? "" : wrapped("    " + begin, words, 6, style);
  };
  add("", found_in_words(finding, walk));
  add("", finding.guess);
  add("usually: ", finding.usual_cause);
  add("to mend: ", remedy_in_words(finding, walk));
  return text;
}

}  // namespace gait_report

#include "text_report.h"

#include "citation.h"
#include "decimals.h"
#include "finding_text.h"
#include "names.h"
#include "number.h"
#include "parameter_measures.h"
#include "shown_text.h"
#include "walk_strides.h"
#include "walk_summary.h"

#include <gait/version.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

constexpr std::string_view not_computed = "-";

std::string cell(const std::optional<double>& value, int decimals) {
  return value ? rounded(*value, decimals) : std::string(not_computed);
}

std::string paragraph(std::string_view text, const text_style& style) {
  return wrapped("  ", text, 2, style);
}

// --- What a reader asks first

std::string report_about(const walk_statistics& walk, const text_style& style) {
  std::string text;
  for (const auto& row : walk.about) {
    text += wrapped("  " + gait_walk::printable(row.name) + ": ", gait_walk::printable(row.value),
                    4, style);
  }
  return text;
}

/// "40 two-feet cycles: 38 link a right and a left stride, 2 have no left stride".
std::string links_in_words(const walk_strides& strides) {
  std::size_t linking = 0;
  std::size_t without_right = 0;
  std::size_t without_left = 0;
  for (const two_feet_cycle& cycle : strides.cycles) {
    linking += cycle.right && cycle.left ? 1U : 0U;
    without_right += cycle.right ? 0U : 1U;
    without_left += cycle.left ? 0U : 1U;
  }
  std::string text = counted(strides.cycles.size(), "two-feet cycle") + ": " +
                     std::to_string(linking) + (linking == 1 ? " links" : " link") +
                     " a right and a left stride";
  for (const auto& [without, side] :
       {std::pair(without_right, "right"), std::pair(without_left, "left")}) {
    if (without > 0) {
      text += ", " + std::to_string(without) + (without == 1 ? " has" : " have") + " no " + side +
              " stride";
    }
  }
  return text;
}

std::string describe_walk(const walk_statistics& walk, const walk_strides& strides,
                          const text_style& style) {
  std::string text = analysed_in_words(walk) + ".";
  if (walk.both_feet()) {
    text += " " + links_in_words(strides) + ".";
  }
  return report_about(walk, style) + paragraph(text, style);
}

std::string report_first(const walk_statistics& walk, const walk_summary& summary,
                         const text_style& style) {
  return heading("Walk " + gait_walk::printable(walk.name), style) + "\n" +
         paragraph(summary.in_the_statistics, style) +
         paragraph(gait_walk::printable(summary.left_out), style);
}

// --- Tables of a few lines with a note each

/// An empty cell says nothing, where a dash would say that something is missing.
struct noted_line {
  std::string label;
  std::vector<std::string> cells;
  std::string note;
};

/// With less room beside the cells than this, a note goes below them.
constexpr std::size_t narrowest_note = 12;

std::string lay_out(const std::string& title, const std::vector<std::string>& headings,
                    const std::vector<noted_line>& lines, const text_style& style) {
  std::size_t label = title.size() - std::min<std::size_t>(title.size(), 2);
  std::vector<std::size_t> widths;
  widths.reserve(headings.size());
  for (const auto& text : headings) {
    widths.push_back(text.size());
  }
  for (const auto& line : lines) {
    label = std::max(label, line.label.size());
    for (std::size_t i = 0; i < widths.size(); ++i) {
      widths[i] = std::max(widths[i], line.cells[i].size());
    }
  }
  const auto cells = [&](const std::vector<std::string>& texts) {
    std::string text;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      text += "  " + pad_left(texts[i], widths[i]);
    }
    return text;
  };
  std::string top = pad_right(title, label + 2) + cells(headings);
  top.erase(top.find_last_not_of(' ') + 1);
  std::string text = heading(top, style) + "\n";
  for (const auto& line : lines) {
    const std::string first = "  " + pad_right(line.label, label) + cells(line.cells) + "  ";
    const bool note_has_room = first.size() + narrowest_note <= style.width;
    text += wrapped(first, line.note, note_has_room ? first.size() : 6, style);
  }
  return text;
}

std::string seconds(const std::optional<double>& value) {
  return value ? rounded(*value, decimals_of_seconds) + " s" : "unknown";
}
std::string metres(double value) { return rounded(value, decimals_of_metres) + " m"; }

// --- From the strides that were recorded to those in the statistics

/// The strides of each side that were left out for a reason.
noted_line left_out_line(const std::string& reason, const walk_strides& strides) {
  noted_line line{
      "Left out, " + (reason.empty() ? "no reason given" : gait_walk::printable(reason)), {}, ""};
  for (const side_strides& side : strides.sides) {
    std::size_t count = 0;
    for (const auto& [known, number] : side.left_out_reasons) {
      count += known == reason ? number : 0;
    }
    line.cells.push_back(std::to_string(count));
  }
  return line;
}

std::string report_strides(const walk_strides& strides, const text_style& style) {
  const auto line_of = [&](const std::string& label, auto count_of) {
    noted_line line{label, {}, ""};
    for (const side_strides& side : strides.sides) {
      line.cells.push_back(std::to_string(count_of(side)));
    }
    return line;
  };
  std::vector<std::string> headings;
  counted_reasons reasons;
  for (const side_strides& side : strides.sides) {
    headings.push_back(gait_walk::capitalised(name_of(side.side.foot)));
    for (const auto& [reason, count] : side.left_out_reasons) {
      count_reason(reasons, reason);
    }
  }
  std::vector<noted_line> lines{
      line_of("Recorded", [](const auto& s) { return s.strides.size(); })};
  const auto is_complete = [](const auto& side) { return side.unlinked == 0; };
  if (!std::all_of(strides.sides.begin(), strides.sides.end(), is_complete)) {
    lines.push_back(line_of("Unlinked", [](const auto& s) { return s.unlinked; }));
    lines.back().note = "in no two-feet cycle";
  }
  for (const auto& [reason, count] : reasons) {
    lines.push_back(left_out_line(reason, strides));
  }
  lines.push_back(line_of("In the statistics", [](const auto& s) { return s.included; }));
  return lay_out("Strides", headings, lines, style);
}

// --- Time and distance

std::string missing_in(const measured_sum& sum, const std::string& what) {
  return sum.without == 0 ? ""
                          : std::to_string(sum.without) + " of " + counted(sum.cycles, "cycle") +
                                " without " + what;
}

noted_line distance_line(const std::string& label, const measured_sum& sum,
                         const std::string& foot) {
  if (!sum.sum) {
    return {label, {""}, "not measured"};
  }
  const std::string missing = missing_in(sum, "stride length");
  return {
      label, {metres(*sum.sum)}, foot + (foot.empty() || missing.empty() ? "" : ", ") + missing};
}

std::string report_time(const walk_statistics& walk, const walk_summary& summary,
                        const text_style& style) {
  const std::string foot = walk.both_feet() ? "right foot" : "";
  const std::string missing = missing_in(summary.time, "duration");
  const std::string cycles = walk.both_feet() ? "two-feet cycles" : "strides";
  noted_line in_the_statistics{"In the statistics", {""}, "durations not measured"};
  if (summary.time.sum) {
    in_the_statistics = {
        "In the statistics",
        {seconds(summary.time.sum)},
        "the " + cycles + "' own durations" + (missing.empty() ? "" : ", ") + missing};
  }
  return lay_out("Time and distance", {""},
                 {{"Recording", {seconds(summary.recording)}, ""},
                  {"Walk", {seconds(summary.walk)}, "first to last sample"},
                  in_the_statistics,
                  distance_line("Distance, walk", summary.total_distance, foot),
                  distance_line("Distance, statistics", summary.distance, foot)},
                 style);
}

// --- Cycle accounting

std::string report_accounting(const walk_statistics& walk, const walk_summary& summary,
                              const text_style& style) {
  const auto time = [](const std::optional<double>& value) {
    return value ? seconds(value) : std::string(not_computed);
  };
  std::vector<noted_line> lines;
  lines.push_back({"Walk", {std::to_string(walk.info().cycle_count), seconds(summary.walk)}, ""});
  for (const accounted_kind& kind : summary.kinds) {
    const std::string missing = missing_in(kind.time, "duration");
    lines.push_back({gait_walk::printable(kind.label),
                     {std::to_string(kind.cycles), time(kind.time.sum)},
                     gait_walk::printable(kind.note) +
                         (kind.note.empty() || missing.empty() ? "" : "; ") + missing});
  }
  lines.push_back({"Included",
                   {std::to_string(summary.accounted_cycles), time(summary.accounted_duration)},
                   "walk less excluded, pauses included"});
  return lay_out("Cycle accounting", {"Cycles", ""}, lines, style) +
         (summary.why_they_differ.empty() ? "" : paragraph(summary.why_they_differ, style));
}

// --- Parameters

/// A parameter with its measures, side by side with its statistics.
struct shown_parameter {
  const computed_parameter* parameter = nullptr;
  std::vector<parameter_measures> measures;  ///< of each side
};

/// One side of a parameter.
struct shown_side {
  const computed_parameter& parameter;
  const computed_statistics& statistics;
  const parameter_measures& measures;
};

using side_cell = std::function<std::string(const shown_side&)>;

/// The cells of one statistic: a column for each of the first sides.
column_group statistic_group(const std::string& heading, const std::vector<shown_parameter>& rows,
                             std::size_t sides, const side_cell& text_of) {
  column_group group{heading, alignment::right, std::vector<std::vector<std::string>>(sides)};
  for (const shown_parameter& row : rows) {
    for (std::size_t side = 0; side < sides; ++side) {
      group.columns[side].push_back(
          text_of({*row.parameter, row.parameter->sides[side].statistics, row.measures[side]}));
    }
  }
  return group;
}

/// A statistic in the parameter's own unit, with the parameter's own decimals.
side_cell in_own_decimals(std::optional<double> computed_statistics::*statistic) {
  return [statistic](const shown_side& side) {
    return cell(side.statistics.*statistic, side.parameter.row.decimals);
  };
}

std::string median_and_quartiles(const shown_side& side) {
  const int decimals = side.parameter.row.decimals;
  if (!side.measures.q1 || !side.statistics.median || side.statistics.n < 2) {
    return cell(side.statistics.median, decimals);
  }
  return cell(side.statistics.median, decimals) + " [" + cell(side.measures.q1, decimals) + ", " +
         cell(side.measures.q3, decimals) + "]";
}

side_cell quartile(std::optional<double> parameter_measures::*quartile) {
  return [quartile](const shown_side& side) {
    return cell(side.measures.*quartile, side.parameter.row.decimals);
  };
}

std::string symmetry_cell(const shown_side& side) {
  return cell(side.measures.symmetry_index, decimals_of_percent);
}

std::string ratio_cell(const shown_side& side) {
  return side.parameter.has_telling_ratio() ? cell(side.statistics.ratio, decimals_of_ratio)
                                            : std::string(not_computed);
}

/// Whether a statistic could be computed of any parameter.
bool says_anything(const column_group& group) {
  return std::any_of(group.columns.begin(), group.columns.end(), [](const auto& column) {
    return std::any_of(column.begin(), column.end(),
                       [](const std::string& cell) { return cell != not_computed; });
  });
}

/// Whether any of the parameters has a figure that only many strides have.
bool any_has_precision(const std::vector<shown_parameter>& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const shown_parameter& row) {
    return std::any_of(row.measures.begin(), row.measures.end(),
                       [](const auto& measures) { return measures.standard_error.has_value(); });
  });
}

/// A table that grows by a group for each statistic that could be computed of any parameter.
class parameter_table {
public:
  parameter_table(const std::string& label_heading, const std::vector<shown_parameter>& rows,
                  std::size_t sides)
      : rows_(rows), sides_(sides) {
    table_.label_heading = label_heading;
    column_group unit{"Unit", alignment::left, {{}}};
    for (const shown_parameter& row : rows) {
      table_.labels.push_back(row.parameter->row.description);
      unit.columns[0].push_back(row.parameter->row.unit);
    }
    table_.groups.push_back(unit);
    if (sides > 1) {
      table_.sub_headings = {"R", "L"};
    }
  }

  void add(const std::string& title, const side_cell& text_of) {
    add(statistic_group(title, rows_, sides_, text_of));
  }

  /// In one column where there is room, which takes less of it than three.
  void add_median_and_quartiles(std::size_t width) {
    const column_group group =
        statistic_group("Median [Q1, Q3]", rows_, sides_, median_and_quartiles);
    if (width_alone(table_, group) <= width) {
      add(group);
      return;
    }
    add("Median", in_own_decimals(&computed_statistics::median));
    add("Q1", quartile(&parameter_measures::q1));
    add("Q3", quartile(&parameter_measures::q3));
  }

  /// Of the two sides. The left side's ratio is the reciprocal, and the symmetry index is that of
  /// both.
  void add_comparison() {
    column_group group{"R against L", alignment::right, {{}, {}}, {"ratio", "SI"}};
    group.columns[0] = statistic_group("", rows_, 1, ratio_cell).columns[0];
    group.columns[1] = statistic_group("", rows_, 1, symmetry_cell).columns[0];
    add(group);
  }

  const flowing_table& table() const { return table_; }

private:
  void add(const column_group& group) {
    if (says_anything(group)) {
      table_.groups.push_back(group);
    }
  }

  const std::vector<shown_parameter>& rows_;
  std::size_t sides_;
  flowing_table table_;
};

std::string lay_out_parameters(const std::string& label_heading,
                               const std::vector<shown_parameter>& rows, std::size_t sides,
                               const text_style& style) {
  if (rows.empty()) {
    return "";
  }
  using statistics = computed_statistics;
  parameter_table table(label_heading, rows, sides);
  table.add("n", [](const auto& side) { return std::to_string(side.statistics.n); });
  table.add("Mean", in_own_decimals(&statistics::mean));
  table.add("SD", in_own_decimals(&statistics::std));
  table.add_median_and_quartiles(style.width);
  table.add("Min", in_own_decimals(&statistics::min));
  table.add("Max", in_own_decimals(&statistics::max));
  table.add("CV", [](const auto& side) { return cell(side.statistics.cv, decimals_of_percent); });
  if (sides > 1) {
    table.add_comparison();
  }
  table.add("SE", [](const auto& side) {
    return cell(side.measures.standard_error, side.parameter.row.decimals + 1);
  });
  table.add("n eff.", [](const auto& side) { return cell(side.measures.effective_strides, 0); });
  return lay_out(table.table(), style) + "\n";
}

std::string legend(const walk_statistics& walk, bool has_precision, const text_style& style) {
  std::string text =
      "n: values that were measured. SD: standard deviation, divisor n - 1. Q1, Q3: quartiles by "
      "Hyndman and Fan, definition 5. CV: coefficient of variation (%), from 10 values on, "
      "negative where the mean is.";
  if (has_precision) {
    text +=
        " n eff.: how many independent strides the n are worth; SE: standard error of the mean "
        "with them, of this stretch of walking; both from 20 values on.";
  }
  if (walk.both_feet()) {
    text +=
        " R: right, L: left. Ratio: R / L of the means, where they are clear of 0. SI: symmetry "
        "index (%), 100 (R - L) / ((R + L) / 2) of the means, above 0 where the right one is "
        "larger.";
  }
  text += " " + std::string(not_computed) +
          ": could not be computed, would say nothing, or is not defined for the parameter.";
  return paragraph(text, style);
}

/// A moment in the recording says when the strides were, not what they are like.
bool is_a_moment(const listed_parameter& row) { return !row.has_ratio && !row.has_cv; }

std::string remarks_on(const std::vector<computed_parameter>& parameters, const text_style& style) {
  std::string names;
  std::string reasons;
  for (const auto& parameter : parameters) {
    if (!parameter.has_values()) {
      names += (names.empty() ? "" : ", ") + parameter.row.description;
    }
    if (!parameter.why_none.empty()) {
      reasons += wrapped("  " + parameter.row.description + ": ", parameter.why_none, 4, style);
    }
  }
  return reasons + (names.empty() ? "" : wrapped("  Not measured: ", names, 4, style));
}

std::string report_parameters(const walk_statistics& walk, const text_style& style) {
  const std::vector<computed_parameter> parameters = parameters_of(walk);
  const auto measures = measures_of(walk);
  std::vector<shown_parameter> of_a_side;
  std::vector<shown_parameter> of_both;
  for (const auto& parameter : parameters) {
    if (!parameter.has_values() || is_a_moment(parameter.row)) {
      continue;
    }
    shown_parameter shown{&parameter, {}};
    for (const auto& side : parameter.sides) {
      shown.measures.push_back(measures.at(side.key));
    }
    (is_of_both_feet(parameter.row) ? of_both : of_a_side).push_back(std::move(shown));
  }
  const std::string text = lay_out_parameters("Parameter", of_a_side, walk.sides.size(), style) +
                           lay_out_parameters("Both feet", of_both, 1, style);
  const std::string remarks = remarks_on(parameters, style);
  return text + (remarks.empty() ? "" : remarks + "\n") +
         legend(walk, any_has_precision(of_a_side), style);
}

// --- Swing asymmetry and quality flags

/// What the library's own figure is where its scale is not that of percent.
std::string as_the_library_scales_it(const walk_statistics& walk,
                                     const gait_statistics_parameter& record) {
  constexpr int rate_of_percent = 100;
  if (walk.sampling_rate == rate_of_percent) {
    return "";
  }
  const computed_statistics statistics = swing_asymmetry_of(record);
  const std::string scale = std::to_string(walk.sampling_rate);
  return " The library has the sampling rate, " + scale + " Hz, in place of 100: mean " +
         cell(statistics.mean, record.decimals) + ", SD " + cell(statistics.std, record.decimals) +
         ".";
}

std::string report_swing_asymmetry(const walk_statistics& walk, const text_style& style) {
  const auto* record = swing_asymmetry_record(walk);
  const auto percent = swing_asymmetry_in_percent(walk);
  if (record == nullptr || !percent) {
    return "";
  }
  std::string text = "\n" + heading("Swing asymmetry", style) + "\n";
  if (!percent->mean) {
    return text + paragraph("No stride has a swing on both sides.", style);
  }
  return text +
         paragraph("mean " + rounded(*percent->mean, record->decimals) + " % (" +
                       std::string(gait_measures::direction_in_words(*percent->mean)) + "), SD " +
                       cell(percent->sd, record->decimals) + ", n " + counted(percent->n, "stride"),
                   style) +
         paragraph("100 (left - right) / (left + right) of the two swings of each two-feet cycle." +
                       as_the_library_scales_it(walk, *record),
                   style);
}

std::string report_quality_flags(const walk_statistics& walk, const text_style& style) {
  std::string text = "\n" + heading("Quality flags", style) + "\n";
  const std::vector<std::string> flags = quality_flags_in_words(walk);
  if (flags.empty()) {
    return text + "  None.\n";
  }
  for (const auto& flag : flags) {
    text += wrapped("  ! ", flag, 4, style);
  }
  return text;
}

std::string report_data_checks(const walk_statistics& walk, const text_style& style) {
  std::string text = "\n" + heading("Data checks", style) + "\n";
  text += walk.findings.empty() ? "  None broken.\n" : "";
  for (const auto& finding : walk.findings) {
    text += in_lines("  ! " + finding.table + ": ", finding, walk, style);
  }
  if (!walk.findings.empty()) {
    text += paragraph(
        "A finding changes no figure. --without-check NAME leaves out a check that does not apply.",
        style);
  }
  for (const auto& note : walk.notes) {
    text += wrapped("  Note: ", gait_walk::printable(in_words(note)), 4, style);
  }
  return text;
}

}  // namespace

std::string text_report(const walk_statistics& walk, const text_style& style) {
  const walk_strides strides = strides_of(walk);
  const walk_summary summary = summary_of(walk, strides);
  return report_first(walk, summary, style) + "\n" + describe_walk(walk, strides, style) + "\n" +
         report_strides(strides, style) + "\n" + report_time(walk, summary, style) + "\n" +
         report_accounting(walk, summary, style) + "\n" + report_parameters(walk, style) +
         report_swing_asymmetry(walk, style) + report_quality_flags(walk, style) +
         report_data_checks(walk, style);
}

std::string end_of_text_reports(const text_style& style) {
  return "\n" +
         wrapped("",
                 "Made by gait-statistics " GAIT_STATISTICS_VERSION ". To cite it: " + citation(),
                 0, style);
}

}  // namespace gait_report

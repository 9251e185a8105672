#include "text_report.h"

#include "finding_text.h"
#include "names.h"
#include "number.h"
#include "shown_text.h"

#include <gait/catalogue.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gait_report {
namespace {

constexpr std::string_view not_computed = "-";
constexpr int decimals_of_cv = 1;
constexpr int decimals_of_ratio = 3;
constexpr int decimals_of_seconds = gait_catalogue::row_of<GCT>.decimals;
constexpr int decimals_of_metres = gait_catalogue::row_of<SLENGTH>.decimals;

std::string cell(const std::optional<double>& value, int decimals) {
  return value ? rounded(*value, decimals) : std::string(not_computed);
}

std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string capitalised(std::string_view words) {
  std::string text(words);
  text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

std::string paragraph(std::string_view text, const text_style& style) {
  return wrapped("  ", text, 2, style);
}

// --- What the walk is

std::string report_about(const walk_statistics& walk, const text_style& style) {
  std::string text;
  for (const auto& row : walk.about) {
    text += wrapped("  " + gait_walk::printable(row.name) + ": ", gait_walk::printable(row.value),
                    4, style);
  }
  return text;
}

std::string describe_walk(const walk_statistics& walk, const text_style& style) {
  std::string text = capitalised(words_of(walk.analysed).in_words);
  text += walk.both_feet() ? "" : " alone";
  text += ", sampled at " + std::to_string(walk.sampling_rate) + " Hz: ";
  if (walk.both_feet()) {
    for (const auto& side : walk.sides) {
      text += std::to_string(side.cycles) + " " + std::string(name_of(side.foot)) + ", ";
    }
    text += counted(walk.stride_lengths.cycles, "two-feet cycle") + ".";
  } else {
    text += counted(walk.sides.front().cycles, "cycle") + ".";
  }
  return heading("Walk " + gait_walk::printable(walk.name), style) + "\n" +
         report_about(walk, style) + paragraph(text, style);
}

// --- Cycle accounting

/// A line of the accounting. An empty cell says nothing, where a dash would say that something is
/// missing.
struct accounting_line {
  std::string label;
  std::string cycles;
  std::string amount;
  std::string note;
};

std::string seconds(double value) { return rounded(value, decimals_of_seconds) + " s"; }
std::string metres(double value) { return rounded(value, decimals_of_metres) + " m"; }

std::string exclusion_note(bool is_fallback, const counted_reasons& reasons) {
  std::string note;
  for (const auto& [reason, count] : reasons) {
    note += (note.empty() ? "" : ", ") + std::to_string(count) + " " + gait_walk::printable(reason);
  }
  if (!is_fallback) {
    return note;
  }
  return note.empty() ? "fallback list" : "fallback list: " + note;
}

accounting_line distance_line(const std::string& label, double distance, std::size_t cycles,
                              std::size_t without, const std::string& foot) {
  if (without == cycles) {
    return {label, "", "", "not measured"};
  }
  accounting_line line{label, "", metres(distance), foot};
  if (without > 0) {
    line.note += (line.note.empty() ? "" : ", ") + std::to_string(without) + " of " +
                 counted(cycles, "cycle") + " without stride length";
  }
  return line;
}

std::vector<accounting_line> accounting_lines(const walk_statistics& walk) {
  const gait_statistics_info& info = walk.info();
  const stride_length_gaps& lengths = walk.stride_lengths;
  const std::string foot = walk.both_feet() ? "right foot" : "";
  const bool lists_kind_2 =
      !walk.result().excluded_2.empty() || !walk.result().excluded_2_fallback.empty();
  return {
      {"Recording", "",
       walk.recording_length_is_known ? seconds(info.recording_duration) : "unknown", ""},
      {"Walk", std::to_string(info.cycle_count), seconds(info.duration), "first to last sample"},
      {"Excluded, kind 1", std::to_string(info.excluded_1_count), seconds(info.excluded_1_duration),
       exclusion_note(info.excluded_1_fallback_count > 0, walk.excluded_1_reasons)},
      {"Excluded, kind 2", std::to_string(info.excluded_2_count), seconds(info.excluded_2_duration),
       lists_kind_2 ? exclusion_note(info.excluded_2_fallback_count > 0, walk.excluded_2_reasons)
                    : "none listed, which counts as two"},
      {"Included", std::to_string(info.included_count), seconds(info.included_duration),
       "walk less excluded"},
      {"In the statistics", std::to_string(info.cycles.size()), seconds(info.included_gct_sum),
       "their own durations"},
      distance_line("Distance, total", info.total_distance, lengths.cycles, lengths.without, foot),
      distance_line("Distance, included", info.included_distance, lengths.included,
                    lengths.included_without, foot),
  };
}

/// With less room beside the numbers than this, a note goes below them.
constexpr std::size_t narrowest_note = 12;

std::string lay_out_accounting(const std::vector<accounting_line>& lines, const text_style& style) {
  std::size_t label = 0;
  std::size_t cycles = std::string_view("Cycles").size();
  std::size_t amount = 0;
  for (const auto& line : lines) {
    label = std::max(label, line.label.size());
    cycles = std::max(cycles, line.cycles.size());
    amount = std::max(amount, line.amount.size());
  }
  const auto columns = [&](const accounting_line& line) {
    return "  " + pad_right(line.label, label) + "  " + pad_left(line.cycles, cycles) + "  " +
           pad_left(line.amount, amount) + "  ";
  };
  std::string text = heading(pad_right("Cycle accounting", label + 2) + "  Cycles", style) + "\n";
  for (const auto& line : lines) {
    const std::string first = columns(line);
    const bool note_has_room = first.size() + narrowest_note <= style.width;
    text += wrapped(first, line.note, note_has_room ? first.size() : 6, style);
  }
  return text;
}

/// Why the accounting's included count is not the number of cycles that are left, which is what the
/// statistics are about. Empty when it is.
std::string why_counts_differ(const walk_statistics& walk) {
  const gait_statistics_info& info = walk.info();
  const gait_result& result = walk.result();
  if (static_cast<std::int64_t>(info.cycles.size()) == info.included_count) {
    return "";
  }
  std::string text = counted(info.cycles.size(), "cycle") +
                     (info.cycles.size() == 1 ? " is" : " are") +
                     " left in the selection, where the accounting counts " +
                     std::to_string(info.included_count) + " as included.";
  if (info.excluded_2_fallback_count > 0) {
    text +=
        " Without a list of kind 2, two cycles are counted for it, a start and a stop, and none is "
        "taken out.";
  }
  if (info.excluded_1_fallback_count > 0) {
    text += " The fallback list of kind 1 counts, and takes no cycle out.";
  }
  if (result.excluded_1.size() + result.excluded_2.size() >
      static_cast<std::size_t>(info.excluded_count)) {
    text +=
        " An index that is listed twice, in both kinds, or outside of the walk counts, and takes "
        "no further cycle out.";
  }
  return text;
}

std::string report_accounting(const walk_statistics& walk, const text_style& style) {
  const std::string why = why_counts_differ(walk);
  return lay_out_accounting(accounting_lines(walk), style) +
         (why.empty() ? "" : paragraph(why, style));
}

// --- Parameters

using parameter_cell =
    std::function<std::string(const computed_parameter&, const side_of_parameter&)>;

/// The cells of one statistic: a column for each side.
column_group statistic_group(const std::string& heading,
                             const std::vector<const computed_parameter*>& rows, std::size_t sides,
                             const parameter_cell& text_of) {
  column_group group{heading, alignment::right, std::vector<std::vector<std::string>>(sides)};
  for (const computed_parameter* row : rows) {
    for (std::size_t side = 0; side < sides; ++side) {
      group.columns[side].push_back(text_of(*row, row->sides[side]));
    }
  }
  return group;
}

/// A statistic in the parameter's own unit, with the parameter's own decimals.
parameter_cell in_own_decimals(std::optional<double> computed_statistics::*statistic) {
  return [statistic](const computed_parameter& parameter, const side_of_parameter& side) {
    return cell(side.statistics.*statistic, parameter.row.decimals);
  };
}

parameter_cell in_decimals(std::optional<double> computed_statistics::*statistic, int decimals) {
  return [statistic, decimals](const computed_parameter&, const side_of_parameter& side) {
    return cell(side.statistics.*statistic, decimals);
  };
}

constexpr std::string_view halved_mark = " *";

bool is_step_length(const listed_parameter& row) {
  return row.key == gait_catalogue::row_of<STEPLENGTH>.key;
}

std::string label_of(const walk_statistics& walk, const listed_parameter& row) {
  const bool is_marked = is_step_length(row) && halved_missing_stride_lengths(walk) > 0;
  return row.description + std::string(is_marked ? halved_mark : "");
}

flowing_table parameter_table(const walk_statistics& walk,
                              const std::vector<const computed_parameter*>& rows) {
  flowing_table table;
  table.label_heading = "Parameter";
  column_group unit{"Unit", alignment::left, {{}}};
  for (const computed_parameter* row : rows) {
    table.labels.push_back(label_of(walk, row->row));
    unit.columns[0].push_back(row->row.unit);
  }
  const auto statistic = [&](const std::string& title, const parameter_cell& text_of) {
    table.groups.push_back(statistic_group(title, rows, walk.sides.size(), text_of));
  };
  using statistics = computed_statistics;
  table.groups.push_back(unit);
  statistic("n", [](const auto&, const auto& side) { return std::to_string(side.statistics.n); });
  statistic("Mean", in_own_decimals(&statistics::mean));
  statistic("SD", in_own_decimals(&statistics::std));
  statistic("Median", in_own_decimals(&statistics::median));
  statistic("IQR", in_own_decimals(&statistics::iqr));
  statistic("Min", in_own_decimals(&statistics::min));
  statistic("Max", in_own_decimals(&statistics::max));
  statistic("CV", in_decimals(&statistics::cv, decimals_of_cv));
  if (walk.both_feet()) {
    table.sub_headings = {"R", "L"};
    statistic("Ratio", in_decimals(&statistics::ratio, decimals_of_ratio));
  }
  return table;
}

std::string legend(const walk_statistics& walk, const text_style& style) {
  std::string text =
      "n: values that were measured. SD: standard deviation, divisor n - 1. IQR: interquartile "
      "range, percentiles by Hyndman "
      "and Fan, definition 5. CV: coefficient of variation (%), from 10 values on.";
  if (walk.both_feet()) {
    text += " Ratio: mean of this side / mean of the other side. R: right, L: left.";
  }
  text += " " + std::string(not_computed) +
          ": could not be computed, or is not defined for the parameter.";
  return paragraph(text, style);
}

std::string halved_note(const walk_statistics& walk, const text_style& style) {
  const std::size_t halved = halved_missing_stride_lengths(walk);
  if (halved == 0) {
    return "";
  }
  return paragraph(
      "* Half the stride length. Of " + std::to_string(walk.stride_lengths.included) +
          " included cycles, " + std::to_string(halved) +
          (halved == 1 ? " has no stride length and enters" : " have no stride length and enter") +
          " the step length as -0.5 m: its statistics are not to be trusted.",
      style);
}

std::string not_measured(const std::vector<computed_parameter>& parameters,
                         const text_style& style) {
  std::string names;
  for (const auto& parameter : parameters) {
    if (!parameter.has_values()) {
      names += (names.empty() ? "" : ", ") + parameter.row.description;
    }
  }
  return names.empty() ? "" : wrapped("  Not measured: ", names, 4, style);
}

std::string report_parameters(const walk_statistics& walk, const text_style& style) {
  const std::vector<computed_parameter> parameters = parameters_of(walk);
  std::vector<const computed_parameter*> rows;
  for (const auto& parameter : parameters) {
    if (parameter.has_values()) {
      rows.push_back(&parameter);
    }
  }
  const std::string notes = halved_note(walk, style) + not_measured(parameters, style);
  return (rows.empty() ? "" : lay_out(parameter_table(walk, rows), style) + "\n") +
         (notes.empty() ? "" : notes + "\n") + legend(walk, style);
}

// --- Swing asymmetry and quality flags

std::string report_swing_asymmetry(const walk_statistics& walk, const text_style& style) {
  const auto* record = swing_asymmetry_record(walk);
  if (record == nullptr) {
    return "";
  }
  const computed_statistics statistics = swing_asymmetry_of(*record);
  const std::string scale = std::to_string(walk.sampling_rate);
  const std::string values = "mean " + cell(statistics.mean, record->decimals) + ", SD " +
                             cell(statistics.std, record->decimals) + ", n " +
                             counted(statistics.n, "stride");
  return "\n" + heading("Swing asymmetry", style) + "\n" +
         paragraph(statistics.n > 0 ? values : "No stride has a swing on both sides.", style) +
         paragraph("(left - right) * " + scale +
                       " / (left + right) of each stride's swing: scaled by the sampling rate, " +
                       scale + " Hz, so that one percent reads as " +
                       shortest(walk.sampling_rate / 100.0) +
                       ". Above 0: the left swing is the longer one.",
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
    text += wrapped("  Note: ", note.text + " (" + note.source + ")", 4, style);
  }
  return text;
}

}  // namespace

std::string text_report(const walk_statistics& walk, const text_style& style) {
  return describe_walk(walk, style) + "\n" + report_accounting(walk, style) + "\n" +
         report_parameters(walk, style) + report_swing_asymmetry(walk, style) +
         report_quality_flags(walk, style) + report_data_checks(walk, style);
}

}  // namespace gait_report

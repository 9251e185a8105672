#include "page_data.h"

#include "citation.h"
#include "decimals.h"
#include "finding_text.h"
#include "names.h"
#include "number.h"
#include "page_files.h"
#include "page_text.h"
#include "panels.h"
#include "svg.h"

#include <gait/version.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

using kainjow::mustache::list;
using kainjow::mustache::object;

constexpr std::size_t few_values = 10;
constexpr const char* no_break_space = "\u00a0";

std::string name_of_side(const reported_side& side) { return std::string(name_of(side.foot)); }

/// A list of one element, which renders a section once with its text, or none for an empty text.
page_data text_if_any(const std::string& text) {
  list texts;
  if (!text.empty()) {
    texts.emplace_back(object{{"text", text}});
  }
  return texts;
}

const computed_parameter* find(const shown_walk& shown, std::string_view key) {
  const auto found = std::find_if(shown.parameters.begin(), shown.parameters.end(),
                                  [&](const auto& parameter) { return parameter.row.key == key; });
  return found != shown.parameters.end() ? &*found : nullptr;
}

/// A parameter that the walk has values of, with its panel.
struct shown_panel {
  const panel* row;
  const computed_parameter* parameter;
};

std::vector<shown_panel> panels_of(const shown_walk& shown) {
  std::vector<shown_panel> result;
  for (const auto& panel : panels) {
    const computed_parameter* parameter = find(shown, panel.key);
    if (parameter != nullptr && parameter->has_values()) {
      result.push_back({&panel, parameter});
    }
  }
  return result;
}

/// The sides of a parameter that are shown apart: of one for the two feet together, only one.
std::vector<const side_of_parameter*> shown_sides(const computed_parameter& parameter) {
  std::vector<const side_of_parameter*> sides;
  for (const auto& side : parameter.sides) {
    sides.push_back(&side);
  }
  if (is_of_both_feet(parameter.row)) {
    sides.resize(1);
  }
  return sides;
}

object side_names(const computed_parameter& parameter, const side_of_parameter& side) {
  if (is_of_both_feet(parameter.row)) {
    return {{"side", "cycle"}, {"letter", "R, L"}, {"side_in_words", "both feet"}};
  }
  return {{"side", name_of_side(*side.side)},
          {"letter", letter_of(*side.side)},
          {"side_in_words", name_of_side(*side.side)}};
}

// --- What the walk is

std::string description_of(const shown_walk& shown) {
  const walk_statistics& walk = shown.walk;
  std::string text = analysed_in_words(walk) + ": ";
  if (!walk.both_feet()) {
    return text + counted(walk.sides.front().cycles, "stride");
  }
  for (const auto& side : walk.sides) {
    text += std::to_string(side.cycles) + " " + name_of_side(side) + ", ";
  }
  return text + counted(shown.strides.cycles.size(), "two-feet cycle");
}

list about_of(const walk_statistics& walk) {
  list rows;
  for (const auto& row : walk.about) {
    rows.emplace_back(object{{"name", page_text(row.name)}, {"value", page_text(row.value)}});
  }
  return rows;
}

list remarks_on(const walk_statistics& walk) {
  list remarks;
  for (const auto& flag : quality_flags_in_words(walk)) {
    remarks.emplace_back(object{{"kind", "Quality flag"}, {"text", flag}});
  }
  for (const auto& finding : walk.findings) {
    remarks.emplace_back(
        object{{"kind", "Data check"},
               {"text", page_text(finding.table + ": " + in_words(finding, walk))}});
  }
  return remarks;
}

list notes_on(const walk_statistics& walk) {
  list notes;
  for (const auto& note : walk.notes) {
    notes.emplace_back(object{{"text", page_text(in_words(note))}});
  }
  return notes;
}

// --- At a glance

list counts_of(const shown_walk& shown) {
  list counts;
  for (const auto& side : shown.strides.sides) {
    counts.emplace_back(object{{"side", name_of_side(side.side)},
                               {"letter", letter_of(side.side)},
                               {"included", std::to_string(side.included)},
                               {"all", std::to_string(side.strides.size())}});
  }
  return counts;
}

/// "33.2 s", which no line breaks; "at least 33.2 s" where cycles lack the value.
std::string sum_in_words(const measured_sum& sum, const std::string& unit,
                         const std::string& otherwise) {
  return sum.sum ? (sum.without > 0 ? "at least " : "") + rounded(*sum.sum, decimals_of_sums) +
                       no_break_space + unit
                 : otherwise;
}

object tile_of(const computed_parameter& parameter) {
  list sides;
  for (const auto* side : shown_sides(parameter)) {
    const computed_statistics& statistics = side->statistics;
    object entry = side_names(parameter, *side);
    entry["mean"] = shown_number(statistics.mean, parameter.row.decimals);
    entry["sd"] = shown_number(statistics.std, parameter.row.decimals);
    entry["few"] = statistics.n < few_values ? ", n " + std::to_string(statistics.n) : "";
    sides.emplace_back(std::move(entry));
  }
  return {
      {"description", parameter.row.description}, {"unit", parameter.row.unit}, {"sides", sides}};
}

list tiles_of(const std::vector<shown_panel>& measured) {
  list tiles;
  for (const auto& [row, parameter] : measured) {
    if (row->at_a_glance == glance::tile) {
      tiles.emplace_back(tile_of(*parameter));
    }
  }
  return tiles;
}

// --- Which strides count

list legend_data(const legend& legend) {
  list entries;
  for (const auto& [sample, text] : legend) {
    entries.emplace_back(object{{"sample", sample}, {"text", page_text(text)}});
  }
  return entries;
}

object accounting_row(const std::string& label, const std::string& cycles,
                      const std::optional<double>& seconds, const std::string& note,
                      bool is_sum = false) {
  return {{"label", page_text(label)},
          {"cycles", cycles},
          {"time", shown_number(seconds, decimals_of_seconds)},
          {"note", page_text(note)},
          {"is_sum", is_sum}};
}

list accounting_of(const shown_walk& shown) {
  const walk_summary& summary = shown.summary;
  const gait_statistics_info& info = shown.walk.info();
  list rows;
  rows.emplace_back(accounting_row("Recording", "", summary.recording, ""));
  rows.emplace_back(accounting_row("Walk", std::to_string(info.cycle_count), summary.walk,
                                   "from the first sample to the last"));
  for (const auto& kind : summary.kinds) {
    rows.emplace_back(
        accounting_row(kind.label, std::to_string(kind.cycles), kind.time.sum, kind.note));
  }
  rows.emplace_back(accounting_row("Included, as accounted",
                                   std::to_string(summary.accounted_cycles),
                                   summary.accounted_duration, "the walk less what is excluded"));
  rows.emplace_back(accounting_row("In the statistics", std::to_string(info.cycles.size()),
                                   summary.time.sum, "the durations of these cycles", true));
  return rows;
}

std::string distance_in_words(const char* what, const measured_sum& sum) {
  std::string text = std::string(what) + " ";
  if (!sum.sum) {
    return text + "not measured";
  }
  text += rounded(*sum.sum, decimals_of_sums) + " m";
  return sum.without > 0 ? text + " (" + std::to_string(sum.without) + " of " +
                               counted(sum.cycles, "cycle") + " without stride length)"
                         : text;
}

std::string distances_of(const shown_walk& shown) {
  if (!shown.summary.total_distance.sum) {
    return "Distance: not measured.";
  }
  return "Distance: " + distance_in_words("in the statistics", shown.summary.distance) + ", " +
         distance_in_words("in all", shown.summary.total_distance) +
         (shown.walk.both_feet() ? ", of the right foot." : ".");
}

list exclusions_of(const shown_walk& shown) {
  list rows;
  for (const auto& exclusion : shown.strides.exclusions) {
    rows.emplace_back(
        object{{"index", std::to_string(exclusion.index)},
               {"list", std::string(name_of(exclusion.list))},
               {"reason", shown_reason(exclusion)},
               {"effect", std::string(gait_walk::words_of(exclusion.effect).in_words)}});
  }
  return rows;
}

// --- Right and left

std::string footnote_on(const std::vector<const computed_parameter*>& ratios) {
  const bool all_tell = std::all_of(ratios.begin(), ratios.end(),
                                    [](const auto* p) { return p->has_telling_ratio(); });
  return all_tell
             ? ""
             : "* The means are near 0, on both sides of it, or of a single value: their ratio "
               "says nothing. The means themselves are below.";
}

std::string asymmetry_in_words(const shown_walk& shown) {
  const auto& asymmetry = *shown.swing_asymmetry;
  if (!asymmetry.mean) {
    return "No stride in the statistics has a swing on both sides.";
  }
  return "Mean " + rounded(*asymmetry.mean, decimals_of_percent) + " %, SD " +
         shown_number(asymmetry.sd, decimals_of_percent) + ", n " + std::to_string(asymmetry.n) +
         ": " + std::string(gait_measures::direction_in_words(*asymmetry.mean)) +
         " on average. Each value is 100 (left − right) / (left + right) of the swings of a "
         "stride, "
         "in percent.";
}

page_data comparison_of(const shown_walk& shown, const std::vector<shown_panel>& measured) {
  list sections;
  if (!shown.walk.both_feet()) {
    return sections;
  }
  std::vector<const computed_parameter*> ratios;
  for (const auto& [row, parameter] : measured) {
    if (parameter->sides.front().statistics.ratio) {
      ratios.push_back(parameter);
    }
  }
  list asymmetry;
  if (shown.swing_asymmetry->mean) {
    asymmetry.emplace_back(object{{"strip", draw_swing_asymmetry(shown)}});
  }
  sections.emplace_back(object{{"has_ratios", !ratios.empty()},
                               {"ratios", ratios.empty() ? "" : draw_ratios(ratios)},
                               {"footnote", text_if_any(footnote_on(ratios))},
                               {"swing_asymmetry", asymmetry},
                               {"asymmetry_in_words", asymmetry_in_words(shown)}});
  return sections;
}

// --- Every stride

/// The scale of each panel: that of its values, or as wide as the widest of those that share its
/// height.
std::vector<gait_charts::span> scales_of(const shown_walk& shown,
                                         const std::vector<shown_panel>& measured) {
  std::vector<gait_charts::span> scales;
  std::unordered_map<std::string_view, double> widths;
  for (const auto& [row, parameter] : measured) {
    scales.push_back(scale_of(shown, *parameter));
    double& width = widths[row->shared_height];
    width = std::max(width, scales.back().to - scales.back().from);
  }
  for (std::size_t i = 0; i < measured.size(); ++i) {
    const std::string_view shared = measured[i].row->shared_height;
    if (!shared.empty()) {
      const double lacks = (widths[shared] - (scales[i].to - scales[i].from)) / 2.0;
      scales[i] = {scales[i].from - lacks, scales[i].to + lacks};
    }
  }
  return scales;
}

/// "R/L 1.004 · CV 5.1 / 5.6 %", as far as these are defined.
std::string figures_below(const computed_parameter& parameter) {
  std::string text = parameter.why_none;
  const auto& ratio = parameter.sides.front().statistics.ratio;
  if (ratio) {
    text += parameter.has_telling_ratio() ? "R/L " + rounded(*ratio, decimals_of_ratio)
                                          : "R/L says nothing: means near 0";
  }
  std::string cvs;
  for (const auto* side : shown_sides(parameter)) {
    if (side->statistics.cv) {
      cvs += (cvs.empty() ? "" : " / ") + rounded(*side->statistics.cv, decimals_of_percent);
    }
  }
  return cvs.empty() ? text : text + (text.empty() ? "" : " · ") + "CV " + cvs + " %";
}

/// What became of a stride, in words: for the script, which finds the names in the JSON.
list statuses() {
  list statuses;
  for (const auto& status : gait_walk::names<stride_status>) {
    statuses.emplace_back(
        object{{"status", std::string(status.name)}, {"words", std::string(status.in_words)}});
  }
  return statuses;
}

list panel_sides(const computed_parameter& parameter) {
  list sides;
  for (const auto* side : shown_sides(parameter)) {
    const computed_statistics& statistics = side->statistics;
    const int decimals = parameter.row.decimals;
    object entry = side_names(parameter, *side);
    entry["key"] = parameter.row.key;
    entry["mean"] = shown_number(statistics.mean, decimals);
    entry["sd"] = shown_number(statistics.std, decimals);
    entry["median"] = shown_number(statistics.median, decimals);
    entry["n"] = std::to_string(statistics.n);
    sides.emplace_back(std::move(entry));
  }
  return sides;
}

object panel_data(const shown_walk& shown, const computed_parameter& parameter,
                  gait_charts::span scale) {
  list strips;
  for (const auto& strip : draw_strips(shown, parameter, scale)) {
    strips.emplace_back(
        object{{"side", strip.side}, {"letter", strip.letter}, {"strip", strip.picture}});
  }
  return {{"description", parameter.row.description}, {"unit", parameter.row.unit},
          {"meaning", parameter.row.meaning},         {"sides", panel_sides(parameter)},
          {"below", figures_below(parameter)},        {"strips", strips}};
}

list groups_of(const shown_walk& shown, const std::vector<shown_panel>& measured) {
  const std::vector<gait_charts::span> scales = scales_of(shown, measured);
  list groups;
  for (std::size_t group = 0; group < panel_group_names.size(); ++group) {
    list members;
    for (std::size_t i = 0; i < measured.size(); ++i) {
      if (measured[i].row->group == static_cast<panel_group>(group)) {
        members.emplace_back(panel_data(shown, *measured[i].parameter, scales[i]));
      }
    }
    if (!members.empty()) {
      groups.emplace_back(
          object{{"group", std::string(panel_group_names.at(group))}, {"panels", members}});
    }
  }
  return groups;
}

std::string not_measured(const shown_walk& shown) {
  std::string names;
  for (const auto& parameter : shown.parameters) {
    if (!parameter.has_values()) {
      names += (names.empty() ? "" : ", ") + parameter.row.description;
    }
  }
  return names.empty() ? "" : "Not measured: " + names + ".";
}

// --- Numbers

/// A column of the table of numbers.
struct statistics_column {
  const char* heading;
  std::string (*cell)(const computed_parameter& /*parameter*/, const side_of_parameter& /*side*/,
                      const parameter_measures& /*measures*/);
};

template <std::optional<double> computed_statistics::*Statistic>
std::string statistic_of(const computed_parameter& parameter, const side_of_parameter& side,
                         const parameter_measures& /*measures*/) {
  return shown_number(side.statistics.*Statistic, parameter.row.decimals);
}

template <std::optional<double> parameter_measures::*Measure>
std::string measure_of(const computed_parameter& parameter, const side_of_parameter& /*side*/,
                       const parameter_measures& measures) {
  return shown_number(measures.*Measure, parameter.row.decimals);
}

std::string symmetry_cell(const computed_parameter& /*parameter*/,
                          const side_of_parameter& /*side*/, const parameter_measures& measures) {
  return shown_number(measures.symmetry_index, decimals_of_percent);
}

std::string effective_cell(const computed_parameter& /*parameter*/,
                           const side_of_parameter& /*side*/, const parameter_measures& measures) {
  return shown_number(measures.effective_strides, 0);
}

std::string count_cell(const computed_parameter& /*parameter*/, const side_of_parameter& side,
                       const parameter_measures& /*measures*/) {
  return std::to_string(side.statistics.n);
}

std::string cv_cell(const computed_parameter& /*parameter*/, const side_of_parameter& side,
                    const parameter_measures& /*measures*/) {
  return shown_number(side.statistics.cv, decimals_of_percent);
}

/// A standard error is smaller than the values: one decimal more.
std::string error_cell(const computed_parameter& parameter, const side_of_parameter& /*side*/,
                       const parameter_measures& measures) {
  return shown_number(measures.standard_error, parameter.row.decimals + 1);
}

std::string ratio_cell(const computed_parameter& parameter, const side_of_parameter& side,
                       const parameter_measures& /*measures*/) {
  return parameter.has_telling_ratio() ? shown_number(side.statistics.ratio, decimals_of_ratio)
                                       : std::string(nothing_shown);
}

constexpr std::array statistics_columns = {
    statistics_column{"n", count_cell},
    statistics_column{"Mean", statistic_of<&computed_statistics::mean>},
    statistics_column{"SD", statistic_of<&computed_statistics::std>},
    statistics_column{"Median", statistic_of<&computed_statistics::median>},
    statistics_column{"Q1", measure_of<&parameter_measures::q1>},
    statistics_column{"Q3", measure_of<&parameter_measures::q3>},
    statistics_column{"IQR", statistic_of<&computed_statistics::iqr>},
    statistics_column{"Min", statistic_of<&computed_statistics::min>},
    statistics_column{"Max", statistic_of<&computed_statistics::max>},
    statistics_column{"P5", measure_of<&parameter_measures::p5>},
    statistics_column{"P95", measure_of<&parameter_measures::p95>},
    statistics_column{"CV %", cv_cell},
    statistics_column{"Ratio", ratio_cell},
    statistics_column{"SI %", symmetry_cell},
    statistics_column{"n eff.", effective_cell},
    statistics_column{"SE", error_cell},
};

list cells_of(const shown_walk& shown, const computed_parameter& parameter,
              const side_of_parameter& side) {
  list cells;
  for (const auto& column : statistics_columns) {
    cells.emplace_back(column.cell(parameter, side, shown.measures.at(side.key)));
  }
  return cells;
}

list column_headings() {
  list headings;
  for (const auto& column : statistics_columns) {
    headings.emplace_back(object{{"column", std::string(column.heading)}});
  }
  return headings;
}

list statistics_of(const shown_walk& shown, const std::vector<shown_panel>& measured) {
  list parameters;
  for (const auto& [row, parameter] : measured) {
    const auto sides = shown_sides(*parameter);
    list rows;
    for (const auto* side : sides) {
      object entry = side_names(*parameter, *side);
      entry["is_first"] = side == sides.front();
      entry["count"] = std::to_string(sides.size());
      entry["description"] = parameter->row.description;
      entry["unit"] = parameter->row.unit;
      entry["cells"] = cells_of(shown, *parameter, *side);
      rows.emplace_back(std::move(entry));
    }
    parameters.emplace_back(object{{"rows", rows}});
  }
  return parameters;
}

object stride_data(const shown_walk& shown, std::size_t side, const walk_stride& stride,
                   const std::vector<std::size_t>& parameters) {
  const auto* exclusion = left_out_by(shown.strides, stride);
  list values;
  for (const std::size_t place : parameters) {
    const auto& value = shown.values[side][static_cast<std::size_t>(stride.index)][place];
    values.emplace_back(shown_number(value, shown.parameters[place].row.decimals));
  }
  return {{"foot", name_of_side(shown.walk.sides[side])},
          {"index", std::to_string(stride.index)},
          {"start", rounded(stride.start, decimals_of_seconds)},
          {"end", rounded(stride.end, decimals_of_seconds)},
          {"status", std::string(gait_walk::words_of(stride.status).in_words)},
          {"reason", exclusion != nullptr ? shown_reason(*exclusion) : ""},
          {"partner", stride.partner ? std::to_string(*stride.partner) : ""},
          {"values", values}};
}

/// The table of strides; none where there are so many that the page's script makes it.
page_data stride_table_of(const shown_walk& shown, const std::vector<shown_panel>& measured) {
  list tables;
  if (has_many_strides(shown)) {
    return tables;
  }
  std::vector<std::size_t> places;
  list columns;
  for (const auto& [row, parameter] : measured) {
    places.push_back(static_cast<std::size_t>(parameter - shown.parameters.data()));
    columns.emplace_back(
        object{{"description", parameter->row.description}, {"unit", parameter->row.unit}});
  }
  list strides;
  for (std::size_t side = 0; side < shown.strides.sides.size(); ++side) {
    for (const auto& stride : shown.strides.sides[side].strides) {
      strides.emplace_back(stride_data(shown, side, stride, places));
    }
  }
  tables.emplace_back(object{{"columns", columns}, {"strides", strides}});
  return tables;
}

std::size_t stride_count(const shown_walk& shown) {
  std::size_t count = 0;
  for (const auto& side : shown.strides.sides) {
    count += side.strides.size();
  }
  return count;
}

std::string heading(int level) { return "h" + std::to_string(level); }

// --- The document

/// What the words of the page mean.
struct term {
  const char* name;
  const char* meaning;
};

constexpr std::array terms = {
    term{"In the statistics", "the strides on which every figure except the accounting rests."},
    term{"n", "values that were measured, of strides in the statistics."},
    term{"SD", "standard deviation, divisor n − 1; none of a single value."},
    term{"Q1, Q3, IQR",
         "quartiles and their distance. All percentiles are those of Hyndman and Fan (1996), "
         "definition 5."},
    term{"P5, P95", "5th and 95th percentile, from 20 values on."},
    term{"CV",
         "coefficient of variation, 100 SD / mean, from 10 values on; negative where the mean is."},
    term{"Ratio, R/L",
         "mean of this side / mean of the other side; R/L: of the right side / of the left."},
    term{"SI",
         "symmetry index, 100 (R − L) / ((R + L) / 2) of the means: above 0, the right one is "
         "larger (Robinson, Herzog and Nigg, 1987)."},
    term{"n eff.",
         "effective number of strides, from 20 values on: how many independent strides would give "
         "the mean as precisely."},
    term{"SE",
         "standard error of the mean by the effective number of strides. It is about this stretch "
         "of walking: do not build a 95 % interval for the person's mean from it."},
};

std::string plural_title(const std::vector<listed_walk>& walks) {
  return walks.size() == 1 ? "Walk " + walks.front().name
                           : "Gait statistics of " + counted(walks.size(), "walk");
}

std::string policy(bool has_script) {
  using namespace page_files;
  return "default-src 'none'; style-src '" + std::string(page_css_hash) + "'" +
         (has_script ? "; script-src '" + std::string(page_js_hash) + "'" : "") +
         "; base-uri 'none'; form-action 'none'";
}

object every_document(bool has_script) {
  return {{"policy", policy(has_script)},
          {"style", std::string(page_files::page_css)},
          {"version", GAIT_STATISTICS_VERSION},
          {"citation", citation()}};
}

}  // namespace

std::string id_of_walk(std::size_t number) { return "walk-" + std::to_string(number + 1); }

page_data data_of_walk(const shown_walk& shown, std::size_t number, bool is_alone) {
  const walk_statistics& walk = shown.walk;
  const walk_summary& summary = shown.summary;
  const std::vector<shown_panel> measured = panels_of(shown);
  const list about = about_of(walk);
  const list remarks = remarks_on(walk);
  const list exclusions = exclusions_of(shown);
  const int top = is_alone ? 1 : 2;
  return object{
      {"id", id_of_walk(number)},
      {"heading_1", heading(top)},
      {"heading_2", heading(top + 1)},
      {"heading_3", heading(top + 2)},
      {"heading_4", heading(top + 3)},
      {"from", shortest(shown.time.from)},
      {"to", shortest(shown.time.to)},
      {"name", "Walk " + page_text(walk.name)},
      {"description", description_of(shown)},
      {"has_about", !about.empty()},
      {"about", about},
      {"in_the_statistics", summary.in_the_statistics},
      {"left_out", page_text(summary.left_out)},
      {"is_sound", remarks.empty()},
      {"has_remarks", !remarks.empty()},
      {"remarks", remarks},
      {"notes", notes_on(walk)},
      {"counts", counts_of(shown)},
      {"time", sum_in_words(summary.time, "s", "duration not measured")},
      {"distance", sum_in_words(summary.distance, "m", "distance not measured")},
      {"tiles", tiles_of(measured)},
      {"time_line", draw_time_line(shown)},
      {"time_axis", draw_time_axis(shown)},
      {"time_legend", legend_data(time_line_legend(shown))},
      {"accounting", accounting_of(shown)},
      {"why_they_differ", text_if_any(page_text(summary.why_they_differ))},
      {"distances", distances_of(shown)},
      {"has_exclusions", !exclusions.empty()},
      {"exclusion_count", std::to_string(exclusions.size())},
      {"exclusions", exclusions},
      {"comparison", comparison_of(shown, measured)},
      {"statuses", statuses()},
      {"strip_legend", legend_data(strip_legend(shown))},
      {"groups", groups_of(shown, measured)},
      {"not_measured", text_if_any(not_measured(shown))},
      {"columns", column_headings()},
      {"statistics", statistics_of(shown, measured)},
      {"stride_count", std::to_string(stride_count(shown))},
      {"stride_table", stride_table_of(shown, measured)},
  };
}

page_data data_of_page(const std::vector<listed_walk>& listed, const std::string& walks_in_full,
                       const std::string& json) {
  list contents;
  if (listed.size() > 1) {
    list walks;
    for (const auto& [number, name, summary] : listed) {
      walks.emplace_back(object{{"id", id_of_walk(number)}, {"name", name}, {"summary", summary}});
    }
    contents.emplace_back(object{{"walks", walks}});
  }
  list explained;
  for (const auto& [name, meaning] : terms) {
    explained.emplace_back(object{{"term", std::string(name)}, {"meaning", std::string(meaning)}});
  }
  object data = every_document(true);
  data["title"] = plural_title(listed);
  data["definitions"] = gait_charts::definitions();
  data["contents"] = contents;
  data["walks_in_full"] = walks_in_full;
  data["terms"] = explained;
  data["no_diagnosis"] =
      "This is not a medical device, and no diagnosis follows from these figures. Whether a value "
      "is normal is for the reader to judge.";
  data["file_name"] = listed.size() == 1 ? listed.front().name + ".json" : "walks.json";
  data["json"] = json;
  data["script"] = std::string(page_files::page_js);
  return data;
}

page_data data_of_index_rows(const shown_walk& shown, const std::string& file) {
  list rows;
  for (std::size_t i = 0; i < shown.strides.sides.size(); ++i) {
    const side_strides& side = shown.strides.sides[i];
    list cells;
    for (const auto& panel : panels) {
      const computed_parameter* parameter = find(shown, panel.key);
      if (panel.at_a_glance == glance::tile) {
        cells.emplace_back(parameter == nullptr ? std::string(nothing_shown)
                                                : shown_number(parameter->sides[i].statistics.mean,
                                                               parameter->row.decimals));
      }
    }
    rows.emplace_back(object{{"is_first", i == 0},
                             {"count", std::to_string(shown.strides.sides.size())},
                             {"file", file},
                             {"name", page_text(shown.walk.name)},
                             {"letter", letter_of(side.side)},
                             {"included", std::to_string(side.included)},
                             {"all", std::to_string(side.strides.size())},
                             {"cells", cells}});
  }
  const std::size_t flags = quality_flags_in_words(shown.walk).size();
  const std::size_t findings = shown.walk.findings.size();
  std::string remarks = flags > 0 ? counted(flags, "quality flag") : "";
  if (findings > 0) {
    remarks += (remarks.empty() ? "" : ", ") + counted(findings, "finding");
  }
  return object{{"rows", rows}, {"remarks", remarks.empty() ? "none" : remarks}};
}

page_data data_of_index(std::size_t walks, const std::string& rows) {
  list columns;
  for (const auto& panel : panels) {
    if (panel.at_a_glance == glance::tile) {
      const auto& all = list_parameters();
      const auto row =
          std::find_if(all.begin(), all.end(), [&](const auto& r) { return r.key == panel.key; });
      columns.emplace_back(object{{"description", row->description}, {"unit", row->unit}});
    }
  }
  object data = every_document(false);
  data["title"] = "Gait statistics of " + counted(walks, "walk");
  data["columns"] = columns;
  data["rows_of_walks"] = rows;
  return data;
}

}  // namespace gait_report

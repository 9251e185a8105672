#include "csv_output.h"

#include "csv_table.h"
#include "info_fields.h"
#include "names.h"
#include "number.h"
#include "number_text.h"
#include "parameter_measures.h"
#include "walk_strides.h"
#include "walk_summary.h"

#include <gait/version.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace gait_report {
namespace {

// --- Cells

table_cell number_cell(const std::optional<double>& value) {
  return value ? std::optional(shown_value(*value)) : value;
}

template <class Whole>
table_cell whole_cell(const std::optional<Whole>& value) {
  return value ? std::optional(static_cast<std::int64_t>(*value)) : std::nullopt;
}

template <class Whole>
table_cell whole_cell(Whole value) {
  return whole_cell(std::optional(value));
}

table_cell text_cell(std::string_view text) { return std::string(text); }

/// A float as the number that its shortest text stands for: 0.1, not 0.10000000149011612.
table_cell float_cell(float value) {
  double number = 0.0;
  gait_walk::read_number(shortest(value), number);
  return std::optional(number);
}

/// A cell as CSV text. What is missing is empty, and not quoted.
struct cell_text {
  std::string operator()(const std::optional<double>& value) const {
    return value ? shortest(*value) : "";
  }
  std::string operator()(const std::optional<std::int64_t>& value) const {
    return value ? std::to_string(*value) : "";
  }
  std::string operator()(const std::string& text) const {
    return text.empty() ? "" : gait_walk::quoted_csv_cell(text);
  }
  /// Both pandas and R read these words as truth values.
  std::string operator()(bool value) const { return value ? "TRUE" : "FALSE"; }
};

/// "first; second".
template <class Items, class InWords>
table_cell in_one_cell(const Items& items, InWords in_words) {
  std::string text;
  for (const auto& item : items) {
    text += (text.empty() ? "" : "; ") + std::string(in_words(item));
  }
  return text_cell(text);
}

/// A name that pandas and R take as it is: "Step Time" and "seconds" make "Step_Time_seconds".
std::string name_with_unit(const std::string& name, const std::string& unit) {
  std::string text;
  const std::string before_unit = unit.empty() ? name : name + "_";
  for (const char c : before_unit + unit) {
    switch (c) {
      case ' ':
        text += '_';
        break;
      case '%':
        text += "percent";
        break;
      case '/':
        text += "_per_";
        break;
      default:
        text += c;
    }
  }
  return text;
}

/// A column of a table whose rows are made of a Row.
template <class Row>
struct column {
  std::string name;
  std::string meaning;
  std::function<table_cell(const Row&)> cell;
};

// --- What all tables say of the walk

table_cell about_cell(const walk_statistics& walk) {
  return in_one_cell(walk.about, [](const auto& row) { return row.name + ": " + row.value; });
}

/// The names of the checks that the walk breaks, each once, separated by blanks.
table_cell findings_cell(const walk_statistics& walk) {
  std::string names;
  std::string last;
  for (const auto& finding : walk.findings) {
    if (finding.check != last) {
      names += (names.empty() ? "" : " ") + finding.check;
    }
    last = finding.check;
  }
  return text_cell(names);
}

table_cell rate_cell(const walk_statistics& walk) { return whole_cell(walk.sampling_rate); }

/// The cells that are the same in every row of a walk.
struct walk_cells {
  explicit walk_cells(const walk_statistics& walk)
      : name(text_cell(walk.name)),
        analysed(text_cell(words_of(walk.analysed).in_words)),
        rate(rate_cell(walk)),
        about(about_cell(walk)),
        findings(findings_cell(walk)) {}

  table_cell name, analysed, rate, about, findings;
};

// --- Parameters

struct parameter_row {
  const walk_cells& walk;
  std::string parameter;
  std::string side;
  std::string description;
  std::string unit;
  const computed_statistics& statistics;
  const parameter_measures& measures;
  std::string direction = {};
  std::string note = {};
};

const std::vector<column<parameter_row>>& parameter_columns() {
  using row = parameter_row;
  using statistics = computed_statistics;
  using measures = parameter_measures;
  const auto statistic = [](std::optional<double> statistics::*figure) {
    return [figure](const row& r) { return number_cell(r.statistics.*figure); };
  };
  const auto measure = [](std::optional<double> measures::*figure) {
    return [figure](const row& r) { return number_cell(r.measures.*figure); };
  };
  static const std::vector<column<row>> columns = {
      {"walk", "the walk's name", [](const row& r) { return r.walk.name; }},
      {"parameter",
       "the parameter's key without suffix ([parameters](parameters.md)); `asymmetry` is the swing "
       "asymmetry as the library scales it, `asymmetry_percent` the same in percent",
       [](const row& r) { return text_cell(r.parameter); }},
      {"side", "`right` or `left`; `both` for the swing asymmetry",
       [](const row& r) { return text_cell(r.side); }},
      {"description", "the parameter's name for people",
       [](const row& r) { return text_cell(r.description); }},
      {"unit",
       "unit of the figures that have no other; of the library's swing asymmetry with the sampling "
       "rate that scales it",
       [](const row& r) { return text_cell(r.unit); }},
      {"n", "number of strides in the statistics in which it was measured",
       [](const row& r) { return whole_cell(r.statistics.n); }},
      {"mean", "arithmetic mean", statistic(&statistics::mean)},
      {"median", "median", statistic(&statistics::median)},
      {"std", "standard deviation, divisor n - 1; none of a single value",
       statistic(&statistics::std)},
      {"iqr", "interquartile range, `q3` - `q1`; none of a single value",
       statistic(&statistics::iqr)},
      {"min", "smallest value", statistic(&statistics::min)},
      {"max", "largest value", statistic(&statistics::max)},
      {"cv", "coefficient of variation (%), with the sign of the mean, from 10 values on",
       statistic(&statistics::cv)},
      {"asymmetry",
       "ratio of this side's mean to that of the other; it says nothing where a mean is near 0",
       statistic(&statistics::ratio)},
      {"q1", "25th percentile ([measures](measures.md))", measure(&measures::q1)},
      {"q3", "75th percentile", measure(&measures::q3)},
      {"p5", "5th percentile, from 20 values on", measure(&measures::p5)},
      {"p95", "95th percentile, from 20 values on", measure(&measures::p95)},
      {"effective_n",
       "how many independent strides the `n` are worth, from 20 values on "
       "([measures](measures.md))",
       measure(&measures::effective_strides)},
      {"standard_error", "of the mean, by `effective_n`; of this stretch of walking alone",
       measure(&measures::standard_error)},
      {"symmetry_index",
       "100 (R - L) / ((R + L) / 2) of the means R of the right and L of the left side (%); the "
       "same in both rows",
       measure(&measures::symmetry_index)},
      {"direction", "of the mean swing asymmetry, in words",
       [](const row& r) { return text_cell(r.direction); }},
      {"analysed", "`both feet`, `left foot` or `right foot`",
       [](const row& r) { return r.walk.analysed; }},
      {"sampling_rate_hz", "sampling rate of the recording (Hz)",
       [](const row& r) { return r.walk.rate; }},
      {"note", "why there are no statistics of what was measured, where that is so",
       [](const row& r) { return text_cell(r.note); }},
      {"about", "what `about.csv` says of the walk: `name: value; name: value`",
       [](const row& r) { return r.walk.about; }},
      {"findings", "names of the [checks](checks.md) that the walk breaks, separated by blanks",
       [](const row& r) { return r.walk.findings; }},
  };
  return columns;
}

template <class Visit>
void for_each_parameter_row(const walk_statistics& walk, Visit visit) {
  const walk_cells cells(walk);
  const auto parameters = parameters_of(walk);
  const auto measures = measures_of(walk, parameters);
  for (const auto& parameter : parameters) {
    for (const auto& side : parameter.sides) {
      visit(parameter_row{cells, parameter.row.key, std::string(name_of(side.side->foot)),
                          parameter.row.description, parameter.row.unit, side.statistics,
                          measures.at(side.key), "", parameter.why_none});
    }
  }
  const parameter_measures none;
  for (const auto& shown : swing_asymmetries_of(walk)) {
    visit(parameter_row{cells, shown.key, both_sides, swing_asymmetry_description, shown.unit,
                        shown.statistics, none, shown.direction});
  }
}

// --- Walks

struct walk_row {
  const walk_statistics& walk;
  walk_cells cells;
  walk_strides strides;
  walk_summary summary;
  std::unordered_map<std::string, std::optional<double>> measured;

  /// The strides of a foot; null where it is not analysed.
  const side_strides* side(gait_walk::side foot) const {
    const auto found =
        std::find_if(strides.sides.begin(), strides.sides.end(),
                     [&](const side_strides& candidate) { return candidate.side.foot == foot; });
    return found == strides.sides.end() ? nullptr : &*found;
  }
};

/// Whether a field is the list of the cycles, for which a table of walks has no room.
template <class Field>
inline constexpr bool is_list = std::is_same_v<std::decay_t<Field>, std::list<int>>;

template <class Field>
table_cell info_cell(const walk_row& row, const char* name, const Field& value) {
  if constexpr (std::is_same_v<Field, double>) {
    return number_cell(row.measured.at(name));
  } else {
    return whole_cell(value);
  }
}

table_cell info_cell(const walk_row& row, const std::string& name) {
  table_cell cell;
  for_each_field(row.walk.info(), [&](const info_field& field, const auto& value) {
    if constexpr (!is_list<decltype(value)>) {
      if (name == field.name) {
        cell = info_cell(row, field.name, value);
      }
    }
  });
  return cell;
}

/// A count of each foot: two columns.
void add_counts(std::vector<column<walk_row>>& columns, const std::string& name,
                const std::string& meaning, const table_cell& of_no_foot,
                const std::function<table_cell(const side_strides&)>& cell) {
  for (const auto foot : {gait_walk::side::right, gait_walk::side::left}) {
    const std::string suffix(name_of(foot));
    std::string column_name = name;
    column_name.append("_").append(suffix);
    std::string column_meaning = suffix;
    column_meaning.append(" foot: ").append(meaning);
    columns.push_back({std::move(column_name), std::move(column_meaning), [=](const walk_row& row) {
                         const side_strides* side = row.side(foot);
                         return side == nullptr ? of_no_foot : cell(*side);
                       }});
  }
}

void add_info(std::vector<column<walk_row>>& columns) {
  for_each_field(gait_statistics_info(), [&](const info_field& field, const auto& value) {
    if constexpr (!is_list<decltype(value)>) {
      const std::string name = field.name;
      columns.push_back({name_with_unit(name, field.unit), field.meaning,
                         [name](const walk_row& row) { return info_cell(row, name); }});
    }
  });
}

std::vector<column<walk_row>> make_walk_columns() {
  using row = walk_row;
  std::vector<column<row>> columns = {
      {"walk", "the walk's name", [](const row& r) { return r.cells.name; }},
      {"analysed", "`both feet`, `left foot` or `right foot`",
       [](const row& r) { return r.cells.analysed; }},
      {"version", "version of the library",
       [](const row&) { return text_cell(GAIT_STATISTICS_VERSION); }},
      {"sampling_rate_hz", "sampling rate of the recording (Hz)",
       [](const row& r) { return r.cells.rate; }},
      {"settings_value", "what `--settings-value` said",
       [](const row& r) { return float_cell(r.walk.settings_value); }},
  };
  const auto whole = [](std::size_t side_strides::*count) {
    return [count](const side_strides& side) { return whole_cell(side.*count); };
  };
  const table_cell no_count = std::optional<std::int64_t>();
  add_counts(columns, "strides", "strides", no_count,
             [](const side_strides& side) { return whole_cell(side.strides.size()); });
  add_counts(columns, "included", "strides in the statistics", no_count,
             whole(&side_strides::included));
  add_counts(columns, "left_out", "strides that an exclusion takes out", no_count,
             whole(&side_strides::left_out));
  add_counts(columns, "unlinked", "strides in no two-feet cycle", no_count,
             whole(&side_strides::unlinked));
  add_counts(columns, "reasons", "why strides are left out, `19 turn; 2 start`", text_cell(""),
             [](const side_strides& side) {
               return in_one_cell(side.left_out_reasons, [](const auto& counted) {
                 return std::to_string(counted.second) +
                        (counted.first.empty() ? "" : " " + counted.first);
               });
             });
  add_info(columns);
  columns.insert(
      columns.end(),
      {{"cycles_without_stride_length", "cycles of `cycle_count` that add no distance",
        [](const row& r) { return whole_cell(r.walk.stride_lengths.without); }},
       {"included_without_stride_length", "cycles in the statistics that add no distance",
        [](const row& r) { return whole_cell(r.walk.stride_lengths.included_without); }},
       {"included_without_duration", "cycles in the statistics that add no time",
        [](const row& r) { return whole_cell(r.summary.time.without); }},
       {"quality_flags", "sum of the bits ([quality flags](quality-flags.md))",
        [](const row& r) { return whole_cell(r.walk.result().quality_flags); }},
       {"quality_flags_in_words", "a sentence for each bit",
        [](const row& r) {
          return in_one_cell(quality_flags_in_words(r.walk),
                             [](const std::string& words) { return words; });
        }},
       {"findings", "names of the [checks](checks.md) that the walk breaks, separated by blanks",
        [](const row& r) { return r.cells.findings; }},
       {"notes", "what few strides mean for the figures, strides that nothing links, and warnings",
        [](const row& r) {
          return in_one_cell(r.walk.notes, [](const auto& note) { return note.text; });
        }},
       {"about", "what `about.csv` says of the walk: `name: value; name: value`",
        [](const row& r) { return r.cells.about; }}});
  return columns;
}

const std::vector<column<walk_row>>& walk_columns() {
  static const std::vector<column<walk_row>> columns = make_walk_columns();
  return columns;
}

template <class Visit>
void for_each_walk_row(const walk_statistics& walk, Visit visit) {
  walk_strides strides = strides_of(walk);
  walk_summary summary = summary_of(walk, strides);
  auto measured = measured_fields(walk, strides);
  visit(walk_row{walk, walk_cells(walk), std::move(strides), std::move(summary),
                 std::move(measured)});
}

// --- Strides

struct stride_row {
  const walk_cells& walk;
  const walk_strides& strides;
  std::string side;
  const walk_stride& stride;
  /// By the place of the parameter among those of both feet.
  std::vector<std::optional<double>> values;
};

table_cell list_cell(const stride_row& row) {
  const auto* exclusion = left_out_by(row.strides, row.stride);
  return text_cell(exclusion == nullptr ? "" : name_of(exclusion->list));
}

table_cell reason_cell(const stride_row& row) {
  const auto* exclusion = left_out_by(row.strides, row.stride);
  return text_cell(exclusion == nullptr ? std::string() : exclusion->reason);
}

/// The exclusions that name the stride beside the one that took it out.
table_cell also_listed_cell(const stride_row& row) {
  std::vector<const listed_exclusion*> others;
  for (const std::size_t place : row.stride.exclusions) {
    const listed_exclusion& exclusion = row.strides.exclusions[place];
    if (exclusion.effect != exclusion_effect::left_out) {
      others.push_back(&exclusion);
    }
  }
  return in_one_cell(others, [](const listed_exclusion* exclusion) {
    return std::string(name_of(exclusion->list)) + ": " + exclusion->reason;
  });
}

std::optional<double> of_cycle(
    const stride_row& row,
    const std::function<std::optional<double>(const two_feet_cycle&)>& figure) {
  return row.stride.cycle == nullptr ? std::nullopt : figure(*row.stride.cycle);
}

std::vector<column<stride_row>> make_stride_columns() {
  using row = stride_row;
  std::vector<column<row>> columns = {
      {"walk", "the walk's name", [](const row& r) { return r.walk.name; }},
      {"analysed", "`both feet`, `left foot` or `right foot`",
       [](const row& r) { return r.walk.analysed; }},
      {"side", "`right` or `left`", [](const row& r) { return text_cell(r.side); }},
      {"index", "the stride's index in its foot, from 0",
       [](const row& r) { return whole_cell(r.stride.index); }},
      {"line", "line of `foot_cycles.csv`", [](const row& r) { return whole_cell(r.stride.line); }},
      {"start_seconds", "beginning of `first_sample`, from the beginning of the recording",
       [](const row& r) { return number_cell(r.stride.start); }},
      {"end_seconds", "end of `last_sample`",
       [](const row& r) { return number_cell(r.stride.end); }},
      {"status",
       "`included`: in the statistics; `left_out`: by an exclusion; `unlinked`: in no two-feet "
       "cycle",
       [](const row& r) { return text_cell(gait_walk::name_of(r.stride.status)); }},
      {"included", "whether it is in the statistics: TRUE or FALSE",
       [](const row& r) { return table_cell(r.stride.status == stride_status::included); }},
      {"list", "the exclusion list that takes it out", list_cell},
      {"reason", "the reason that the list gives", reason_cell},
      {"also_listed", "other entries that name it: `list: reason; list: reason`", also_listed_cell},
      {"two_feet_cycle", "index of the two-feet cycle that links it",
       [](const row& r) {
         const two_feet_cycle* cycle = r.stride.cycle;
         return whole_cell(cycle == nullptr ? std::nullopt : std::optional(cycle->index));
       }},
      {"partner", "index of the other foot's stride in that cycle",
       [](const row& r) { return whole_cell(r.stride.partner); }},
      {"two_feet_cycle_seconds", "that cycle's own duration",
       [](const row& r) {
         return number_cell(of_cycle(
             r, [](const two_feet_cycle& cycle) { return if_measured(cycle.values->gct); }));
       }},
      {"asymmetry_percent", "that cycle's swing asymmetry, where it is in the statistics",
       [](const row& r) {
         return number_cell(of_cycle(
             r, [](const two_feet_cycle& cycle) { return cycle.swing_asymmetry_percent; }));
       }},
  };
  std::size_t place = 0;
  for (const auto& parameter : list_parameters_of(true)) {
    columns.push_back(
        {name_with_unit(parameter.key, parameter.unit),
         "value of `" + parameter.key + "`: " + parameter.description + " (" + parameter.unit + ")",
         [place](const row& r) { return number_cell(r.values[place]); }});
    ++place;
  }
  return columns;
}

const std::vector<column<stride_row>>& stride_columns() {
  static const std::vector<column<stride_row>> columns = make_stride_columns();
  return columns;
}

/// For each parameter of both feet, its place among those that are analysed.
std::vector<std::optional<std::size_t>> places_of(bool both_feet) {
  const auto analysed = list_parameters_of(both_feet);
  std::vector<std::optional<std::size_t>> places;
  for (const auto& parameter : list_parameters_of(true)) {
    const auto found = std::find_if(analysed.begin(), analysed.end(), [&](const auto& candidate) {
      return candidate.key == parameter.key;
    });
    places.push_back(found == analysed.end()
                         ? std::nullopt
                         : std::optional(static_cast<std::size_t>(found - analysed.begin())));
  }
  return places;
}

template <class Visit>
void for_each_stride_row(const walk_statistics& walk, Visit visit) {
  const walk_cells cells(walk);
  const walk_strides strides = strides_of(walk);
  const auto places = places_of(walk.both_feet());
  for (const side_strides& side : strides.sides) {
    for (const walk_stride& stride : side.strides) {
      const auto measured = values_of(stride, walk.both_feet());
      std::vector<std::optional<double>> values;
      values.reserve(places.size());
      for (const auto& place : places) {
        values.push_back(place ? measured[*place] : std::nullopt);
      }
      visit(stride_row{cells, strides, std::string(name_of(side.side.foot)), stride,
                       std::move(values)});
    }
  }
}

// --- Tables

template <class Row>
std::vector<listed_column> listed(const std::vector<column<Row>>& columns) {
  std::vector<listed_column> list;
  list.reserve(columns.size());
  for (const auto& column : columns) {
    list.push_back({column.name, column.meaning});
  }
  return list;
}

/// Hands over rows as cells.
template <class Row>
auto cells_of(const std::vector<column<Row>>& columns, const use_row& use) {
  return [&columns, &use, cells = std::vector<table_cell>()](const Row& row) mutable {
    cells.clear();
    for (const auto& column : columns) {
      cells.push_back(column.cell(row));
    }
    use(cells);
  };
}

}  // namespace

std::vector<listed_column> columns_of(csv_table table) {
  switch (table) {
    case csv_table::walks:
      return listed(walk_columns());
    case csv_table::strides:
      return listed(stride_columns());
    case csv_table::parameters:
      break;
  }
  return listed(parameter_columns());
}

std::string csv_header(csv_table table) {
  std::string text;
  for (const auto& column : columns_of(table)) {
    text += (text.empty() ? "" : ",") + column.name;
  }
  return text + "\n";
}

void for_each_row(csv_table table, const walk_statistics& walk, const use_row& use) {
  switch (table) {
    case csv_table::parameters:
      for_each_parameter_row(walk, cells_of(parameter_columns(), use));
      break;
    case csv_table::walks:
      for_each_walk_row(walk, cells_of(walk_columns(), use));
      break;
    case csv_table::strides:
      for_each_stride_row(walk, cells_of(stride_columns(), use));
      break;
  }
}

std::string csv_rows(csv_table table, const walk_statistics& walk) {
  std::string text;
  for_each_row(table, walk, [&](const std::vector<table_cell>& row) {
    for (const table_cell& cell : row) {
      text += std::visit(cell_text(), cell);
      text += ',';
    }
    text.back() = '\n';
  });
  return text;
}

}  // namespace gait_report

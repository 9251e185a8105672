#include "json_output.h"

#include "finding_text.h"
#include "info_fields.h"
#include "names.h"
#include "number.h"
#include "parameter_measures.h"
#include "walk_strides.h"
#include "walk_summary.h"

#include <gait/version.h>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

using json = nlohmann::ordered_json;

// A number that is not finite becomes null when the document is written: JSON has no word for it.
json number(const std::optional<double>& value) {
  return value ? json(shown_value(*value)) : json(nullptr);
}

template <class Value>
json value_or_null(const std::optional<Value>& value) {
  return value ? json(*value) : json(nullptr);
}

/// A text, or null for an empty one.
json text_or_null(std::string_view text) { return text.empty() ? json(nullptr) : json(text); }

template <class Items, class AsJson>
json list_of(const Items& items, AsJson as_json) {
  json list = json::array();
  for (const auto& item : items) {
    list.push_back(as_json(item));
  }
  return list;
}

// --- The walk

json json_about(const walk_statistics& walk) {
  return list_of(walk.about, [](const auto& row) {
    return json{{"name", row.name}, {"value", row.value}};
  });
}

json json_sum(const measured_sum& sum) {
  return {{"sum", number(sum.sum)}, {"cycles", sum.cycles}, {"cycles_without", sum.without}};
}

json json_summary(const walk_summary& summary) {
  return {{"in_the_statistics", summary.in_the_statistics},
          {"left_out", summary.left_out},
          {"why_the_accounting_differs", text_or_null(summary.why_they_differ)},
          {"time", json_sum(summary.time)},
          {"distance", json_sum(summary.distance)},
          {"total_distance", json_sum(summary.total_distance)}};
}

json json_reasons(const counted_reasons& reasons) {
  return list_of(reasons, [](const auto& counted) {
    return json{{"reason", text_or_null(counted.first)}, {"count", counted.second}};
  });
}

json json_feet(const walk_strides& strides) {
  return list_of(strides.sides, [](const side_strides& side) {
    return json{
        {"foot", name_of(side.side.foot)}, {"strides", side.strides.size()},
        {"included", side.included},       {"left_out", side.left_out},
        {"unlinked", side.unlinked},       {"reasons", json_reasons(side.left_out_reasons)}};
  });
}

json json_accounting(const walk_statistics& walk, const walk_strides& strides,
                     const walk_summary& summary) {
  const auto measured = measured_fields(walk, strides);
  json object = json::object();
  for_each_field(walk.info(), [&](const info_field& field, const auto& value) {
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, double>) {
      object[field.name] = number(measured.at(field.name));
    } else {
      object[field.name] = value;
    }
  });
  object["kinds"] = list_of(summary.kinds, [](const accounted_kind& kind) {
    return json{{"kind", kind.kind},
                {"is_fallback", kind.is_fallback},
                {"cycles", kind.cycles},
                {"time", json_sum(kind.time)},
                {"reasons", json_reasons(kind.reasons)},
                {"label", kind.label},
                {"note", text_or_null(kind.note)}};
  });
  return object;
}

json json_exclusions(const walk_strides& strides) {
  return list_of(strides.exclusions, [](const listed_exclusion& exclusion) {
    const auto& effect = gait_walk::words_of(exclusion.effect);
    return json{{"list", name_of(exclusion.list)},
                {"index", exclusion.index},
                {"reason", text_or_null(exclusion.reason)},
                {"effect", effect.name},
                {"effect_in_words", effect.in_words}};
  });
}

// --- Strides and cycles, column by column: position i is stride i

template <class Cycle>
void add_status(json& object, const walk_strides& walk, const std::vector<Cycle>& cycles) {
  object["status"] =
      list_of(cycles, [](const Cycle& cycle) { return json(gait_walk::name_of(cycle.status)); });
  object["reason"] = list_of(cycles, [&](const Cycle& cycle) {
    const auto* exclusion = left_out_by(walk, cycle);
    return exclusion == nullptr ? json(nullptr) : text_or_null(exclusion->reason);
  });
  object["exclusions"] = list_of(cycles, [](const Cycle& cycle) { return json(cycle.exclusions); });
  object["line"] = list_of(cycles, [](const Cycle& cycle) { return value_or_null(cycle.line); });
}

/// The values of a foot by parameter. Those of both feet stand with the two-feet cycles.
json json_values(const std::vector<walk_stride>& strides, bool both_feet) {
  const auto parameters = list_parameters_of(both_feet);
  std::vector<json> columns(parameters.size(), json::array());
  for (const walk_stride& stride : strides) {
    const auto values = values_of(stride, both_feet);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      columns[i].push_back(number(values[i]));
    }
  }
  json object = json::object();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!is_of_both_feet(parameters[i])) {
      object[parameters[i].key] = std::move(columns[i]);
    }
  }
  return object;
}

json json_strides(const walk_strides& walk, bool both_feet) {
  return list_of(walk.sides, [&](const side_strides& side) {
    json object = {{"foot", name_of(side.side.foot)}};
    const auto column = [&](const char* name, auto as_json) {
      object[name] = list_of(side.strides, as_json);
    };
    column("start", [](const walk_stride& stride) { return json(stride.start); });
    column("end", [](const walk_stride& stride) { return json(stride.end); });
    add_status(object, walk, side.strides);
    column("two_feet_cycle", [](const walk_stride& stride) {
      return stride.cycle == nullptr ? json(nullptr) : json(stride.cycle->index);
    });
    column("partner", [](const walk_stride& stride) { return value_or_null(stride.partner); });
    object["values"] = json_values(side.strides, both_feet);
    return object;
  });
}

/// Null where one foot is analysed, which has no such cycles.
json json_two_feet_cycles(const walk_strides& walk, bool both_feet) {
  if (!both_feet) {
    return nullptr;
  }
  json object = json::object();
  const auto column = [&](const char* name, auto as_json) {
    object[name] = list_of(walk.cycles, as_json);
  };
  column("right", [](const two_feet_cycle& cycle) { return value_or_null(cycle.right); });
  column("left", [](const two_feet_cycle& cycle) { return value_or_null(cycle.left); });
  column("gct", [](const two_feet_cycle& cycle) { return number(if_measured(cycle.values->gct)); });
  column("DS", [](const two_feet_cycle& cycle) { return number(if_measured(cycle.values->ds)); });
  add_status(object, walk, walk.cycles);
  column("asymmetry", [](const two_feet_cycle& cycle) { return number(cycle.swing_asymmetry); });
  return object;
}

// --- What was found

json json_places(const walk_statistics& walk, const gait_checks::finding& finding) {
  return list_of(finding.places, [&](const auto& place) {
    return json{{"foot", text_or_null(place.foot)},
                {"index", place.index},
                {"line", value_or_null(line_of(walk, place))},
                {"cycle", value_or_null(place.cycle)}};
  });
}

json json_findings(const walk_statistics& walk) {
  return list_of(walk.findings, [&](const auto& finding) {
    return json{{"check", finding.check},
                {"table", finding.table},
                {"column", finding.column},
                {"broken", finding.broken},
                {"compared", finding.compared},
                {"counted", finding.counted},
                {"text", finding.text},
                {"guess", text_or_null(finding.guess)},
                {"usual_cause", finding.usual_cause},
                {"remedy", text_or_null(finding.remedy)},
                {"sentence", in_words(finding, walk)},
                {"places", json_places(walk, finding)}};
  });
}

json json_notes(const walk_statistics& walk) {
  return list_of(walk.notes, [](const auto& note) {
    return json{{"name", note.name}, {"text", note.text}, {"source", text_or_null(note.source)}};
  });
}

// --- Parameters

json json_parameter(const std::string& parameter, std::string_view side,
                    const std::string& description, const std::string& unit, int decimals,
                    const computed_statistics& statistics, const parameter_measures& measures) {
  return {{"parameter", parameter},
          {"side", side},
          {"description", description},
          {"unit", unit},
          {"decimals", decimals},
          {"n", statistics.n},
          {"mean", number(statistics.mean)},
          {"median", number(statistics.median)},
          {"std", number(statistics.std)},
          {"iqr", number(statistics.iqr)},
          {"min", number(statistics.min)},
          {"max", number(statistics.max)},
          {"cv", number(statistics.cv)},
          {"asymmetry", number(statistics.ratio)},
          {"q1", number(measures.q1)},
          {"q3", number(measures.q3)},
          {"p5", number(measures.p5)},
          {"p95", number(measures.p95)},
          {"effective_n", number(measures.effective_strides)},
          {"standard_error", number(measures.standard_error)},
          {"symmetry_index", number(measures.symmetry_index)}};
}

json json_parameters(const walk_statistics& walk) {
  json object = json::object();
  const auto measures = measures_of(walk);
  for (const auto& parameter : parameters_of(walk)) {
    const listed_parameter& row = parameter.row;
    for (const auto& side : parameter.sides) {
      json shown = json_parameter(row.key, name_of(side.side->foot), row.description, row.unit,
                                  row.decimals, side.statistics, measures.at(side.key));
      shown["note"] = text_or_null(parameter.why_none);
      shown["direction"] = nullptr;
      object[side.key] = std::move(shown);
    }
  }
  for (const auto& asymmetry : swing_asymmetries_of(walk)) {
    json shown =
        json_parameter(asymmetry.key, both_sides, swing_asymmetry_description, asymmetry.unit,
                       swing_asymmetry_record(walk)->decimals, asymmetry.statistics, {});
    shown["note"] = nullptr;
    shown["direction"] = text_or_null(asymmetry.direction);
    object[asymmetry.key] = std::move(shown);
  }
  return object;
}

// --- As the library has it

json json_record(const gait_statistics_parameter& record) {
  return {{"valid", record.valid},
          {"description", record.description},
          {"unit", record.unit},
          {"decimals", record.decimals},
          {"mean", record.mean},
          {"median", record.median},
          {"std", record.std},
          {"iqr", record.iqr},
          {"min", record.min},
          {"max", record.max},
          {"cv", record.cv},
          {"asymmetry_enabled", record.asymmetry_enabled},
          {"asymmetry", record.asymmetry}};
}

/// Every field of the library's records but the values, which stand with the strides.
json json_as_computed(const walk_statistics& walk) {
  json info = json::object();
  for_each_field(walk.info(),
                 [&](const info_field& field, const auto& value) { info[field.name] = value; });
  json records = json::object();
  for (const auto& parameter : parameters_of(walk)) {
    for (const auto& side : parameter.sides) {
      records[side.key] = json_record(*side.record);
    }
  }
  if (const auto* asymmetry = swing_asymmetry_record(walk)) {
    records[swing_asymmetry_key] = json_record(*asymmetry);
  }
  return {{"info", std::move(info)},
          {"parameters", std::move(records)},
          {"quality_flags", walk.result().quality_flags}};
}

/// The unit of every figure that does not stand beside its own.
json json_units() {
  json units = {{"start", "seconds"},
                {"end", "seconds"},
                {"time", "seconds"},
                {"distance", "meters"},
                {"sampling_rate", "Hz"}};
  for_each_field(gait_statistics_info(), [&](const info_field& field, const auto& /*value*/) {
    if (*field.unit != '\0') {
      units[field.name] = field.unit;
    }
  });
  for (const auto& parameter : list_parameters_of(true)) {
    units[parameter.key] = parameter.unit;
  }
  units[swing_asymmetry_percent_key] = "%";
  units["cv"] = "%";
  units["symmetry_index"] = "%";
  return units;
}

std::string text_of(const json& value, json_layout layout) {
  // A folder's name need not be UTF-8, which JSON must be.
  return value.dump(layout == json_layout::indented ? 2 : -1, ' ', false,
                    json::error_handler_t::replace);
}

}  // namespace

json json_walk(const walk_statistics& walk) {
  const walk_strides strides = strides_of(walk);
  const walk_summary summary = summary_of(walk, strides);
  return {{"walk", walk.name},
          {"about", json_about(walk)},
          {"analysed", words_of(walk.analysed).in_words},
          {"sampling_rate", walk.sampling_rate},
          {"settings_value", walk.settings_value},
          {"summary", json_summary(summary)},
          {"feet", json_feet(strides)},
          {"accounting", json_accounting(walk, strides, summary)},
          {"exclusions", json_exclusions(strides)},
          {"quality_flags", walk.result().quality_flags},
          {"quality_flags_in_words", quality_flags_in_words(walk)},
          {"findings", json_findings(walk)},
          {"notes", json_notes(walk)},
          {"parameters", json_parameters(walk)},
          {"strides", json_strides(strides, walk.both_feet())},
          {"two_feet_cycles", json_two_feet_cycles(strides, walk.both_feet())},
          {"as_computed", json_as_computed(walk)}};
}

json_frame frame_of_json(json_layout layout) {
  const std::string document = text_of(
      {{"version", GAIT_STATISTICS_VERSION}, {"units", json_units()}, {"walks", json::array()}},
      layout);
  const std::size_t first_walk = document.rfind(']');
  return {document.substr(0, first_walk), ",",
          (layout == json_layout::indented ? "\n  " : "") + document.substr(first_walk) + "\n"};
}

std::string json_in_document(const json& walk, json_layout layout) {
  std::string text = text_of(walk, layout);
  if (layout == json_layout::compact) {
    return text;
  }
  const std::string line_break = "\n    ";
  std::string indented = line_break;
  indented.reserve(2 * text.size());
  // Within the texts of JSON a line break is an escape sequence.
  for (const char c : text) {
    if (c == '\n') {
      indented += line_break;
    } else {
      indented += c;
    }
  }
  return indented;
}

std::string json_document(const std::vector<json>& walks, json_layout layout) {
  const json_frame frame = frame_of_json(layout);
  std::string document = frame.beginning;
  for (const json& walk : walks) {
    document += (&walk == &walks.front() ? "" : frame.between) + json_in_document(walk, layout);
  }
  return document + frame.end;
}

}  // namespace gait_report

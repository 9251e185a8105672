#include "json_output.h"

#include "finding_text.h"
#include "info_fields.h"
#include "names.h"
#include "number.h"

#include <gait/version.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

using json = nlohmann::ordered_json;

// A number that is not finite becomes null when the document is written: JSON has no word for it.
json number(const std::optional<double>& value) {
  return value ? json(shown_value(*value)) : json(nullptr);
}

json json_info(const walk_statistics& walk) {
  json object = json::object();
  for_each_field(walk.info(), [&](const char* name, const auto& value) { object[name] = value; });
  if (!walk.recording_length_is_known) {
    object["recording_duration"] = nullptr;
  }
  return object;
}

json json_about(const walk_statistics& walk) {
  json list = json::array();
  for (const auto& row : walk.about) {
    list.push_back({{"name", row.name}, {"value", row.value}});
  }
  return list;
}

/// A text, or null for an empty one.
json text_or_null(std::string_view text) { return text.empty() ? json(nullptr) : json(text); }

json json_places(const walk_statistics& walk, const gait_checks::finding& finding) {
  json list = json::array();
  for (const auto& place : finding.places) {
    const auto line = line_of(walk, place);
    list.push_back({{"foot", text_or_null(place.foot)},
                    {"index", place.index},
                    {"line", line ? json(*line) : json(nullptr)},
                    {"cycle", place.cycle ? json(*place.cycle) : json(nullptr)}});
  }
  return list;
}

json json_findings(const walk_statistics& walk) {
  json list = json::array();
  for (const auto& finding : walk.findings) {
    list.push_back({{"check", finding.check},
                    {"table", finding.table},
                    {"column", finding.column},
                    {"broken", finding.broken},
                    {"compared", finding.compared},
                    {"counted", finding.counted},
                    {"text", finding.text},
                    {"guess", text_or_null(finding.guess)},
                    {"usual_cause", finding.usual_cause},
                    {"remedy", text_or_null(finding.remedy)},
                    {"places", json_places(walk, finding)}});
  }
  return list;
}

json json_notes(const walk_statistics& walk) {
  json list = json::array();
  for (const auto& note : walk.notes) {
    list.push_back({{"name", note.name}, {"text", note.text}, {"source", note.source}});
  }
  return list;
}

json json_feet(const std::vector<reported_side>& sides) {
  json list = json::array();
  for (const auto& side : sides) {
    list.push_back({{"foot", name_of(side.foot)}, {"cycles", side.cycles}});
  }
  return list;
}

json json_stride_lengths(const stride_length_gaps& gaps) {
  return {{"cycles", gaps.cycles},
          {"cycles_without", gaps.without},
          {"included_cycles", gaps.included},
          {"included_cycles_without", gaps.included_without}};
}

enum class minus_one { is_missing, is_a_number };

json json_values(const std::vector<double>& values, minus_one meaning) {
  json list = json::array();
  for (const double value : values) {
    const bool missing = meaning == minus_one::is_missing && gait_is_missing(value);
    list.push_back(missing ? json(nullptr) : json(shown_value(value)));
  }
  return list;
}

json json_parameter(const std::string& parameter, const json& side,
                    const gait_statistics_parameter& record, const computed_statistics& statistics,
                    json values) {
  return {{"parameter", parameter},
          {"side", side},
          {"valid", record.valid},
          {"description", record.description},
          {"unit", record.unit},
          {"decimals", record.decimals},
          {"n", statistics.n},
          {"mean", number(statistics.mean)},
          {"median", number(statistics.median)},
          {"std", number(statistics.std)},
          {"iqr", number(statistics.iqr)},
          {"min", number(statistics.min)},
          {"max", number(statistics.max)},
          {"cv", number(statistics.cv)},
          {"asymmetry_enabled", record.asymmetry_enabled},
          {"asymmetry", number(statistics.ratio)},
          {"values", std::move(values)}};
}

json json_parameters(const walk_statistics& walk) {
  json object = json::object();
  for (const auto& parameter : parameters_of(walk)) {
    for (const auto& side : parameter.sides) {
      object[side.key] =
          json_parameter(parameter.row.key, name_of(side.side->foot), *side.record, side.statistics,
                         json_values(side.record->values, minus_one::is_missing));
    }
  }
  if (const auto* asymmetry = swing_asymmetry_record(walk)) {
    object[swing_asymmetry_key] =
        json_parameter(swing_asymmetry_key, nullptr, *asymmetry, swing_asymmetry_of(*asymmetry),
                       json_values(asymmetry->values, minus_one::is_a_number));
  }
  return object;
}

}  // namespace

json json_walk(const walk_statistics& walk) {
  return {{"walk", walk.name},
          {"about", json_about(walk)},
          {"analysed", words_of(walk.analysed).in_words},
          {"feet", json_feet(walk.sides)},
          {"sampling_rate", walk.sampling_rate},
          {"settings_value", walk.settings_value},
          {"info", json_info(walk)},
          {"stride_lengths", json_stride_lengths(walk.stride_lengths)},
          {"quality_flags", walk.result().quality_flags},
          {"quality_flags_in_words", quality_flags_in_words(walk)},
          {"findings", json_findings(walk)},
          {"notes", json_notes(walk)},
          {"parameters", json_parameters(walk)}};
}

std::string json_document(std::vector<json> walks) {
  json document = {{"version", GAIT_STATISTICS_VERSION}};
  document["walks"] = std::move(walks);
  // A folder's name need not be UTF-8, which JSON must be.
  return document.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace gait_report

#include "json_output.h"

#include <gait/version.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gait_program {
namespace {

using json = nlohmann::ordered_json;

// A number that is not finite becomes null when the document is written: JSON has no word for it.
json number(const std::optional<double>& value) { return value ? json(*value) : json(nullptr); }

json json_info(const gait_statistics_info& info) {
  return {{"recording_duration", info.recording_duration},
          {"duration", info.duration},
          {"excluded_1_fallback_gct_sum", info.excluded_1_fallback_gct_sum},
          {"excluded_2_gct_sum", info.excluded_2_gct_sum},
          {"included_gct_sum", info.included_gct_sum},
          {"included_distance", info.included_distance},
          {"total_distance", info.total_distance},
          {"cycle_count", info.cycle_count},
          {"excluded_count", info.excluded_count},
          {"cycles", info.cycles},
          {"excluded_2_fallback_count", info.excluded_2_fallback_count},
          {"excluded_2_count", info.excluded_2_count},
          {"excluded_1_fallback_count", info.excluded_1_fallback_count},
          {"excluded_1_count", info.excluded_1_count},
          {"included_count", info.included_count},
          {"excluded_2_fallback_duration", info.excluded_2_fallback_duration},
          {"excluded_2_duration", info.excluded_2_duration},
          {"excluded_1_fallback_duration", info.excluded_1_fallback_duration},
          {"excluded_1_duration", info.excluded_1_duration},
          {"included_duration", info.included_duration}};
}

json json_feet(const std::vector<reported_foot>& feet) {
  json list = json::array();
  for (const auto& foot : feet) {
    list.push_back({{"foot", foot.name}, {"cycles", foot.cycles}});
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
    list.push_back(missing ? json(nullptr) : json(value));
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
          json_parameter(parameter.row.key, side.side->name, *side.record, side.statistics,
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
          {"analysed", walk.both_feet ? "both feet" : walk.sides.front().name + " foot"},
          {"feet", json_feet(walk.feet)},
          {"sampling_rate", walk.sampling_rate},
          {"settings_value", walk.settings_value},
          {"info", json_info(walk.info())},
          {"stride_lengths", json_stride_lengths(walk.stride_lengths)},
          {"quality_flags", walk.result().quality_flags},
          {"quality_flags_in_words", quality_flags_in_words(walk)},
          {"parameters", json_parameters(walk)}};
}

std::string json_document(std::vector<json> walks) {
  json document = {{"version", GAIT_STATISTICS_VERSION}};
  document["walks"] = std::move(walks);
  // A folder's name need not be UTF-8, which JSON must be.
  return document.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace gait_program

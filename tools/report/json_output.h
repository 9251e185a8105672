#ifndef TOOLS_REPORT_JSON_OUTPUT_H
#define TOOLS_REPORT_JSON_OUTPUT_H

/// \file
/// Everything that is computed of walks, unrounded, as one JSON document.

#include "walk_statistics.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace gait_report {

/// One walk as an object. What is missing, NaN or infinite is null.
nlohmann::ordered_json json_walk(const walk_statistics& walk);

/// Whether a document is laid out for people, or as short as it can be.
enum class json_layout { indented, compact };

/// The document: the version, and the walks, of which there must be one.
std::string json_document(const std::vector<nlohmann::ordered_json>& walks,
                          json_layout layout = json_layout::indented);

/// A document in parts, for walks that are written as they come.
struct json_frame {
  std::string beginning;  ///< before the first walk
  std::string between;    ///< two walks
  std::string end;        ///< after the last walk
};
json_frame frame_of_json(json_layout layout = json_layout::indented);

/// A walk as it stands in the document.
std::string json_in_document(const nlohmann::ordered_json& walk,
                             json_layout layout = json_layout::indented);

}  // namespace gait_report

#endif

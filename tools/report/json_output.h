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

/// The document: the version, and the walks.
std::string json_document(std::vector<nlohmann::ordered_json> walks,
                          json_layout layout = json_layout::indented);

}  // namespace gait_report

#endif

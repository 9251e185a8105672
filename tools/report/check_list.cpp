#include "check_list.h"

#include "csv_table.h"
#include "walk_checks.h"

#include <nlohmann/json.hpp>

#include <string>

namespace gait_report {
namespace {

using gait_walk::quoted_csv_cell;

std::string as_text(const text_style& style) {
  std::string text;
  for (const auto kind : gait_checks::kinds) {
    text += (text.empty() ? "" : "\n") + heading("Checks of " + std::string(name_of(kind)), style) +
            "\n";
    for (const auto& check : gait_checks::list_checks()) {
      if (check.what == kind) {
        const std::string words = check.compared + "; tolerance: " + check.tolerance +
                                  ". Usually: " + check.usual_cause + ". Source: " + check.source +
                                  ".";
        text += wrapped("  " + check.name + ": ", words, 6, style);
      }
    }
  }
  return text;
}

std::string as_csv() {
  std::string text = "check,kind,compared,tolerance,usual_cause,source\n";
  for (const auto& check : gait_checks::list_checks()) {
    text += quoted_csv_cell(check.name) + "," + quoted_csv_cell(name_of(check.what)) + "," +
            quoted_csv_cell(check.compared) + "," + quoted_csv_cell(check.tolerance) + "," +
            quoted_csv_cell(check.usual_cause) + "," + quoted_csv_cell(check.source) + "\n";
  }
  return text;
}

std::string as_json() {
  auto list = nlohmann::ordered_json::array();
  for (const auto& check : gait_checks::list_checks()) {
    list.push_back({{"check", check.name},
                    {"kind", name_of(check.what)},
                    {"compared", check.compared},
                    {"tolerance", check.tolerance},
                    {"usual_cause", check.usual_cause},
                    {"source", check.source}});
  }
  return list.dump(2) + "\n";
}

}  // namespace

std::string print_check_list(output_format format, const text_style& style) {
  switch (format) {
    case output_format::csv:
      return as_csv();
    case output_format::json:
      return as_json();
    case output_format::html:  // a page shows walks, and the command line refuses it for lists
    case output_format::table:
      break;
  }
  return as_text(style);
}

}  // namespace gait_report

#include "parameter_list.h"

#include "csv_table.h"
#include "parameter_meanings.h"

#include <gait/catalogue.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

namespace gait_report {
namespace {

using gait_catalogue::built;
using gait_walk::quoted_csv_cell;

std::string words(built when) {
  switch (when) {
    case built::with_both_feet:
      return "both feet";
    case built::with_one_foot:
      return "one foot";
    case built::always:
      break;
  }
  return "always";
}

std::string yes_or_no(bool value) { return value ? "yes" : "no"; }

std::string as_table(const text_style& style) {
  flowing_table table;
  table.label_heading = "Parameter";
  column_group key{"Key", alignment::left, {{}}};
  column_group unit{"Unit", alignment::left, {{}}};
  column_group decimals{"Decimals", alignment::right, {{}}};
  column_group ratio{"Ratio", alignment::left, {{}}};
  column_group cv{"CV", alignment::left, {{}}};
  column_group when{"Analysed", alignment::left, {{}}};
  for (const auto& row : list_parameters()) {
    table.labels.push_back(row.description);
    key.columns[0].push_back(row.key);
    unit.columns[0].push_back(row.unit);
    decimals.columns[0].push_back(std::to_string(row.decimals));
    ratio.columns[0].push_back(yes_or_no(row.has_ratio));
    cv.columns[0].push_back(yes_or_no(row.has_cv));
    when.columns[0].push_back(words(row.when));
  }
  table.groups = {key, unit, decimals, ratio, cv, when};
  return lay_out(table, style);
}

std::string as_csv() {
  std::string text = "key,description,unit,decimals,ratio,cv,analysed\n";
  for (const auto& row : list_parameters()) {
    text += quoted_csv_cell(row.key) + "," + quoted_csv_cell(row.description) + "," +
            quoted_csv_cell(row.unit) + "," + std::to_string(row.decimals) + "," +
            yes_or_no(row.has_ratio) + "," + yes_or_no(row.has_cv) + "," +
            quoted_csv_cell(words(row.when)) + "\n";
  }
  return text;
}

std::string as_json() {
  auto list = nlohmann::ordered_json::array();
  for (const auto& row : list_parameters()) {
    list.push_back({{"key", row.key},
                    {"description", row.description},
                    {"unit", row.unit},
                    {"decimals", row.decimals},
                    {"ratio", row.has_ratio},
                    {"cv", row.has_cv},
                    {"analysed", words(row.when)}});
  }
  return list.dump(2) + "\n";
}

}  // namespace

std::vector<listed_parameter> list_parameters() {
  std::vector<listed_parameter> list;
  gait_catalogue::for_each_row([&](const auto& row) {
    using tag = typename std::decay_t<decltype(row)>::tag_type;
    list.push_back({row.key, row.description, row.unit, row.decimals,
                    row.sides == gait_catalogue::ratio, row.spread == gait_catalogue::cv, row.when,
                    meaning_of<tag>.sentence});
  });
  return list;
}

std::vector<listed_parameter> list_parameters_of(bool both_feet) {
  std::vector<listed_parameter> list = list_parameters();
  list.erase(std::remove_if(
                 list.begin(), list.end(),
                 [&](const auto& row) { return !gait_catalogue::is_built(row.when, both_feet); }),
             list.end());
  return list;
}

std::string print_parameter_list(output_format format, const text_style& style) {
  switch (format) {
    case output_format::csv:
      return as_csv();
    case output_format::json:
      return as_json();
    case output_format::html:  // a page shows walks, and the command line refuses it for lists
    case output_format::table:
      break;
  }
  return as_table(style);
}

}  // namespace gait_report

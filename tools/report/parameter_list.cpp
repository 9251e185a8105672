#include "parameter_list.h"

#include "parameter_meanings.h"
#include "printed_list.h"

#include <gait/catalogue.h>

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

namespace gait_report {
namespace {

using gait_catalogue::built;

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
    when.columns[0].push_back(in_words(row.when));
  }
  table.groups = {key, unit, decimals, ratio, cv, when};
  return lay_out(table, style);
}

std::vector<listed_parameter> make_list() {
  std::vector<listed_parameter> list;
  gait_catalogue::for_each_row([&](const auto& row) {
    using tag = typename std::decay_t<decltype(row)>::tag_type;
    list.push_back({row.key, row.description, row.unit, row.decimals,
                    row.sides == gait_catalogue::ratio, row.spread == gait_catalogue::cv, row.when,
                    meaning_of<tag>.sentence});
  });
  return list;
}

std::vector<listed_parameter> built_ones(bool both_feet) {
  std::vector<listed_parameter> list = make_list();
  list.erase(std::remove_if(
                 list.begin(), list.end(),
                 [&](const auto& row) { return !gait_catalogue::is_built(row.when, both_feet); }),
             list.end());
  return list;
}

}  // namespace

std::string in_words(built when) {
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

const std::vector<listed_parameter>& list_parameters() {
  static const std::vector<listed_parameter> all = make_list();
  return all;
}

const std::vector<listed_parameter>& list_parameters_of(bool both_feet) {
  static const std::vector<listed_parameter> of_both = built_ones(true);
  static const std::vector<listed_parameter> of_one = built_ones(false);
  return both_feet ? of_both : of_one;
}

std::string print_parameter_list(output_format format, const text_style& style) {
  printed_list list;
  list.columns = {"key", "description", "unit", "decimals", "ratio", "cv", "analysed"};
  for (const auto& row : list_parameters()) {
    list.rows.push_back({row.key, row.description, row.unit, row.decimals, row.has_ratio,
                         row.has_cv, in_words(row.when)});
  }
  return print(list, format, [&] { return as_table(style); });
}

}  // namespace gait_report

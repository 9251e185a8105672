#include "csv_output.h"

#include "csv_table.h"
#include "names.h"
#include "number.h"

#include <optional>
#include <string>

namespace gait_report {
namespace {

std::string csv_number(const std::optional<double>& value) { return value ? shortest(*value) : ""; }

/// "name: value; name: value".
std::string about_in_one_cell(const walk_statistics& walk) {
  std::string text;
  for (const auto& row : walk.about) {
    text += (text.empty() ? "" : "; ") + row.name + ": " + row.value;
  }
  return text;
}

/// The names of the checks that the walk breaks, each once, separated by blanks.
std::string names_of_findings(const walk_statistics& walk) {
  std::string names;
  std::string last;
  for (const auto& finding : walk.findings) {
    if (finding.check != last) {
      names += (names.empty() ? "" : " ") + finding.check;
    }
    last = finding.check;
  }
  return names;
}

/// An empty cell is not quoted.
std::string quoted(const std::string& cell) {
  return cell.empty() ? "" : gait_walk::quoted_csv_cell(cell);
}

std::string row(const walk_statistics& walk, const std::string& parameter, const std::string& side,
                const gait_statistics_parameter& record, const computed_statistics& statistics) {
  std::string text;
  for (const auto& cell : {walk.name, parameter, side, record.description, record.unit}) {
    text += quoted(cell) + ",";
  }
  text += std::to_string(statistics.n);
  for (const auto& value : {statistics.mean, statistics.median, statistics.std, statistics.iqr,
                            statistics.min, statistics.max, statistics.cv, statistics.ratio}) {
    text += "," + csv_number(value);
  }
  return text + "," + quoted(about_in_one_cell(walk)) + "," + quoted(names_of_findings(walk)) +
         "\n";
}

}  // namespace

std::string csv_header() {
  return "walk,parameter,side,description,unit,n,mean,median,std,iqr,min,max,cv,asymmetry,about,"
         "findings\n";
}

std::string csv_rows(const walk_statistics& walk) {
  std::string text;
  for (const auto& parameter : parameters_of(walk)) {
    for (const auto& side : parameter.sides) {
      text += row(walk, parameter.row.key, std::string(name_of(side.side->foot)), *side.record,
                  side.statistics);
    }
  }
  if (const auto* asymmetry = swing_asymmetry_record(walk)) {
    text += row(walk, swing_asymmetry_key, "", *asymmetry, swing_asymmetry_of(*asymmetry));
  }
  return text;
}

}  // namespace gait_report

#include "printed_list.h"

#include "csv_table.h"

#include <nlohmann/json.hpp>

#include <cstddef>

namespace gait_report {
namespace {

std::string csv_cell(const std::string& text) { return gait_walk::quoted_csv_cell(text); }
std::string csv_cell(int number) { return std::to_string(number); }
std::string csv_cell(bool value) { return value ? "yes" : "no"; }

}  // namespace

std::string as_csv(const printed_list& list) {
  std::string text;
  for (const std::string& column : list.columns) {
    text += (text.empty() ? "" : ",") + column;
  }
  text += "\n";
  for (const auto& row : list.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      text += i == 0 ? "" : ",";
      text += std::visit([](const auto& value) { return csv_cell(value); }, row[i]);
    }
    text += "\n";
  }
  return text;
}

std::string as_json(const printed_list& list) {
  auto array = nlohmann::ordered_json::array();
  for (const auto& row : list.rows) {
    nlohmann::ordered_json object;
    for (std::size_t i = 0; i < row.size(); ++i) {
      std::visit([&](const auto& value) { object[list.columns[i]] = value; }, row[i]);
    }
    array.push_back(std::move(object));
  }
  return array.dump(2) + "\n";
}

}  // namespace gait_report

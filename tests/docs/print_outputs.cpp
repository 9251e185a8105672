// Prints the tables of docs/output.md: the columns of each CSV table as the program writes them,
// and the keys of JSON as docs/output.schema.json describes them. scripts/update-docs puts them in
// their places.

#include <csv_output.h>
#include <names.h>
#include <output_format.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <iostream>
#include <string>

namespace {

using json = nlohmann::ordered_json;

void print_columns(gait_report::csv_table table) {
  std::cout << "| Column | |\n|---|---|\n";
  for (const auto& column : gait_report::columns_of(table)) {
    std::cout << "| `" << column.name << "` | " << column.meaning << " |\n";
  }
}

/// What a key holds: its own description, or else that of the definition that it refers to.
std::string meaning_of(const json& key, const json& definitions) {
  if (key.contains("description")) {
    return key["description"];
  }
  if (key.contains("$ref")) {
    const std::string reference = key["$ref"];
    return meaning_of(definitions.at(reference.substr(reference.rfind('/') + 1)), definitions);
  }
  return "";
}

void print_keys(const json& object, const json& definitions) {
  std::cout << "| Key | |\n|---|---|\n";
  for (const auto& [name, key] : object.at("properties").items()) {
    std::cout << "| `" << name << "` | " << meaning_of(key, definitions) << " |\n";
  }
}

int usage() {
  std::cerr << "usage: print_outputs csv TABLE | json DEFINITION SCHEMA\n";
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 2 ? argv[1] : "";
  if (what == "csv" && argc == 3) {
    const auto table = gait_walk::value_named<gait_report::csv_table>(argv[2]);
    if (!table) {
      return usage();
    }
    print_columns(*table);
    return 0;
  }
  if (what == "json" && argc == 4) {
    std::ifstream file(argv[3]);
    const json schema = json::parse(file);
    const json& definitions = schema.at("$defs");
    print_keys(std::string(argv[2]) == "document" ? schema : definitions.at(argv[2]), definitions);
    return 0;
  }
  return usage();
}

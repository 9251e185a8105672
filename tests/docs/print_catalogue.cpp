// Prints what the documentation says about the catalogue: `page` is docs/parameters.md, `table` the
// table in docs/definitions.md. scripts/update-docs puts both where they belong.

#include <gait/catalogue.h>

#include <columns.h>
#include <parameter_meanings.h>
#include <text_layout.h>

#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace {

/// The name of a field is that of its column in a walk folder.
std::string field_name(double gait_foot_cycle::*source) {
  using member = double gait_walk::foot_cycle_row::*;
  for (const auto& column : gait_walk::columns<gait_walk::foot_cycle_row>) {
    const auto* field = std::get_if<member>(&column.member);
    if (field != nullptr && *field == member(source)) {
      return "`" + std::string(column.name) + "`";
    }
  }
  throw std::logic_error("a field is not a column of a walk folder");
}

std::string field_name(double gait_feet_cycle::*source) {
  return source == &gait_feet_cycle::ds ? "`ds` (two feet)" : "`gct` (two feet)";
}

/// The column "Field" for a row.
template <class Row>
std::string source_of(const Row& row) {
  if constexpr (std::is_member_object_pointer_v<decltype(row.source)>) {
    return field_name(row.source);
  } else {
    constexpr auto meaning = gait_report::meaning_of<typename Row::tag_type>;
    static_assert(meaning.formula != nullptr,
                  "a parameter that a function computes has no formula in parameter_meanings.h");
    return meaning.formula;
  }
}

const char* yes_or_no(bool value) { return value ? "yes" : "no"; }

const char* built(gait_catalogue::built when) {
  switch (when) {
    case gait_catalogue::with_both_feet:
      return "both feet";
    case gait_catalogue::with_one_foot:
      return "one foot";
    case gait_catalogue::always:
      break;
  }
  return "always";
}

/// What follows the name of a parameter that not every analysis has.
std::string mode_note(gait_catalogue::built when) {
  return when == gait_catalogue::always ? "" : " (" + std::string(built(when)) + ")";
}

void print_table() {
  std::cout << "| Parameter | Key | Unit | Decimals | Ratio | CV | Built | Field | Tag |\n"
               "|---|---|---|---|---|---|---|---|---|\n";
  gait_catalogue::for_each_row([](const auto& row) {
    using tag = typename std::decay_t<decltype(row)>::tag_type;
    std::cout << "| " << row.description << " | `" << row.key << "` | " << row.unit << " | "
              << row.decimals << " | " << yes_or_no(row.sides == gait_catalogue::ratio) << " | "
              << yes_or_no(row.spread == gait_catalogue::cv) << " | " << built(row.when) << " | "
              << source_of(row) << " | `" << gait_report::meaning_of<tag>.tag << "` |\n";
  });
}

constexpr auto introduction = R"(# The parameters

<!-- Printed by tests/docs/print_catalogue.cpp: run scripts/update-docs after a change of the
     catalogue. -->

The library reports these parameters for every side, in this order. It takes their values stride by
stride from the analysis of the recording and computes none of them itself: what a sentence below
says is what the value is meant to be. [definitions.md](definitions.md) says how the statistics are
computed.

- Key: the parameter's name in `gait_statistics::parameters`, before the side ("gct", "gct_R",
  "gct_L").
- Decimals: how many to show. They enter no computation.
- Ratio: whether the ratio of the right and the left mean is computed, when both feet are analysed.
- CV: whether a coefficient of variation is computed.
- Built: whether every analysis has the parameter, or only that of both feet, or of one foot.
- Field: the member of `gait_foot_cycle` that is read (of `gait_feet_cycle` for "two feet").
- Tag: the type that names the parameter in C++.

)";

void print_page() {
  std::cout << introduction;
  print_table();
  std::cout << "\n## What they mean\n\n";
  gait_catalogue::for_each_row([](const auto& row) {
    using tag = typename std::decay_t<decltype(row)>::tag_type;
    const auto name = "- **" + std::string(row.description) + "**" + mode_note(row.when) + ": ";
    std::cout << gait_report::wrapped(name, gait_report::meaning_of<tag>.sentence, 2, {});
  });
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view what = argc == 2 ? argv[1] : "";
  if (what == "page") {
    print_page();
  } else if (what == "table") {
    print_table();
  } else {
    std::cerr << "usage: print_catalogue page | table\n";
    return 2;
  }
  return 0;
}

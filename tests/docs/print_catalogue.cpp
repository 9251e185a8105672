// Prints what the documentation says about the catalogue: `page` is docs/parameters.md, `table` the
// table in docs/definitions.md. scripts/update-docs puts both where they belong.

#include <gait/catalogue.h>

#include <columns.h>

#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace {

struct note {
  std::string_view tag;
  std::string_view meaning;  ///< in a sentence for people who read results rather than code
};

/// What the pages say of a parameter beside its row: written here and nowhere else.
template <class Tag>
constexpr note note_of = {};

template <>
constexpr note note_of<GCT> = {
    "GCT", "Time from one heel strike of the foot to its next: how long one stride takes."};
template <>
constexpr note note_of<SWING> = {"SWING",
                                 "Share of the gait cycle in which the foot is in the air."};
template <>
constexpr note note_of<STANCE> = {"STANCE",
                                  "Share of the gait cycle in which the foot is on the ground."};
template <>
constexpr note note_of<STANCE_MS> = {"STANCE_MS",
                                     "How long the foot is on the ground in one stride."};
template <>
constexpr note note_of<CADENCE> = {
    "CADENCE",
    "Steps per minute, the steps of both feet counted: a stride of one second makes 120."};
template <>
constexpr note note_of<LDR> = {"LDR",
                               "Share of stance from heel strike until the foot lies flat, while "
                               "it takes up the body's weight."};
template <>
constexpr note note_of<FFR> = {"FFR",
                               "Share of stance in which the whole foot lies flat on the ground."};
template <>
constexpr note note_of<PUR> = {
    "PUR", "Share of stance from the rise of the heel until the toes leave the ground."};
template <>
constexpr note note_of<DS> = {
    "DS",
    "Share of the gait cycle in which both feet are on the ground; it is the same for both sides."};
template <>
constexpr note note_of<SLENGTH> = {"SLENGTH", "How far the foot gets in one stride."};
template <>
constexpr note note_of<SWIDTH> = {"SWIDTH",
                                  "How far the foot swings out to the side on its way forward."};
template <>
constexpr note note_of<PATHLENGTH> = {
    "PATHLENGTH",
    "Length of the foot's way through the air compared with the stride length: the nearer to 100 "
    "%, the straighter the way."};
template <>
constexpr note note_of<SPEED> = {
    "SPEED", "Walking speed of the stride: its length divided by its duration."};
template <>
constexpr note note_of<TA> = {"TA",
                              "How much the foot changes its direction in one stride: near 0 on a "
                              "straight way, large in a turn."};
template <>
constexpr note note_of<PEAKSWING> = {"PEAKSWING",
                                     "Fastest rotation of the foot while it swings forward."};
template <>
constexpr note note_of<TOP> = {"TOP",
                               "Angle between the foot and the ground when the toes leave it."};
template <>
constexpr note note_of<HSP> = {"HSP", "Angle between the foot and the ground at heel strike."};
template <>
constexpr note note_of<MAXHC> = {"MAXHC",
                                 "Greatest height of the heel above the ground in one stride."};
template <>
constexpr note note_of<MINTC> = {
    "MINTC",
    "Least height of the toes above the ground in mid-swing, where a low foot may catch and trip."};
template <>
constexpr note note_of<MAXTC1> = {
    "MAXTC1", "Height of the toes at their first peak, soon after they leave the ground."};
template <>
constexpr note note_of<MAXTC2> = {
    "MAXTC2", "Height of the toes at their second peak, shortly before heel strike."};
template <>
constexpr note note_of<MTCS> = {"MTCS", "Speed of the foot while it is in the air."};
template <>
constexpr note note_of<HS> = {"HS",
                              "Moment of the heel strike in the recording: a time stamp rather "
                              "than a property of the stride, "
                              "hence without ratio or CV."};
template <>
constexpr note note_of<STEPTIME> = {"STEPTIME",
                                    "Time from the other foot's heel strike to this foot's."};
template <>
constexpr note note_of<STEPLENGTH> = {
    "STEPLENGTH",
    "How far this foot lands ahead of the other one. Used when both feet are analysed."};
template <>
constexpr note note_of<STEPLENGTH_ALT> = {
    "STEPLENGTH_ALT",
    "Half of the stride length. Used when one foot is analysed alone: it cannot show that the two "
    "steps of a stride differ, "
    "and a stride without a measured length counts as -0.5 m."};
template <>
constexpr note note_of<IMPACT_VERT> = {
    "IMPACT_VERT", "Vertical shock when the foot strikes the ground, in multiples of gravity."};
template <>
constexpr note note_of<IMPACT_BREAK> = {
    "IMPACT_BREAK",
    "Horizontal, braking shock when the foot strikes the ground, in multiples of gravity."};
template <>
constexpr note note_of<PRONATION> = {
    "PRONATION", "Sideways tilt of the foot at strike: eversion, the sole turned outwards."};

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

/// What a function computes its value from.
template <class Tag>
constexpr std::string_view formula_of = {};
template <>
constexpr std::string_view formula_of<STEPLENGTH_ALT> = "`slength` × 0.5";

/// The column "Field" for a row.
template <class Row>
std::string source_of(const Row& row) {
  if constexpr (std::is_member_object_pointer_v<decltype(row.source)>) {
    return field_name(row.source);
  } else {
    constexpr std::string_view formula = formula_of<typename Row::tag_type>;
    static_assert(!formula.empty(),
                  "a parameter that a function computes has no formula here: add one above");
    return std::string(formula);
  }
}

std::string_view mode_note(gait_catalogue::built when) {
  switch (when) {
    case gait_catalogue::built::with_one_foot:
      return " (one foot)";
    case gait_catalogue::built::with_both_feet:
      return " (both feet)";
    case gait_catalogue::built::always:
      break;
  }
  return "";
}

const char* yes_or_no(bool value) { return value ? "yes" : "no"; }

void print_table() {
  std::cout << "| Parameter | Key | Unit | Decimals | Ratio | CV | Field | Tag "
               "|\n|---|---|---|---|---|---|---|---|\n";
  gait_catalogue::for_each_row([](const auto& row) {
    constexpr note text = note_of<typename std::decay_t<decltype(row)>::tag_type>;
    static_assert(!text.meaning.empty(),
                  "a parameter of the catalogue has no note here: add one above");
    std::cout << "| " << row.description << " | `" << row.key << "` | " << row.unit << " | "
              << row.decimals << " | " << yes_or_no(row.sides == gait_catalogue::ratio) << " | "
              << yes_or_no(row.spread == gait_catalogue::cv) << " | " << source_of(row) << " | `"
              << text.tag << "` |\n";
  });
}

constexpr auto introduction = R"(# The parameters

<!-- Printed by tests/docs/print_catalogue.cpp: run scripts/update-docs after a change of the catalogue. -->

The library reports these parameters for every side, in this order. It takes their values stride by stride
from the analysis of the recording and computes none of them itself: what a sentence below says is what the
value is meant to be. [definitions.md](definitions.md) says how the statistics are computed.

- Key: the parameter's name in `gait_statistics::parameters`, before the side ("gct", "gct_R", "gct_L").
- Decimals: how many to show. They enter no computation.
- Ratio: whether the ratio of the right and the left mean is computed, when both feet are analysed.
- CV: whether a coefficient of variation is computed.
- Field: the member of `gait_foot_cycle` that is read (of `gait_feet_cycle` for "two feet").
- Tag: the type that names the parameter in C++.

`StepLength` stands here twice: the first is used when both feet are analysed, the second when one foot is.

)";

void print_page() {
  std::cout << introduction;
  print_table();
  std::cout << "\n## What they mean\n\n";
  gait_catalogue::for_each_row([](const auto& row) {
    using row_type = std::decay_t<decltype(row)>;
    std::cout << "- **" << row.description << "**" << mode_note(row.when) << ": "
              << note_of<typename row_type::tag_type>.meaning << "\n";
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

// Prints docs/checks.md from the table of data checks. scripts/update-docs puts it in its place.

#include <walk_checks.h>

#include <cstddef>
#include <iostream>
#include <string>

namespace {

using gait_checks::kind;

// clang-format off
constexpr auto introduction = R"(# Data checks

<!-- Printed by tests/docs/print_checks.cpp: run scripts/update-docs after a change of the checks.
     -->

Wrong data can make a report that looks right. After the program has computed the statistics, it
therefore compares the tables of a walk with one another and with what a person can do. What breaks
a check is a *finding*. It is printed on the standard error and stands in every output
([output.md](output.md)), for example:

```text
finding: monday/foot_cycles.csv: column swing: swing_bounds:
    found 150, expected 0 to 100 %, in 1 of 57 included strides (line 12)
    usually: a wrong cell, or an error of measurement
    to mend: correct the cell, empty it, or leave the stride out with the row
      feet,excluded_1,8 in exclusions.csv (columns cycles,list,index)
```

A finding says where to look: the column to look at first, the check's name, what was found in the
first stride that breaks it, how many strides break it, and on which lines they stand. Of more than
five lines the first five are named. Where a factor gives a mistake away, a question names it
("milliseconds?"). In a file or a pipe, a finding is one line.

- A finding changes no figure and no exit code. With `--strict` findings and warnings are errors:
  the walk is left out, and the exit code is 1.
- A finding need not be a mistake. `--without-check NAME` leaves out a check that does not apply to
  your tables, and may be repeated. `gait-statistics --list-checks` prints these tables.
- Without a finding, data may still be wrong. Angles with the wrong sign, for example, break no
  check.
- The checks are not norms: no patient walks too slowly for them. Their tolerances and bounds are
  wide, and were tried on 170 walks of healthy people and of patients (32,197 included strides)
  unless their source names fewer. They hold for rounded values too: times to 10 ms, percentages to
  0.1, lengths to 1 cm.
- One stride that breaks a check is a finding, unless the tolerance asks for more of them, because
  real walks have single ones.
- Only included strides are compared, except where the order or the links of all strides are
  checked. A value that was not measured takes part in no check. A value that breaks its own bounds
  takes part in no other check, so that one mistake is one finding.
)";
// clang-format on

/// The page's last section.
std::string notes() {
  const auto below = [](std::size_t strides) { return "- Below " + std::to_string(strides); };
  return R"(
## Notes

A note is not a finding: nothing is wrong. It stands in the text report, in the table of walks, in
JSON and in the page, and is never an error. Most say how far the figures of few included strides
can be trusted.

)" + below(gait_checks::strides_for_means) +
         R"( strides, read means with care. König et al., Gait & Posture 2014;39:615, PMID
  23838361, found means reliable from 10 gait cycles on.
)" + below(gait_checks::strides_for_variability) +
         R"( strides, measures of variability (SD, CV) tend to come out too small. Galna, Lord
  and Rochester, Gait & Posture 2013, ask for no fewer than 30 steps.
)" + below(gait_checks::strides_for_steady_variability) +
         R"( strides, measures of variability still change with more strides. König et al. ask
  for at least 50.
- Strides that no cycle of both feet links are counted: they enter no statistic of both feet. A
  partner that was not found is usual at turns, so this is no finding. It is one, of
  `unlinked_strides`, where both strides are there and nothing links them.
)";
}

std::string heading_of(kind what) {
  switch (what) {
    case kind::fields_of_a_stride:
      return "Fields of one stride against each other";
    case kind::bounds_of_a_stride:
      return "Bounds of one stride";
    case kind::median_of_a_walk:
      return "Bounds of a walk's median";
    case kind::strides_of_a_walk:
      break;
  }
  return "Strides against strides";
}

// clang-format off
const char* sentence_about(kind what) {
  switch (what) {
    case kind::fields_of_a_stride:
      return R"(What one stride says twice must agree.
)";
    case kind::bounds_of_a_stride:
      return R"(What no stride of a person crosses. A value outside is a wrong cell or an error of measurement:
correct it, empty it, or exclude the stride ([exclusions](walk-folder.md#exclusionscsv)).
)";
    case kind::median_of_a_walk:
      return R"(A median outside, of three values or more, means another unit or another column. The values of
such a column are compared with nothing else.
)";
    case kind::strides_of_a_walk:
      break;
  }
  return R"(The order of strides, their links, one foot against the other, and columns as a whole. Those of
both feet need an analysis of both feet. They expect the right foot to lead
([how both feet are paired](walk-folder.md#how-both-feets-cycles-are-paired)).
)";
}
// clang-format on

/// Of a bound, the cause is the same throughout.
bool tells_causes(kind what) {
  return what == kind::fields_of_a_stride || what == kind::strides_of_a_walk;
}

void print_table(kind what) {
  std::cout << "\n## " << heading_of(what) << "\n\n" << sentence_about(what) << "\n";
  std::cout << (tells_causes(what) ? "| Check | What is compared | Tolerance | Breaking it usually "
                                     "means | Source |\n|---|---|---|---|---|\n"
                                   : "| Check | Bounds | Reason |\n|---|---|---|\n");
  for (const auto& check : gait_checks::list_checks()) {
    if (check.what == what) {
      std::cout << "| `" << check.name << "` | "
                << (tells_causes(what) ? check.compared + " | " + check.tolerance + " | " +
                                             check.usual_cause + " | " + check.source
                                       : check.tolerance + " | " + check.source)
                << " |\n";
    }
  }
}

}  // namespace

int main() {
  std::cout << introduction;
  for (const kind what : {kind::fields_of_a_stride, kind::strides_of_a_walk,
                          kind::bounds_of_a_stride, kind::median_of_a_walk}) {
    print_table(what);
  }
  std::cout << notes();
  return 0;
}

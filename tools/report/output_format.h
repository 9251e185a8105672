#ifndef TOOLS_REPORT_OUTPUT_FORMAT_H
#define TOOLS_REPORT_OUTPUT_FORMAT_H

/// \file
/// The forms in which results are written, and the tables of CSV.

#include "names.h"

#include <array>

namespace gait_report {

enum class output_format { table, csv, json, html };

/// The tables that CSV has: a row for each parameter and side, for each walk, or for each stride.
enum class csv_table { parameters, walks, strides };

}  // namespace gait_report

template <>
inline constexpr auto gait_walk::names<gait_report::output_format> =
    std::array<gait_walk::named<gait_report::output_format>, 4>{
        {{gait_report::output_format::table, "table"},
         {gait_report::output_format::csv, "csv"},
         {gait_report::output_format::json, "json"},
         {gait_report::output_format::html, "html"}}};
template <>
inline constexpr auto gait_walk::names<gait_report::csv_table> =
    std::array<gait_walk::named<gait_report::csv_table>, 3>{
        {{gait_report::csv_table::parameters, "parameters"},
         {gait_report::csv_table::walks, "walks"},
         {gait_report::csv_table::strides, "strides"}}};

#endif

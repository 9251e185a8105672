#ifndef TOOLS_REPORT_PANELS_H
#define TOOLS_REPORT_PANELS_H

/// \file
/// What the HTML report draws for which parameter: a table of panels, in the order of the page.

#include <gait/catalogue.h>

#include <array>
#include <string_view>

namespace gait_report {

/// The groups of panels, in the order of the page.
enum class panel_group { pace_and_rhythm, phases, path_of_the_foot, angles_and_impact };

inline constexpr std::array<std::string_view, 4> panel_group_names = {
    "Pace and rhythm", "Phases of the cycle", "Path of the foot", "Angles and impact"};

enum class glance { no_tile, tile };

/// The panel of a parameter.
struct panel {
  std::string_view key;  ///< of the parameter, without the side
  panel_group group;
  glance at_a_glance;  ///< whether its mean stands at the top of the page
  /// Panels of one name show equally many units over their height, so that what scatters twice as
  /// far looks twice as far. Every other panel fills its height.
  std::string_view shared_height = {};
};

// A heel-strike time has no panel: it is a moment in the recording, which the time axis shows.
// clang-format off
inline constexpr std::array panels = {
    //    parameter                                    group                            at a glance       shared height
    panel{gait_catalogue::row_of<SPEED>.key,        panel_group::pace_and_rhythm,    glance::tile},
    panel{gait_catalogue::row_of<CADENCE>.key,      panel_group::pace_and_rhythm,    glance::tile},
    panel{gait_catalogue::row_of<SLENGTH>.key,      panel_group::pace_and_rhythm,    glance::tile},
    panel{gait_catalogue::row_of<STEPLENGTH>.key,   panel_group::pace_and_rhythm,    glance::no_tile},
    panel{gait_catalogue::row_of<GCT>.key,          panel_group::pace_and_rhythm,    glance::tile},
    panel{gait_catalogue::row_of<STEPTIME>.key,     panel_group::pace_and_rhythm,    glance::no_tile},
    panel{gait_catalogue::row_of<SWING>.key,        panel_group::phases,             glance::tile,    "of the cycle"},
    panel{gait_catalogue::row_of<STANCE>.key,       panel_group::phases,             glance::no_tile, "of the cycle"},
    panel{gait_catalogue::row_of<DS>.key,           panel_group::phases,             glance::tile,    "of the cycle"},
    panel{gait_catalogue::row_of<STANCE_MS>.key,    panel_group::phases,             glance::no_tile},
    panel{gait_catalogue::row_of<LDR>.key,          panel_group::phases,             glance::no_tile, "of stance"},
    panel{gait_catalogue::row_of<FFR>.key,          panel_group::phases,             glance::no_tile, "of stance"},
    panel{gait_catalogue::row_of<PUR>.key,          panel_group::phases,             glance::no_tile, "of stance"},
    panel{gait_catalogue::row_of<MINTC>.key,        panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<MAXTC1>.key,       panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<MAXTC2>.key,       panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<MAXHC>.key,        panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<SWIDTH>.key,       panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<PATHLENGTH>.key,   panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<MTCS>.key,         panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<TA>.key,           panel_group::path_of_the_foot,   glance::no_tile},
    panel{gait_catalogue::row_of<HSP>.key,          panel_group::angles_and_impact,  glance::no_tile},
    panel{gait_catalogue::row_of<TOP>.key,          panel_group::angles_and_impact,  glance::no_tile},
    panel{gait_catalogue::row_of<PEAKSWING>.key,    panel_group::angles_and_impact,  glance::no_tile},
    panel{gait_catalogue::row_of<PRONATION>.key,    panel_group::angles_and_impact,  glance::no_tile},
    panel{gait_catalogue::row_of<IMPACT_VERT>.key,  panel_group::angles_and_impact,  glance::no_tile},
    panel{gait_catalogue::row_of<IMPACT_BREAK>.key, panel_group::angles_and_impact,  glance::no_tile},
};
// clang-format on

}  // namespace gait_report

#endif

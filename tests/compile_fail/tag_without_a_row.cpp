#include <gait/gait.h>

struct TOE_OUT_ANGLE {};

#ifndef FAULT
template <>
inline constexpr auto gait_catalogue::row_of<TOE_OUT_ANGLE> = gait_catalogue::foot<TOE_OUT_ANGLE>(
    "toeOut", "Toe-out angle", "degree", 1, gait_catalogue::ratio, gait_catalogue::no_cv,
    &gait_foot_cycle::hsp);
#endif

void build(gait_statistics& statistics, const gait_foot_result& foot) {
  gait_statistics_build_parameter(statistics, foot, {0}, "", TOE_OUT_ANGLE{});
}

#ifndef TOOLS_REPORT_PARAMETER_MEANINGS_H
#define TOOLS_REPORT_PARAMETER_MEANINGS_H

/// \file
/// What each parameter is meant to be, in a sentence for people who read results rather than code.

#include <gait/catalogue.h>

#include <tuple>

namespace gait_report {

template <class Tag>
struct meaning {
  using tag_type = Tag;

  const char* tag;
  const char* sentence;
  const char* formula = nullptr;  ///< where a function computes the value: what it computes
};

// In the catalogue's order.
// clang-format off
inline constexpr auto parameter_meanings = std::make_tuple(
    meaning<GCT>{
        "GCT",
        "Time from one heel strike of the foot to its next: how long one stride takes."},
    meaning<SWING>{
        "SWING",
        "Share of the gait cycle in which the foot is in the air."},
    meaning<STANCE>{
        "STANCE",
        "Share of the gait cycle in which the foot is on the ground."},
    meaning<STANCE_MS>{
        "STANCE_MS",
        "How long the foot is on the ground in one stride."},
    meaning<CADENCE>{
        "CADENCE",
        "Steps per minute, the steps of both feet counted: a stride of one second makes 120."},
    meaning<LDR>{
        "LDR",
        "Share of stance from heel strike until the foot lies flat, while it takes up the body's "
        "weight."},
    meaning<FFR>{
        "FFR",
        "Share of stance in which the whole foot lies flat on the ground."},
    meaning<PUR>{
        "PUR",
        "Share of stance from the rise of the heel until the toes leave the ground."},
    meaning<DS>{
        "DS",
        "Share of the gait cycle in which both feet are on the ground; it is the same for both "
        "sides."},
    meaning<SLENGTH>{
        "SLENGTH",
        "How far the foot gets in one stride."},
    meaning<SWIDTH>{
        "SWIDTH",
        "How far the foot swings out to the side on its way forward."},
    meaning<PATHLENGTH>{
        "PATHLENGTH",
        "Length of the foot's path through the air compared with the stride length: the nearer to "
        "100 %, the straighter the path."},
    meaning<SPEED>{
        "SPEED",
        "Walking speed of the stride: its length divided by its duration."},
    meaning<TA>{
        "TA",
        "How much the foot changes its direction in one stride: near 0 on a straight path, large "
        "in a turn."},
    meaning<PEAKSWING>{
        "PEAKSWING",
        "Fastest rotation of the foot while it swings forward."},
    meaning<TOP>{
        "TOP",
        "Angle between the foot and the ground when the toes leave it."},
    meaning<HSP>{
        "HSP",
        "Angle between the foot and the ground at heel strike."},
    meaning<MAXHC>{
        "MAXHC",
        "Greatest height of the heel above the ground in one stride."},
    meaning<MINTC>{
        "MINTC",
        "Least height of the toes above the ground in mid-swing, where a low foot may catch and "
        "trip."},
    meaning<MAXTC1>{
        "MAXTC1",
        "Height of the toes at their first peak, soon after they leave the ground."},
    meaning<MAXTC2>{
        "MAXTC2",
        "Height of the toes at their second peak, shortly before heel strike."},
    meaning<MTCS>{
        "MTCS",
        "Speed of the foot while it is in the air."},
    meaning<HS>{
        "HS",
        "Moment of the heel strike in the recording: a time stamp rather than a property of the "
        "stride, hence without ratio or CV."},
    meaning<STEPTIME>{
        "STEPTIME",
        "Time from the other foot's heel strike to this foot's."},
    meaning<STEPLENGTH>{
        "STEPLENGTH",
        "How far this foot lands ahead of the other one. Used when both feet are analysed."},
    meaning<STEPLENGTH_ALT>{
        "STEPLENGTH_ALT",
        "Half of the stride length. Used when one foot is analysed alone: it cannot show that the "
        "two steps of a stride differ, and a stride without a measured length counts as -0.5 m.",
        "`slength` × 0.5"},
    meaning<IMPACT_VERT>{
        "IMPACT_VERT",
        "Vertical shock when the foot strikes the ground, in multiples of gravity."},
    meaning<IMPACT_BREAK>{
        "IMPACT_BREAK",
        "Horizontal, braking shock when the foot strikes the ground, in multiples of gravity."},
    meaning<PRONATION>{
        "PRONATION",
        "Sideways tilt of the foot at strike: eversion, the sole turned outwards."});
// clang-format on

/// The meaning of a parameter; one that has none in the table does not compile.
template <class Tag>
inline constexpr meaning<Tag> meaning_of = gait_catalogue::find_row<Tag>(parameter_meanings);

}  // namespace gait_report

#endif

#ifndef TOOLS_MAKE_WALK_WALK_MODEL_H
#define TOOLS_MAKE_WALK_WALK_MODEL_H

/// \file
/// Modelled walks, for examples, tests and benchmarks: like measured ones in form and size, but
/// measured on nobody.
///
/// A walk is a row of steps, left and right by turns, each with a duration and a length; a stride
/// is two steps in a row, so that times and distances of the two feet agree. Step durations and
/// step lengths are long-range correlated. Heel strikes and toe-offs fall on samples, and every
/// value is rounded as an export would round it.

#include "walk.h"

#include <gait/result.h>

#include <array>
#include <cstdint>
#include <string>

namespace gait_walk {

enum class worn_on { both, left, right };

/// What make_walk() is to make.
struct walk_settings {
  std::string name = "modelled_walk";
  std::uint64_t seed = 1;        ///< the same settings and seed give the same walk
  int strides = 40;              ///< of each foot, from 1 to 1,000,000
  worn_on feet = worn_on::both;  ///< the feet with a sensor
  int turns = 1;                 ///< number of turns by 180 degrees
  int pauses = 0;                ///< number of times that the person stops, stands, and walks on
  int outliers = 0;              ///< number of stumbles
  /// Number of strides of one foot that were not found, left and right by turns.
  int lost = 0;
  double missing = 0.0;  ///< share of values that were not measured, from 0 to 1
  int rate = 100;        ///< sampling rate (Hz), from 50 to 1000
};

/// The walk of these settings. Time and memory are in proportion to the number of strides.
///
/// Turns and stumbles are excluded as kind 1, starts and stops as kind 2. A walk of fewer than four
/// strides is taken out of the middle of a longer one, without start and stop. A foot worn alone
/// has no step times and lengths, because its sensor does not see the other foot.
///
/// Throws std::invalid_argument when a setting is out of range or the strides are too few for what
/// they should hold.
walk make_walk(const walk_settings& settings);

/// A row of the model's table: how a value is distributed over the strides of a foot.
struct typical_value {
  double gait_foot_cycle::*field;
  double mean;             ///< in straight walking, over both feet
  double deviation;        ///< standard deviation from stride to stride
  double left_less_right;  ///< difference of the feet's means
  double in_turn;          ///< mean in the middle of a turn
  int decimals;            ///< to which the value is rounded
};

// The model's table.
//
// Figures taken from publications:
// - Speed: the mean speeds of healthy adults at normal gait in T. Oeberg, A. Karsznia and K.
//   Oeberg, "Basic gait parameters: reference data for normal subjects, 10-79 years of age", J
//   Rehabil Res Dev 30:210-223, 1993, are about 1.1 to 1.3 m/s. Ours is 1.26 m/s.
// - Stance and double support: 62 % of the gait cycle in stance and 38 % in swing at the customary
//   speed of 80 m/min (J. Perry and J. M. Burnfield, "Gait Analysis: Normal and Pathological
//   Function", 2nd edition, 2010); the double support of 24 % follows.
// - Minimal toe clearance: 1.3 cm (D. A. Winter, "Foot trajectory in human gait: a precise and
//   multifactorial motor control task", Phys Ther 72:45-53, 1992).
//
// Behaviour taken from publications, with figures of our own:
// - Stride durations have long-range correlations, a DFA exponent between 0.5 and 1 (J. M.
//   Hausdorff et al., "Is walking a random walk? Evidence for long-range correlations in stride
//   interval of human gait", J Appl Physiol 78:349-358, 1995). Ours is 0.8.
// - Longer strides go with a higher step frequency as speed changes (D. W. Grieve and R. J. Gear,
//   "The relationships between length of stride, step frequency, time of swing and speed of walking
//   for children and adults", Ergonomics 9:379-399, 1966), hence a negative correlation of step
//   length and step duration.
// - The feet of able-bodied people differ a little (H. Sadeghi et al., "Symmetry and limb dominance
//   in able-bodied gait: a review", Gait Posture 12:34-45, 2000).
// - Turning means slowing down (K. Hase and R. B. Stein, "Turning strategies during human walking",
//   J Neurophysiol 81:2914-2922, 1999).
//
// Every other figure is chosen for plausibility and not taken from a publication: all standard
// deviations, all left/right differences, all means in the turn, and every mean that is not named
// above.
namespace typical {

// Two steps in a row correlate by 0.50, so the deviation of a stride is 1.73 times that of a step:
// 0.021 s, a coefficient of variation of 2 %, and 0.034 m, one of 2.5 %. On average the strides of
// the two feet are equally long in any straight walk; what can differ are the steps.
inline constexpr double step_time_length_correlation = -0.4;

// clang-format off
//                                           field                            mean  deviation  l - r  in turn  decimals
inline constexpr typical_value step_time   = {&gait_foot_cycle::step_time,    0.540,  0.0121,  0.008,   0.610,  4};
inline constexpr typical_value step_length = {&gait_foot_cycle::step_length,  0.680,  0.0195,  0.010,   0.400,  4};
inline constexpr typical_value stance      = {&gait_foot_cycle::stance,      62.0,    0.8,     0.5,    65.0,    3};

/// Drawn for each stride by itself. The turning angles of the turn's strides add up to 180 degrees.
inline constexpr std::array<typical_value, 16> stride_values = {{
    {&gait_foot_cycle::ldr,              20.0,    1.8,     0.6,    22.0,    3},
    {&gait_foot_cycle::pur,              24.0,    1.3,     0.9,    20.0,    3},
    {&gait_foot_cycle::swidth,            0.042,  0.0090, -0.003,   0.150,  4},
    {&gait_foot_cycle::path_length,     112.0,    0.7,     0.2,   135.0,    3},
    {&gait_foot_cycle::ta,                0.0,    2.2,     0.0,   100.0,    2},
    {&gait_foot_cycle::peakswing,       460.0,   18.0,    -9.0,   370.0,    2},
    {&gait_foot_cycle::top,             -65.0,    1.6,     0.8,   -46.0,    2},
    {&gait_foot_cycle::hsp,              27.0,    1.4,    -0.9,    19.0,    2},
    {&gait_foot_cycle::strike_eversion,  -8.0,    1.6,    -0.9,    -5.0,    2},
    {&gait_foot_cycle::max_hc,            0.255,  0.0050,  0.002,   0.200,  4},
    {&gait_foot_cycle::min_tc,            0.013,  0.0025,  0.001,   0.013,  4},
    {&gait_foot_cycle::max_tc1,           0.040,  0.0035,  0.002,   0.036,  4},
    {&gait_foot_cycle::max_tc2,           0.116,  0.0060, -0.002,   0.085,  4},
    {&gait_foot_cycle::mtc_speed,         4.40,   0.150,  -0.05,    2.80,   4},
    {&gait_foot_cycle::impact_vert,      11.0,    1.4,     0.3,     7.0,    3},
    {&gait_foot_cycle::impact_hor,        3.6,    0.5,     0.1,     2.4,    3},
}};

/// How much of the turn lies in each of its steps: 1 is a step that turns by 50 degrees, 3.6 in all
/// are 180 degrees.
inline constexpr std::array<double, 6> turn_shape = {0.2, 0.6, 1.0, 1.0, 0.6, 0.2};

struct slowed_step {
  double time;    ///< factor of the step duration
  double length;  ///< factor of the step length
};
/// The outermost step; the one beside it is slowed half as much.
inline constexpr slowed_step start_or_stop = {1.25, 0.60};
inline constexpr slowed_step stumble       = {1.30, 0.60};
// clang-format on

inline constexpr double standing = 2.0;  ///< before, between and behind the walking (s)

}  // namespace typical

}  // namespace gait_walk

#endif

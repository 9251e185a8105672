#ifndef GAIT_RESULT_H
#define GAIT_RESULT_H

/// \file
/// The input records: what the analysis of one walking recording found, cycle by cycle.
///
/// Plain records with public members, copied and moved as values. The caller fills a gait_result,
/// calls gait_generate_statistics() with it, and reads `statistics` and `quality_flags` from the
/// same object. The records check nothing. Pointers do not own what they point to, which must
/// outlive the call. A copy of a gait_result still points into the feet of the original.

#include <gait/statistics.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>
#include <vector>

/// One gait cycle (stride) of one foot. A value that was not measured holds gait_missing.
///
/// The measured fields follow one another with nothing between, from `hs` up to `index`: producers
/// rely on the order.
struct gait_foot_cycle {
  /// Sample of the recording at which the cycle starts, from 0.
  int first_sample = 0;
  int last_sample = 0;                    ///< sample at which it ends, inclusive
  double hs = gait_missing;               ///< heel-strike time (s)
  double gct = gait_missing;              ///< cycle duration (s)
  double swing = gait_missing;            ///< swing phase (% of gait cycle)
  double stance = gait_missing;           ///< stance phase (% of cycle duration)
  double contact = gait_missing;          ///< contact duration (ms)
  double cadence = gait_missing;          ///< cadence (steps/min)
  double ldr = gait_missing;              ///< loading phase (% of stance)
  double ffr = gait_missing;              ///< foot-flat phase (% of stance)
  double pur = gait_missing;              ///< pushing phase (% of stance)
  double slength = gait_missing;          ///< stride length (m)
  double swidth = gait_missing;           ///< swing width (m)
  double path_length = gait_missing;      ///< 3D path length of the foot (% of stride length)
  double speed = gait_missing;            ///< stride velocity (m/s)
  double ta = gait_missing;               ///< turning angle (deg)
  double peakswing = gait_missing;        ///< peak angular velocity in swing (deg/s)
  double top = gait_missing;              ///< lift-off angle (deg)
  double hsp = gait_missing;              ///< strike angle (deg)
  double step_time = gait_missing;        ///< step time (s)
  double step_length = gait_missing;      ///< step length (m)
  double strike_eversion = gait_missing;  ///< eversion at strike (deg)
  double max_hc = gait_missing;           ///< maximal heel clearance (m)
  double min_tc = gait_missing;           ///< minimal toe clearance (m)
  double max_tc1 = gait_missing;          ///< first maximal toe clearance (m)
  double max_tc2 = gait_missing;          ///< second maximal toe clearance (m)
  double mtc_speed = gait_missing;        ///< foot speed in swing (m/s)
  double impact_vert = gait_missing;      ///< vertical impact at strike (g)
  double impact_hor = gait_missing;       ///< horizontal impact at strike (g)
  /// Position in the foot's cycle list, from 0; to be set where both feet are analysed.
  int index = 0;
};

/// One cycle of the two feet together, with links to the cycle of each foot that belongs to it.
struct gait_feet_cycle {
  double gct = gait_missing;  ///< cycle duration (s)
  double ds = gait_missing;   ///< double support (% of cycle duration)
  /// The right foot's cycle, found by its `index`, or null; not owned.
  gait_foot_cycle* right_cycle = nullptr;
  /// The left foot's cycle, found by its `index`, or null; not owned.
  gait_foot_cycle* left_cycle = nullptr;
};

/// One signal of a sensor: of its content, the library needs only the length.
struct sensor_signal {
  std::uint64_t sample_count = 0;  ///< number of samples
};

/// The recorded sensor data of one foot.
struct sensor_recording {
  int sampling_rate = 0;  ///< samples per second (Hz); must not be 0
  /// By signal identifier. Signals 1 and 2 must be there; the shortest of all feet is the length of
  /// the recording.
  std::unordered_map<int, sensor_signal> signals;
};

/// The cycles of one foot, in time order, and the recording that they were found in.
struct gait_foot_result {
  std::list<gait_foot_cycle> cycles;
  sensor_recording* recording = nullptr;  ///< not owned
};

/// The cycles of the two feet together, in time order.
struct gait_feet_result {
  std::list<gait_feet_cycle> cycles;
};

/// The result of the gait analysis of one recording: all the input of the library, and all its
/// output.
///
/// The four exclusion lists index the analysed cycles: those of the single foot, or
/// `feet_result.cycles`. They need not be sorted, unique or in range. Only `excluded_1` and
/// `excluded_2` take cycles out; the fallback lists enter the accounting alone. See
/// gait_generate_statistics() for what the library requires.
struct gait_result {
  /// One entry per instrumented foot. One entry means single-foot mode, more mean two-feet mode,
  /// and with none nothing is done. The sampling rate is always that of the first entry's
  /// recording.
  std::vector<gait_foot_result> foot_results;
  gait_foot_result* left_foot = nullptr;   ///< two-feet mode only, suffix "_L"; not owned
  gait_foot_result* right_foot = nullptr;  ///< two-feet mode only, suffix "_R"; not owned
  gait_feet_result feet_result;            ///< two-feet mode only
  gait_statistics statistics;              ///< output; start with an empty parameter map
  std::list<int> excluded_1;               ///< kind 1: taken out of the included cycles
  std::list<int> excluded_1_fallback;      ///< kind 1: accounted for, never taken out
  std::list<int> excluded_2;               ///< kind 2: taken out, after kind 1
  std::list<int> excluded_2_fallback;      ///< kind 2: accounted for, never taken out
  int quality_flags = 0;                   ///< output: a set of gait_quality_flag bits
};

/// The settings of gait_generate_statistics().
struct gait_generate_statistics_settings {
  /// What it stands for is the caller's choice. It enters no computation: a value above 0 that is
  /// not within 10 to 34 raises a quality flag.
  float settings_value = 0.0F;
};

// Producers fill the measured fields as one row of 27 doubles.
static_assert(offsetof(gait_foot_cycle, first_sample) == 0);
static_assert(offsetof(gait_foot_cycle, index) ==
              offsetof(gait_foot_cycle, hs) + 27 * sizeof(double));
static_assert(offsetof(gait_feet_cycle, right_cycle) ==
              offsetof(gait_feet_cycle, ds) + sizeof(double));
static_assert(offsetof(gait_feet_cycle, left_cycle) ==
              offsetof(gait_feet_cycle, right_cycle) + sizeof(void*));

#endif

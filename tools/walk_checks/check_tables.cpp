#include "check_tables.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <optional>
#include <vector>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;
constexpr double unbounded = std::numeric_limits<double>::infinity();

bool any_is_missing(std::initializer_list<double> values) {
  return std::any_of(values.begin(), values.end(),
                     [](double value) { return gait_is_missing(value); });
}

comparison about(double found, double expected, double tolerance) {
  return {found, expected - tolerance, expected + tolerance};
}

double share_of(double expected, double percent) { return std::abs(expected) * percent / 100.0; }

/// Event times and sample numbers, which an export may have rounded to 10 ms.
double samples_tolerance(double rate) { return std::max(1.5, 0.006 * rate); }

std::optional<comparison> swing_and_stance(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.swing, c.stance})) {
    return std::nullopt;
  }
  return about(c.swing + c.stance, 100.0, 1.5);
}

std::optional<comparison> duration_and_samples(const cycle& c, double rate) {
  if (any_is_missing({c.gct})) {
    return std::nullopt;
  }
  const double samples = static_cast<double>(c.last_sample) - c.first_sample + 1.0;
  return about(c.gct * rate, samples, samples_tolerance(rate));
}

std::optional<comparison> heel_strike_and_sample(const cycle& c, double rate) {
  if (any_is_missing({c.hs})) {
    return std::nullopt;
  }
  return about(c.hs * rate, c.first_sample, samples_tolerance(rate));
}

std::optional<comparison> cadence_and_duration(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.cadence, c.gct})) {
    return std::nullopt;
  }
  return about(c.cadence * c.gct, 120.0, share_of(120.0, 3.0));
}

std::optional<comparison> speed_and_stride_length(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.speed, c.gct, c.slength})) {
    return std::nullopt;
  }
  return about(c.speed * c.gct, c.slength, std::max(share_of(c.slength, 3.0), 0.02));
}

std::optional<comparison> contact_and_stance(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.contact, c.stance, c.gct})) {
    return std::nullopt;
  }
  const double expected = 10.0 * c.stance * c.gct;
  return about(c.contact, expected, std::max(share_of(expected, 3.0), 15.0));
}

std::optional<comparison> phases_of_stance(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.ldr, c.ffr, c.pur})) {
    return std::nullopt;
  }
  return about(c.ldr + c.ffr + c.pur, 100.0, 2.0);
}

std::optional<comparison> path_and_stride_length(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.path_length})) {
    return std::nullopt;
  }
  return comparison{c.path_length, 99.0, unbounded};
}

std::optional<comparison> step_and_stride_time(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.step_time, c.gct})) {
    return std::nullopt;
  }
  return comparison{c.step_time, 0.1 * c.gct, std::nextafter(c.gct, 0.0)};
}

std::optional<comparison> swing_speed_and_velocity(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.mtc_speed, c.speed})) {
    return std::nullopt;
  }
  return comparison{c.mtc_speed, std::nextafter(c.speed, unbounded), unbounded};
}

std::optional<comparison> toe_clearances(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.min_tc}) || (gait_is_missing(c.max_tc1) && gait_is_missing(c.max_tc2))) {
    return std::nullopt;
  }
  double highest = unbounded;
  for (const double maximum : {c.max_tc1, c.max_tc2}) {
    if (!gait_is_missing(maximum)) {
      highest = std::min(highest, maximum);
    }
  }
  return comparison{c.min_tc, -unbounded, highest + 0.005};
}

}  // namespace

const std::vector<stride_check>& stride_checks() {
  constexpr double foot = 0.3048;  // (m)
  constexpr std::string_view of_170_walks = "170 measured walks, none of whose strides breaks it";
  // clang-format off
  static const std::vector<stride_check> table = {
      {"swing_and_stance", {"swing", "stance"}, "swing + stance = 100 (% of cycle duration)", "1.5 points", alarm::any, swing_and_stance,
       {{0.01, "fractions instead of percentages?"}},
       "a fraction or seconds instead of percent, or a percentage of something else",
       of_170_walks},
      {"duration_and_samples", {"gct"}, "gct x sampling rate = last_sample - first_sample + 1 (samples)", "1.5 samples or 6 ms", alarm::any, duration_and_samples,
       {{1000.0, "gct in milliseconds?"}, {0.5, "gct is a step time?"}},
       "gct in milliseconds or samples, a step time as gct, a wrong sampling rate, or samples from mid-stance to mid-stance",
       of_170_walks, true},
      {"heel_strike_and_sample", {"hs"}, "hs x sampling rate = first_sample (samples)", "1.5 samples or 6 ms", alarm::any, heel_strike_and_sample,
       {{1000.0, "hs in milliseconds?"}},
       "the heel strike that ends the stride, times counted from another start, milliseconds, or a wrong sampling rate",
       of_170_walks, true},
      {"cadence_and_duration", {"cadence", "gct"}, "cadence x gct = 120 (steps/min x s)", "3 %", alarm::many, cadence_and_duration,
       {{0.5, "cadence in strides/min?"}, {1.0 / 60.0, "cadence in Hz?"}, {1000.0, "gct in milliseconds?"}},
       "cadence in strides/min or Hz, or cadence of the step time or of several strides",
       of_170_walks},
      {"speed_and_stride_length", {"speed", "gct", "slength"}, "speed x gct = slength (m)", "3 % or 2 cm", alarm::any, speed_and_stride_length,
       {{3.6, "speed in km/h?"}, {100.0, "speed in cm/s?"}, {0.01, "slength in centimetres?"}, {0.001, "slength in millimetres?"},
        {foot, "slength in feet?"}, {2.0, "slength is a step length?"}, {2.236936, "speed in miles/h?"}, {1000.0, "gct in milliseconds?"}},
       "centimetres, km/h, a step length, or the speed of another stretch",
       of_170_walks},
      {"contact_and_stance", {"contact", "stance", "gct"}, "contact = 10 x stance x gct (ms)", "3 % or 15 ms", alarm::any, contact_and_stance,
       {{0.001, "contact in seconds?"}, {100.0, "stance is a fraction?"}},
       "contact in seconds or percent, swing time as contact, or swing and stance swapped",
       of_170_walks},
      {"phases_of_stance", {"ldr", "ffr", "pur"}, "ldr + ffr + pur = 100 (% of stance)", "2 points", alarm::any, phases_of_stance,
       {{0.01, "fractions instead of percentages?"}},
       "a phase as percentage of the gait cycle or as a fraction, or a phase that is missing",
       of_170_walks},
      {"path_and_stride_length", {"path_length"}, "path_length is at least 100 (% of stride length)", "1 point", alarm::any, path_and_stride_length,
       {},
       "a length in metres, a ratio, or the excess over 100 %",
       of_170_walks},
      {"step_and_stride_time", {"step_time", "gct"}, "step_time is a part of gct (s)", "from 0.1 to below 1 of it", alarm::many, step_and_stride_time,
       {},
       "a strike of the other foot that was not found, a step over a pause, or milliseconds",
       "170 measured walks: 16 of 2,335 strides break it, after pauses"},
      {"swing_speed_and_velocity", {"mtc_speed", "speed"}, "mtc_speed is above speed (m/s)", "none", alarm::any, swing_speed_and_velocity,
       {},
       "speed in km/h or cm/s, or the two columns swapped",
       of_170_walks},
      {"toe_clearances", {"min_tc", "max_tc1", "max_tc2"}, "min_tc is not above max_tc1 and max_tc2 (m)", "5 mm", alarm::any, toe_clearances,
       {},
       "swapped columns, or one of them in millimetres",
       of_170_walks},
  };
  // clang-format on
  return table;
}

std::vector<unit_slip> slips_of(dimension dim, double sampling_rate) {
  switch (dim) {
    case dimension::time_s:
      return {{1000.0, "milliseconds?"}, {sampling_rate, "samples?"}, {1.0 / 60.0, "minutes?"}};
    case dimension::time_ms:
      return {{0.001, "seconds?"}};
    case dimension::share:
      return {{0.01, "a fraction?"}};
    case dimension::length:
      return {{100.0, "centimetres?"}, {1000.0, "millimetres?"}};
    case dimension::speed:
      return {{3.6, "km/h?"}, {100.0, "cm/s?"}, {1000.0, "mm/s?"}};
    case dimension::cadence:
      return {{0.5, "strides/min?"}, {1.0 / 60.0, "Hz?"}};
    case dimension::angle:
    case dimension::rotation:
      return {{0.017453292519943295, "radians?"}};
    case dimension::impact:
      return {{9.80665, "m/s2?"}};
  }
  return {};
}

const std::vector<bounds>& bounds_table() {
  using d = dimension;
  // clang-format off
  static const std::vector<bounds> table = {
      // column           field                    dimension      a stride         the median     typical  unit           reason
      {"gct",             &cycle::gct,             d::time_s,     0.25, 10.0,      0.5, 3.5,      1.2,     "s",           "0.46 to 3 s are published as plausible; above 2 s a pause is likely"},
      {"swing",           &cycle::swing,           d::share,      0.0, 100.0,      10.0, 65.0,    38.0,    "%",           "a share of the cycle"},
      {"stance",          &cycle::stance,          d::share,      0.0, 100.0,      35.0, 90.0,    62.0,    "%",           "a share of the cycle"},
      {"contact",         &cycle::contact,         d::time_ms,    50.0, 9000.0,    250.0, 3000.0, 800.0,   "ms",          "the stance of gct"},
      {"cadence",         &cycle::cadence,         d::cadence,    12.0, 480.0,     35.0, 240.0,   100.0,   "steps/min",   "40 to 173 are published for patients"},
      {"ldr",             &cycle::ldr,             d::share,      0.0, 100.0,      0.0, 100.0,    22.0,    "%",           "a share of stance"},
      {"ffr",             &cycle::ffr,             d::share,      0.0, 100.0,      5.0, 100.0,    40.0,    "%",           "a share of stance"},
      {"pur",             &cycle::pur,             d::share,      0.0, 100.0,      0.0, 100.0,    25.0,    "%",           "a share of stance; 0 where no rise of the heel was found"},
      {"slength",         &cycle::slength,         d::length,     0.0, 4.0,        0.1, 2.8,      1.2,     "m",           "0.15 to 2.19 m are published as plausible"},
      {"swidth",          &cycle::swidth,          d::length,     0.0, 2.0,        0.0, 0.5,      0.04,    "m",           "the length of a leg"},
      {"path_length",     &cycle::path_length,     d::share,      0.0, 1000.0,     99.0, 250.0,   106.0,   "%",           "above 1000 only for strides on the spot"},
      {"speed",           &cycle::speed,           d::speed,      0.0, 6.0,        0.05, 3.5,     1.0,     "m/s",         "0.08 to 2.22 m/s are published as plausible; the fastest race walkers reach 5"},
      {"ta",              &cycle::ta,              d::angle,      -360.0, 360.0,   -60.0, 60.0,   1.0,     "deg",         "a half turn is 180 degrees"},
      {"peakswing",       &cycle::peakswing,       d::rotation,   0.0, 2500.0,     40.0, 1800.0,  420.0,   "deg/s",       "the largest measured is 1,198 deg/s"},
      {"top",             &cycle::top,             d::angle,      -120.0, 120.0,   -95.0, 95.0,   35.0,    "deg",         "a foot cannot pass the vertical by much"},
      {"hsp",             &cycle::hsp,             d::angle,      -120.0, 120.0,   -60.0, 60.0,   20.0,    "deg",         "a foot cannot pass the vertical by much"},
      {"step_time",       &cycle::step_time,       d::time_s,     0.05, 10.0,      0.2, 2.5,      0.6,     "s",           "0.14 to 2.12 s are published as plausible"},
      {"step_length",     &cycle::step_length,     d::length,     -1.0, 2.0,       0.03, 1.5,     0.55,    "m",           "below 0 where a foot lands behind the other"},
      {"strike_eversion", &cycle::strike_eversion, d::angle,      -90.0, 90.0,     -45.0, 45.0,   6.0,     "deg",         "the range of ankle and subtalar joint"},
      {"max_hc",          &cycle::max_hc,          d::length,     0.0, 1.0,        0.03, 0.6,     0.25,    "m",           "the length of a leg"},
      {"min_tc",          &cycle::min_tc,          d::length,     -0.05, 0.5,      -0.02, 0.2,    0.015,   "m",           "1.9 +- 0.5 cm in ten able-bodied adults; slightly below 0 occurs"},
      {"max_tc1",         &cycle::max_tc1,         d::length,     -0.05, 1.0,      0.005, 0.4,    0.03,    "m",           "the length of a leg"},
      {"max_tc2",         &cycle::max_tc2,         d::length,     -0.05, 1.0,      0.005, 0.5,    0.12,    "m",           "the length of a leg"},
      {"mtc_speed",       &cycle::mtc_speed,       d::speed,      0.0, 12.0,       0.3, 8.0,      3.0,     "m/s",         "2.6 to 3.5 times the stride velocity"},
      {"impact_vert",     &cycle::impact_vert,     d::impact,     0.0, 40.0,       0.5, 30.0,     5.0,     "g",           "walks have medians of 2 to 12 g"},
      {"impact_hor",      &cycle::impact_hor,      d::impact,     0.0, 40.0,       0.05, 30.0,    3.0,     "g",           "walks have medians of 1 to 8 g"},
      {"ds",              nullptr,                 d::share,      0.0, 100.0,      2.0, 75.0,     28.0,    "%",           "0 or less is running"},
  };
  // clang-format on
  return table;
}

}  // namespace gait_checks

#include "stride_checks.h"

#include "checked_walk.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;

bool any_is_missing(std::initializer_list<double> values) {
  return std::any_of(values.begin(), values.end(),
                     [](double value) { return gait_is_missing(value); });
}

std::optional<found_and_expected> swing_and_stance(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.swing, c.stance})) {
    return std::nullopt;
  }
  return found_and_expected{c.swing + c.stance, 100.0};
}

std::optional<found_and_expected> duration_and_samples(const cycle& c, double rate) {
  if (any_is_missing({c.gct})) {
    return std::nullopt;
  }
  return found_and_expected{c.gct * rate, samples_of(c)};
}

std::optional<found_and_expected> heel_strike_and_sample(const cycle& c, double rate) {
  if (any_is_missing({c.hs})) {
    return std::nullopt;
  }
  return found_and_expected{c.hs * rate, static_cast<double>(c.first_sample)};
}

std::optional<found_and_expected> cadence_and_duration(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.cadence, c.gct})) {
    return std::nullopt;
  }
  return found_and_expected{c.cadence * c.gct, 120.0};
}

std::optional<found_and_expected> speed_and_stride_length(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.speed, c.gct, c.slength})) {
    return std::nullopt;
  }
  return found_and_expected{c.speed * c.gct, c.slength};
}

std::optional<found_and_expected> contact_and_stance(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.contact, c.stance, c.gct})) {
    return std::nullopt;
  }
  return found_and_expected{c.contact, 10.0 * c.stance * c.gct};
}

std::optional<found_and_expected> phases_of_stance(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.ldr, c.ffr, c.pur})) {
    return std::nullopt;
  }
  return found_and_expected{c.ldr + c.ffr + c.pur, 100.0};
}

std::optional<found_and_expected> path_and_stride_length(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.path_length})) {
    return std::nullopt;
  }
  return found_and_expected{c.path_length, 100.0};
}

std::optional<found_and_expected> step_and_stride_time(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.step_time, c.gct})) {
    return std::nullopt;
  }
  return found_and_expected{c.step_time, c.gct};
}

std::optional<found_and_expected> swing_speed_and_velocity(const cycle& c, double /*rate*/) {
  if (any_is_missing({c.mtc_speed, c.speed})) {
    return std::nullopt;
  }
  return found_and_expected{c.mtc_speed, c.speed};
}

std::optional<found_and_expected> toe_clearances(const cycle& c, double /*rate*/) {
  double lowest_peak = unbounded;
  for (const double peak : {c.max_tc1, c.max_tc2}) {
    lowest_peak = gait_is_missing(peak) ? lowest_peak : std::min(lowest_peak, peak);
  }
  if (gait_is_missing(c.min_tc) || std::isinf(lowest_peak)) {
    return std::nullopt;
  }
  return found_and_expected{c.min_tc, lowest_peak};
}

double as_it_is(double amount, double /*expected*/, double /*rate*/) { return amount; }

tolerance points(double amount) { return {amount, amount == 1.0 ? "point" : "points", as_it_is}; }
tolerance samples(double amount) { return {amount, "samples", as_it_is}; }
tolerance milliseconds(double amount) { return {amount, "ms", as_it_is}; }

tolerance percent(double amount) {
  return {amount, "%", [](double percent, double expected, double /*rate*/) {
            return std::abs(expected) * percent / 100.0;
          }};
}

tolerance centimetres_of_metres(double amount) {
  return {amount, "cm", [](double cm, double /*expected*/, double /*rate*/) { return cm / 100.0; }};
}

tolerance millimetres_of_metres(double amount) {
  return {amount, "mm",
          [](double mm, double /*expected*/, double /*rate*/) { return mm / 1000.0; }};
}

tolerance milliseconds_of_samples(double amount) {
  return {amount, "ms",
          [](double ms, double /*expected*/, double rate) { return ms * rate / 1000.0; }};
}

/// Event times and sample numbers, which an export may have rounded to 10 ms.
std::vector<tolerance> of_samples() {
  constexpr tolerance_of_samples both;
  return {samples(both.samples), milliseconds_of_samples(both.ms)};
}

std::string_view verb(relation how) {
  switch (how) {
    case relation::at_least:
      return " is at least ";
    case relation::at_most:
      return " is at most ";
    case relation::more_than:
      return " is more than ";
    case relation::part_of:
      return " is a part of ";
    case relation::equals:
      break;
  }
  return " = ";
}

}  // namespace

const std::vector<stride_check>& stride_checks() {
  constexpr double foot = 0.3048;  // (m)
  constexpr std::string_view of_170_walks = "170 measured walks, none of whose strides breaks it";
  using r = relation;
  // clang-format off
  static const std::vector<stride_check> table = {
      {"swing_and_stance", {"swing", "stance"}, "swing + stance", r::equals, "100", "%", {points(1.5)}, alarm::any, swing_and_stance,
       {{0.01, "fractions instead of percentages?"}},
       "a fraction or seconds instead of percent, or a percentage of something else",
       of_170_walks},
      {"duration_and_samples", {"gct"}, "gct x sampling rate", r::equals, "last_sample - first_sample + 1", "samples", of_samples(), alarm::any, duration_and_samples,
       {{1000.0, "gct in milliseconds?"}, {0.5, "gct is a step time?"}},
       "gct in milliseconds or samples, a step time as gct, a wrong sampling rate, samples from mid-stance to mid-stance, or a last_sample that is too large by one: it belongs to the stride",
       of_170_walks, true},
      {"heel_strike_and_sample", {"hs"}, "hs x sampling rate", r::equals, "first_sample", "samples", of_samples(), alarm::any, heel_strike_and_sample,
       {{1000.0, "hs in milliseconds?"}},
       "the heel strike that ends the stride, times counted from another start, milliseconds, or a wrong sampling rate",
       of_170_walks, true},
      {"cadence_and_duration", {"cadence", "gct"}, "cadence x gct", r::equals, "120", "steps/min x s", {percent(3.0)}, alarm::many, cadence_and_duration,
       {{0.5, "cadence in strides/min?"}, {1.0 / 60.0, "cadence in Hz?"}, {1000.0, "gct in milliseconds?"}},
       "cadence in strides/min or Hz, or cadence of the step time or of several strides",
       of_170_walks},
      {"speed_and_stride_length", {"speed", "gct", "slength"}, "speed x gct", r::equals, "slength", "m", {percent(3.0), centimetres_of_metres(2.0)}, alarm::any, speed_and_stride_length,
       {{3.6, "speed in km/h?"}, {100.0, "speed in cm/s?"}, {0.01, "slength in centimetres?"}, {0.001, "slength in millimetres?"},
        {foot, "slength in feet?"}, {2.0, "slength is a step length?"}, {2.236936, "speed in miles/h?"}, {1000.0, "gct in milliseconds?"}},
       "centimetres, km/h, a step length, or the speed of another stretch",
       of_170_walks},
      {"contact_and_stance", {"contact", "stance", "gct"}, "contact", r::equals, "10 x stance x gct", "ms", {percent(3.0), milliseconds(15.0)}, alarm::any, contact_and_stance,
       {{0.001, "contact in seconds?"}, {100.0, "stance is a fraction?"}},
       "contact in seconds or percent, swing time as contact, or swing and stance swapped",
       of_170_walks},
      {"phases_of_stance", {"ldr", "ffr", "pur"}, "ldr + ffr + pur", r::equals, "100", "%", {points(2.0)}, alarm::any, phases_of_stance,
       {{0.01, "fractions instead of percentages?"}},
       "a phase as percentage of the gait cycle or as a fraction, or a phase that is missing",
       of_170_walks},
      {"path_and_stride_length", {"path_length"}, "path_length", r::at_least, "100", "%", {points(1.0)}, alarm::any, path_and_stride_length,
       {},
       "a length in metres, a ratio, or the excess over 100 %",
       of_170_walks},
      {"step_and_stride_time", {"step_time", "gct"}, "step_time", r::part_of, "gct", "s", {}, alarm::many, step_and_stride_time,
       {},
       "a strike of the other foot that was not found, a step over a pause, or milliseconds",
       "170 measured walks: 16 of 2,335 strides break it, after pauses"},
      {"swing_speed_and_velocity", {"mtc_speed", "speed"}, "mtc_speed", r::more_than, "speed", "m/s", {}, alarm::any, swing_speed_and_velocity,
       {},
       "speed in km/h or cm/s, or the two columns swapped",
       of_170_walks},
      {"toe_clearances", {"min_tc", "max_tc1", "max_tc2"}, "min_tc", r::at_most, "the lower one of max_tc1 and max_tc2", "m", {millimetres_of_metres(5.0)}, alarm::any, toe_clearances,
       {},
       "swapped columns, or one of them in millimetres",
       of_170_walks},
  };
  // clang-format on
  return table;
}

interval allowed(const stride_check& check, double expected, double rate) {
  double more_or_less = 0.0;
  for (const tolerance& each : check.tolerances) {
    more_or_less = std::max(more_or_less, each.size(each.amount, expected, rate));
  }
  switch (check.how) {
    case relation::at_least:
      return {expected - more_or_less, unbounded};
    case relation::at_most:
      return {-unbounded, expected + more_or_less};
    case relation::more_than:
      return {expected, unbounded, false};
    case relation::part_of:
      return {smallest_part * expected, expected, true, false};
    case relation::equals:
      break;
  }
  return {expected - more_or_less, expected + more_or_less};
}

std::string compared_in_words(const stride_check& check) {
  return std::string(check.quantity).append(verb(check.how)).append(check.reference) + " (" +
         std::string(check.unit) + ")";
}

std::string tolerance_in_words(const stride_check& check) {
  if (check.how == relation::part_of) {
    return in_words({smallest_part, 1.0, true, false}, "times " + std::string(check.reference));
  }
  std::string words;
  for (const tolerance& each : check.tolerances) {
    words += (words.empty() ? "" : " or ") + number(each.amount) + " " + std::string(each.unit);
  }
  return words.empty() ? "none" : words;
}

std::string found_in_words(const stride_check& check, const found_and_expected& values,
                           double rate) {
  const std::string words = "found " + std::string(check.quantity) + " = " + number(values.found) +
                            ", expected " +
                            in_words(allowed(check, values.expected, rate), check.unit);
  if (check.how == relation::part_of) {
    return words + " (" + tolerance_in_words(check) + ")";
  }
  // A constant is no more than what is expected already.
  const bool is_constant = check.reference == number(values.expected);
  return is_constant ? words : words + " (" + std::string(check.reference) + ")";
}

}  // namespace gait_checks

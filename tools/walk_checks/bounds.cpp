#include "bounds.h"

#include <cmath>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;

}  // namespace

const std::vector<bounds>& bounds_table() {
  using d = dimension;
  // clang-format off
  static const std::vector<bounds> table = {
      // column           field                    dimension      a stride           the median        typical  unit           reason
      {"gct",             &cycle::gct,             d::time_s,     {0.25, 10.0},      {0.5, 3.5},       1.2,     "s",           "0.46 to 3 s are published as plausible; above 2 s a pause is likely"},
      {"swing",           &cycle::swing,           d::share,      {0.0, 100.0},      {10.0, 65.0},     38.0,    "%",           "a share of the cycle"},
      {"stance",          &cycle::stance,          d::share,      {0.0, 100.0},      {35.0, 90.0},     62.0,    "%",           "a share of the cycle"},
      {"contact",         &cycle::contact,         d::time_ms,    {50.0, 9000.0},    {250.0, 3000.0},  800.0,   "ms",          "the stance of gct"},
      {"cadence",         &cycle::cadence,         d::cadence,    {12.0, 480.0},     {35.0, 240.0},    100.0,   "steps/min",   "40 to 173 are published for patients"},
      {"ldr",             &cycle::ldr,             d::share,      {0.0, 100.0},      {0.0, 100.0},     22.0,    "%",           "a share of stance"},
      {"ffr",             &cycle::ffr,             d::share,      {0.0, 100.0},      {5.0, 100.0},     40.0,    "%",           "a share of stance"},
      {"pur",             &cycle::pur,             d::share,      {0.0, 100.0},      {0.0, 100.0},     25.0,    "%",           "a share of stance; 0 where no rise of the heel was found"},
      {"slength",         &cycle::slength,         d::length,     {0.0, 4.0},        {0.1, 2.8},       1.2,     "m",           "0.15 to 2.19 m are published as plausible"},
      {"swidth",          &cycle::swidth,          d::length,     {0.0, 2.0},        {0.0, 0.5},       0.04,    "m",           "the length of a leg"},
      {"path_length",     &cycle::path_length,     d::share,      {0.0, 1000.0},     {99.0, 250.0},    106.0,   "%",           "above 1000 only for strides on the spot"},
      {"speed",           &cycle::speed,           d::speed,      {0.0, 6.0},        {0.05, 3.5},      1.0,     "m/s",         "0.08 to 2.22 m/s are published as plausible; the fastest race walkers reach 5"},
      {"ta",              &cycle::ta,              d::angle,      {-360.0, 360.0},   {-60.0, 60.0},    1.0,     "deg",         "a half turn is 180 degrees"},
      {"peakswing",       &cycle::peakswing,       d::rotation,   {0.0, 2500.0},     {40.0, 1800.0},   420.0,   "deg/s",       "the largest measured is 1,198 deg/s"},
      {"top",             &cycle::top,             d::angle,      {-120.0, 120.0},   {-95.0, 95.0},    35.0,    "deg",         "a foot cannot pass the vertical by much"},
      {"hsp",             &cycle::hsp,             d::angle,      {-120.0, 120.0},   {-60.0, 60.0},    20.0,    "deg",         "a foot cannot pass the vertical by much"},
      {"step_time",       &cycle::step_time,       d::time_s,     {0.05, 10.0},      {0.2, 2.5},       0.6,     "s",           "0.14 to 2.12 s are published as plausible"},
      {"step_length",     &cycle::step_length,     d::length,     {-1.0, 2.0},       {0.03, 1.5},      0.55,    "m",           "below 0 where a foot lands behind the other"},
      {"strike_eversion", &cycle::strike_eversion, d::angle,      {-90.0, 90.0},     {-45.0, 45.0},    6.0,     "deg",         "the range of ankle and subtalar joint"},
      {"max_hc",          &cycle::max_hc,          d::length,     {0.0, 1.0},        {0.03, 0.6},      0.25,    "m",           "the length of a leg"},
      {"min_tc",          &cycle::min_tc,          d::length,     {-0.05, 0.5},      {-0.02, 0.2},     0.015,   "m",           "1.9 +- 0.5 cm in ten able-bodied adults; slightly below 0 occurs"},
      {"max_tc1",         &cycle::max_tc1,         d::length,     {-0.05, 1.0},      {0.005, 0.4},     0.03,    "m",           "the length of a leg"},
      {"max_tc2",         &cycle::max_tc2,         d::length,     {-0.05, 1.0},      {0.005, 0.5},     0.12,    "m",           "the length of a leg"},
      {"mtc_speed",       &cycle::mtc_speed,       d::speed,      {0.0, 12.0},       {0.3, 8.0},       3.0,     "m/s",         "2.6 to 3.5 times the stride velocity"},
      {"impact_vert",     &cycle::impact_vert,     d::impact,     {0.0, 40.0},       {0.5, 30.0},      5.0,     "g",           "walks have medians of 2 to 12 g"},
      {"impact_hor",      &cycle::impact_hor,      d::impact,     {0.0, 40.0},       {0.05, 30.0},     3.0,     "g",           "walks have medians of 1 to 8 g"},
      {"ds",              nullptr,                 d::share,      {0.0, 100.0},      {2.0, 75.0},      28.0,    "%",           "0 or less is running"},
  };
  // clang-format on
  return table;
}

std::string name_of_bounds(const bounds& row) { return std::string(row.column) + "_bounds"; }
std::string name_of_median(const bounds& row) { return std::string(row.column) + "_median"; }

std::string_view guess_unit(double middle, const bounds& row, double sampling_rate) {
  std::string_view words;
  double nearest = unbounded;
  for (const unit_slip& slip : slips_of(row.dim, sampling_rate)) {
    const double mended = middle / slip.factor;
    const double distance = std::abs(std::log(std::abs(mended) / row.typical));
    if (row.of_median.holds(mended) && distance < nearest) {
      nearest = distance;
      words = slip.words;
    }
  }
  return words;
}

}  // namespace gait_checks

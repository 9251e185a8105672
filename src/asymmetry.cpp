#include "asymmetry.h"

#include "lookup.h"
#include "quality_flags.h"
#include "recording.h"

#include <gait/int32_count.h>
#include <gait/rounded_product.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace gait_detail {
namespace {

/// The swing asymmetry of every stride in which both swings are positive: (l - r) * scale / (l +
/// r).
///
/// The symmetry index of R. O. Robinson, W. Herzog and B. M. Nigg, "Use of force platform variables
/// to quantify the effects of chiropractic manipulation on gait symmetry", J. Manipulative Physiol.
/// Ther. 10(4), 1987, 172-176, with left before right, and with `scale` where theirs has 200
/// percent.
std::vector<double> swing_asymmetries(const std::vector<double>& left,
                                      const std::vector<double>& right, int strides, double scale) {
  // Position i is the same stride on both sides. Entries that were kept from an earlier call may
  // hold fewer.
  const auto held = std::min(left.size(), right.size());
  const auto count = std::min(held, static_cast<std::size_t>(std::max(strides, 0)));

  std::vector<double> asymmetries;
  asymmetries.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double l = left[i];
    const double r = right[i];
    if (l > 0.0 && r > 0.0) {
      asymmetries.push_back(((l - r) * scale) / (l + r));
    }
  }
  return asymmetries;
}

double mean_of(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

/// Unlike the parameters' deviation, that of a single value is NaN here, and that of none is -0.0:
/// a deviation of 0.0 says that the strides agree, and would silence the flag.
double deviation_of(const std::vector<double>& values, double mean) {
  const double squares = std::accumulate(
      values.begin(), values.end(), 0.0,
      [mean](double sum, double x) { return sum + rounded_product(x - mean, x - mean); });
  return std::sqrt(squares /
                   static_cast<double>(to_int32(static_cast<std::int64_t>(values.size())) - 1));
}

}  // namespace

void write_ratios(gait_statistics& statistics) {
  for (auto& [key, left] : statistics.parameters) {
    const auto suffix = key.find("_L");
    if (!left.asymmetry_enabled || suffix == std::string::npos) {
      continue;
    }
    const auto found = statistics.parameters.find(key.substr(0, suffix) + "_R");
    if (found == statistics.parameters.end()) {
      continue;
    }
    gait_statistics_parameter& right = found->second;
    right.asymmetry = left.mean != 0.0 ? right.mean / left.mean : 0.0;
    left.asymmetry = right.mean != 0.0 ? 1.0 / right.asymmetry : 0.0;
  }
}

void add_swing_asymmetry(gait_result& result) {
  auto& parameters = result.statistics.parameters;
  const std::vector<double>& left = lookup(parameters, "swing_L").values;
  const std::vector<double>& right = lookup(parameters, "swing_R").values;

  gait_statistics_parameter record;
  record.description = "Asymmetry";
  record.decimals = 3;
  record.valid = !left.empty() && !right.empty();
  record.mean = 0.0;
  record.std = 0.0;
  if (record.valid) {
    const auto& info = result.statistics.info;
    const int strides = to_int32(std::int64_t{info.cycle_count} - info.excluded_count);
    // The scale is the sampling rate, and not 100 or 200: percentages at 100 Hz, and more at higher
    // rates.
    record.values = swing_asymmetries(left, right, strides, sampling_rate(result));
    record.mean = mean_of(record.values);
    record.std = deviation_of(record.values, record.mean);
    flag_large_swing_asymmetry(result, record);
  }
  parameters.emplace("asymmetry", std::move(record));
}

}  // namespace gait_detail

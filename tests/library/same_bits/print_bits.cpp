// Prints the results of walks of either mode and of percentiles, to the last bit, for comparison
// with what the same source prints when it is compiled otherwise. The whole library is part of it,
// so that it is compiled likewise.

#include <gait/gait.h>

#include "builders.h"

#include "asymmetry.cpp"            // NOLINT(bugprone-suspicious-include)
#include "generate_statistics.cpp"  // NOLINT(bugprone-suspicious-include)
#include "quality_flags.cpp"        // NOLINT(bugprone-suspicious-include)

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

using gait_test::foot;

/// Numbers that are the same with every compiler and standard library (SplitMix64).
class random_numbers {
public:
  explicit random_numbers(std::uint64_t start) : state_(start) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
  }
  std::size_t below(std::size_t count) { return next() % count; }

  /// From 0 to 1.
  double fraction() { return static_cast<double>(next() >> 11U) * 0x1p-53; }

  /// As strides have them, rounded as they may be, missing, or of any magnitude, infinities among
  /// them. The products are exact, so it does not matter whether they are fused with the sums.
  double measured(std::size_t kind) {
    switch (kind) {
      case 0:
        return 1.0 + 0.25 * fraction();
      case 1:
        return static_cast<double>(below(9)) / 8.0 - 0.5;
      case 2:
        return below(5) == 0 ? gait_missing : -40.0 + 128.0 * fraction();
      default:
        return of_any_magnitude();
    }
  }

private:
  double of_any_magnitude() {
    const std::uint64_t infinite = 0x7FF0'0000'0000'0000U;
    const std::uint64_t pattern = (next() >> 1U) % (infinite + 1) | next() >> 63U << 63U;
    double number = 0.0;
    std::memcpy(&number, &pattern, sizeof number);
    return number;
  }

  std::uint64_t state_;
};

/// All NaNs are one: which of them an operation gives is the compiler's choice.
void print(const char* name, double value) {
  if (value != value) {
    std::printf(" %s nan", name);
  } else {
    std::printf(" %s %a", name, value);
  }
}

void print(const gait_statistics_parameter& parameter) {
  print("mean", parameter.mean);
  print("std", parameter.std);
  print("median", parameter.median);
  print("iqr", parameter.iqr);
  // Which zero an extreme is, is nobody's promise.
  print("min", parameter.min + 0.0);
  print("max", parameter.max + 0.0);
  print("cv", parameter.cv);
  print("asymmetry", parameter.asymmetry);
  for (const double value : parameter.values) {
    print("", value);
  }
}

void print(const gait_statistics_info& info) {
  for (const double value :
       {info.recording_duration, info.duration, info.excluded_1_fallback_gct_sum,
        info.excluded_2_gct_sum, info.included_gct_sum, info.included_distance, info.total_distance,
        info.excluded_2_fallback_duration, info.excluded_2_duration,
        info.excluded_1_fallback_duration, info.excluded_1_duration, info.included_duration}) {
    print("", value);
  }
  std::printf(" %d %d %zu %u %u %u %u %d\n", info.cycle_count, info.excluded_count,
              info.cycles.size(), info.excluded_2_fallback_count, info.excluded_2_count,
              info.excluded_1_fallback_count, info.excluded_1_count, info.included_count);
}

void print(const gait_result& result) {
  std::printf("flags %d", result.quality_flags);
  print(result.statistics.info);
  for (const auto& [key, parameter] :
       std::map(result.statistics.parameters.begin(), result.statistics.parameters.end())) {
    std::printf("%s", key.c_str());
    print(parameter);
    std::printf("\n");
  }
}

foot random_foot(random_numbers& random, std::size_t strides) {
  foot some;
  some.cycles(strides);
  for (const auto field : foot::measured_fields) {
    const std::size_t kind = random.below(4);
    std::vector<double> values;
    for (std::size_t i = 0; i < strides; ++i) {
      values.push_back(random.measured(kind));
    }
    some.with(field, values);
  }
  return some;
}

void print_walk(random_numbers& random, std::size_t strides) {
  const foot left = random_foot(random, strides);
  const int listed = static_cast<int>(strides / 3);
  print(gait_test::one_foot(left)
            .rate(128)
            .excluded_1({listed, listed + 1})
            .excluded_2_fallback({0})
            .analyse());

  std::vector<double> durations;
  for (std::size_t i = 0; i < strides; ++i) {
    durations.push_back(random.measured(0));
  }
  print(gait_test::two_feet(left, random_foot(random, strides))
            .gct(durations)
            .ds(durations)
            .excluded_2({listed})
            .analyse());
}

void print_percentiles(random_numbers& random, std::size_t size, std::size_t kind) {
  Eigen::VectorXd sample(static_cast<Eigen::Index>(size));
  for (double& value : sample) {
    value = random.measured(kind);
  }
  Eigen::ArrayXd request(5);
  for (double& percentage : request) {
    percentage = 100.0 * random.fraction();
  }
  std::printf("percentiles");
  for (const double percentile : sample.percentile(request)) {
    print("", percentile);
  }
  std::printf("\n");
}

}  // namespace

int main() {
  random_numbers random(34);
  for (const std::size_t strides : {1U, 2U, 3U, 4U, 7U, 9U, 10U, 11U, 16U, 33U, 64U, 130U}) {
    print_walk(random, strides);
    for (std::size_t kind = 0; kind < 4; ++kind) {
      print_percentiles(random, strides, kind);
    }
  }
}

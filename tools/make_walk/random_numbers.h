#ifndef TOOLS_MAKE_WALK_RANDOM_NUMBERS_H
#define TOOLS_MAKE_WALK_RANDOM_NUMBERS_H

/// \file
/// Random numbers that are the same with every compiler and standard library.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>

namespace gait_walk {

/// The standard fixes the numbers of std::mt19937_64 but not those of its distributions, hence our
/// own.
class random_numbers {
public:
  explicit random_numbers(std::uint64_t seed) : engine_(seed) {}

  /// Uniform in [0, 1), with 53 random bits.
  double uniform() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }

  /// Uniform in 0 ... count - 1, for a count far below 2^53.
  int below(int count) { return static_cast<int>(uniform() * count); }

  /// Normal with mean 0 and standard deviation 1.
  ///
  /// Box and Muller's transformation in its polar form (G. Marsaglia and T. A. Bray, "A convenient
  /// method for generating normal variables", SIAM Review 6:260-264, 1964): of the mathematical
  /// functions it needs only the logarithm and the square root, so there is little that two
  /// libraries can round differently.
  double normal() {
    if (has_spare_) {
      has_spare_ = false;
      return spare_;
    }
    double x = 0.0;
    double y = 0.0;
    double square = 0.0;
    do {
      x = 2.0 * uniform() - 1.0;
      y = 2.0 * uniform() - 1.0;
      square = x * x + y * y;
    } while (square >= 1.0 || square == 0.0);
    const double scale = std::sqrt(-2.0 * std::log(square) / square);
    spare_ = y * scale;
    has_spare_ = true;
    return x * scale;
  }

private:
  std::mt19937_64 engine_;
  double spare_ = 0.0;
  bool has_spare_ = false;
};

/// A stationary series with mean 0 and standard deviation 1 whose correlations reach over thousands
/// of values.
///
/// A sum of first-order autoregressive processes with time constants 1, 4, 16, ... has long memory
/// as far as the longest of them (C. W. J. Granger, "Long memory relationships and the aggregation
/// of dynamic models", Journal of Econometrics 14:227-238, 1980), and each value costs the same
/// however long the series is. Variances that fall with the time constant to the power -0.4 give a
/// spectrum of about f^-0.6, which is a DFA exponent of (1 + 0.6) / 2 = 0.8.
class long_memory_series {
public:
  explicit long_memory_series(random_numbers& random) : random_(random) {
    double variance_sum = 0.0;
    double time_constant = 1.0;
    double variance = 1.0;
    for (process& p : processes_) {
      p.coefficient = 1.0 - 1.0 / time_constant;
      p.deviation = variance;
      variance_sum += variance;
      time_constant *= 4.0;
      variance *= 0.574;  // 4^-0.4
    }
    for (process& p : processes_) {
      p.deviation = std::sqrt(p.deviation / variance_sum);
      p.value = p.deviation * random_.normal();
    }
  }

  double next() {
    double sum = 0.0;
    for (process& p : processes_) {
      p.value = p.coefficient * p.value +
                p.deviation * std::sqrt(1.0 - p.coefficient * p.coefficient) * random_.normal();
      sum += p.value;
    }
    return sum;
  }

private:
  struct process {
    double coefficient = 0.0;
    double deviation = 0.0;
    double value = 0.0;
  };

  random_numbers& random_;
  std::array<process, 8> processes_;
};

}  // namespace gait_walk

#endif

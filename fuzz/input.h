#ifndef FUZZ_INPUT_H
#define FUZZ_INPUT_H

/// \file
/// The bytes of one fuzz input as numbers.

#include <gait/statistics.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace fuzz {

/// Takes numbers from the front of the input; after its end there are zeros.
class input {
public:
  input(const std::uint8_t* bytes, std::size_t size) : next_(bytes), end_(bytes + size) {}

  bool is_empty() const { return next_ == end_; }

  std::uint8_t byte() { return is_empty() ? std::uint8_t{0} : *next_++; }

  /// A number below `bound`, which is at most 256.
  std::size_t below(std::size_t bound) { return byte() % bound; }

  /// An object of plain bytes.
  template <class Value>
  Value raw() {
    std::array<std::uint8_t, sizeof(Value)> bytes{};
    const auto taken = std::min(bytes.size(), static_cast<std::size_t>(end_ - next_));
    std::copy_n(next_, taken, bytes.begin());
    next_ += taken;
    Value value{};
    std::memcpy(&value, bytes.data(), sizeof(value));
    return value;
  }

  /// A double of any bits. One byte is enough for the whole numbers around 0, which often are
  /// equal, and for the values that arithmetic treats in their own way.
  double number() {
    using limits = std::numeric_limits<double>;
    constexpr std::array<double, 16> special = {0.0,
                                                -0.0,
                                                limits::quiet_NaN(),
                                                -limits::quiet_NaN(),
                                                limits::infinity(),
                                                -limits::infinity(),
                                                limits::max(),
                                                limits::lowest(),
                                                limits::min(),
                                                limits::denorm_min(),
                                                -limits::denorm_min(),
                                                gait_missing,
                                                gait_missing + limits::epsilon(),
                                                limits::epsilon(),
                                                1e300,
                                                0.1};
    const int kind = byte();
    if (kind < 0x90) {
      return kind - 0x10;
    }
    if (kind < 0xA0) {
      return special.at(static_cast<std::size_t>(kind - 0x90));
    }
    if (kind < 0xE0) {
      return (kind - 0xC0) * 0.1 + byte() * 0.01;
    }
    return raw<double>();
  }

  /// A whole number, mostly one that is the index of a short list or nearly so.
  int index() {
    const int kind = byte();
    return kind < 0xF0 ? kind - 8 : raw<int>();
  }

private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

}  // namespace fuzz

#endif

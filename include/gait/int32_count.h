#ifndef GAIT_INT32_COUNT_H
#define GAIT_INT32_COUNT_H

/// \file
/// Counts and differences of 32 bits, which wrap around.

#include <cstdint>

namespace gait_detail {

/// The low 32 bits of a difference or a length, as in two's complement.
constexpr int to_int32(std::int64_t value) { return static_cast<int>(value); }

}  // namespace gait_detail

#endif

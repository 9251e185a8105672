#ifndef GAIT_SAMPLE_H
#define GAIT_SAMPLE_H

/// \file
/// The sample of a parameter: its measured values, in one buffer that Eigen reads in place.

#include <gait/eigen.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

namespace gait_detail {

/// The capacity for as many values as a list has elements: a signed 32-bit count.
///
/// Throws std::bad_alloc for 2^31 to 2^32 - 1 elements, which such a count cannot hold. Longer
/// lists are not supported.
inline Eigen::Index sample_capacity(std::size_t list_size) {
  const auto capacity = static_cast<std::int32_t>(list_size);
  if (capacity < 0) {
    throw std::bad_alloc();
  }
  return capacity;
}

/// A buffer of values, allocated once at its upper bound and shrunk once to what it holds.
///
/// The buffer is plain memory and not an Eigen vector's, whose alignment follows the flags of
/// whoever compiles it: where a program and the static library share an inline function, one's
/// allocation may meet the other's release.
class sample {
public:
  /// Throws std::bad_alloc when there is no memory for `capacity` values.
  explicit sample(Eigen::Index capacity) {
    if (capacity != 0) {
      values_.reset(static_cast<double*>(std::malloc(bytes(capacity))));
      if (values_ == nullptr) {
        throw std::bad_alloc();
      }
    }
  }

  /// Appends a value; there must be capacity for it.
  void push_back(double value) {
    values_.get()[size_] = value;
    ++size_;
  }

  /// Gives back the memory that is not needed. Throws std::bad_alloc when that takes memory, and
  /// there is none.
  void shrink() {
    if (size_ == 0) {
      values_.reset();
      return;
    }
    auto* const shrunk = static_cast<double*>(std::realloc(values_.get(), bytes(size_)));
    if (shrunk == nullptr) {
      throw std::bad_alloc();
    }
    // The old block is part of the new one, or gone.
    static_cast<void>(values_.release());
    values_.reset(shrunk);
  }

  Eigen::Index size() const { return size_; }
  const double* begin() const { return values_.get(); }
  const double* end() const { return values_.get() + size_; }
  Eigen::Map<const Eigen::VectorXd> vector() const { return {values_.get(), size_}; }

private:
  struct release {
    void operator()(double* memory) const { std::free(memory); }
  };

  static std::size_t bytes(Eigen::Index count) {
    return static_cast<std::size_t>(count) * sizeof(double);
  }

  std::unique_ptr<double, release> values_;
  Eigen::Index size_ = 0;
};

}  // namespace gait_detail

#endif

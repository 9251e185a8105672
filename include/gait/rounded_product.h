#ifndef GAIT_ROUNDED_PRODUCT_H
#define GAIT_ROUNDED_PRODUCT_H

/// \file
/// A product that is rounded before it becomes part of a sum.

namespace gait_detail {

/// a * b, rounded to a double.
///
/// Many processors have an instruction for a * b + c that rounds once, at the end (fused
/// multiply-add), and compilers use it where they see a product and a sum together: always for
/// aarch64, with -mfma or -march=haswell for x86-64. The last bits would then depend on processor,
/// compiler and flags. No compiler may look through a volatile object, so a product that passes
/// through one has been rounded, and every product that feeds a sum is made here.
inline double rounded_product(double a, double b) {
  const volatile double product = a * b;
  return product;
}

}  // namespace gait_detail

#endif

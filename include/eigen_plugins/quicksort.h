#ifndef EIGEN_PLUGINS_QUICKSORT_H
#define EIGEN_PLUGINS_QUICKSORT_H

/// \file
/// The sort behind DenseBase::percentile. It stands apart from the plugin, which Eigen includes
/// inside a class.

#include <utility>

/// Sorts array[left] to array[right], both included, in ascending order and in place.
///
/// Quicksort with Hoare's partition around the middle element (C. A. R. Hoare, "Quicksort", The
/// Computer Journal 5(1), 1962, 10-16), down to the smallest range. `Index` is signed. The steps
/// fix the order in which elements that compare equal come out, 0.0 and -0.0 among them, so every
/// compiler gives the same bits.
///
/// O(n log n) comparisons on average. On orders made for the purpose O(n^2), with a recursion n
/// calls deep: do not sort hundreds of thousands of values that an adversary may choose. Allocates
/// nothing, throws nothing. With a NaN in the range the order is unspecified, but nothing outside
/// the range is read or written.
template <class Scalar, class Index>
void _kalvio_eigen_quicksort(Scalar* array, Index left,
                             Index right) {  // NOLINT(bugprone-reserved-identifier)
  while (left <= right) {
    Index i = left;
    Index j = right;
    const Scalar pivot = array[(left + right) / 2];
    do {
      // An element equal to the pivot stops both scans: neither can leave the range.
      while (array[i] < pivot) {
        ++i;
      }
      while (array[j] > pivot) {
        --j;
      }
      if (i <= j) {
        std::swap(array[i], array[j]);
        ++i;
        --j;
      }
    } while (i <= j);

    if (j > left) {
      _kalvio_eigen_quicksort(array, left, j);
    }
    if (i >= right) {
      return;
    }
    left = i;
  }
}

#endif

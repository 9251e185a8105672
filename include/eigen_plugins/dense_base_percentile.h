// The member `percentile` of Eigen's DenseBase. Eigen includes this file inside the class, once per
// compiled file, through EIGEN_DENSEBASE_PLUGIN: it has no include guard and no includes, and the
// functions that it calls must be there before it. Include gait/eigen.h to attach it; a plugin of
// your own may include it in turn.

#ifndef EIGEN_PLUGINS_QUICKSORT_H
#error "include <eigen_plugins/quicksort.h> before Eigen: the percentile plugin sorts with it"
#endif
#ifndef GAIT_ROUNDED_PRODUCT_H
#error "include <gait/rounded_product.h> before Eigen: the percentile plugin multiplies with it"
#endif

// Tells gait/eigen.h that Eigen took the plugin in.
#define GAIT_EIGEN_HAS_PERCENTILE 1

/// The array of a request's shape with this expression's scalar: what `percentile` returns.
template <typename Request>
struct precentile_return_type {
  typedef Array<Scalar, internal::traits<Request>::RowsAtCompileTime,
                internal::traits<Request>::ColsAtCompileTime>
      type;
};

/// The percentiles of this vector at the requested percentages (0 to 100); element k of the result
/// is the one at p[k].
///
/// The i-th smallest of n values, counted from 0, lies at the percentage 100 * (i + 0.5) / n;
/// between two neighbours the percentile is interpolated linearly, and outside the outer two it is
/// the smallest or the largest value (R. J. Hyndman and Y. Fan, "Sample quantiles in statistical
/// packages", The American Statistician 50(4), 1996, 361-365: definition 5; "hazen" in numpy, type
/// 5 in R).
///
/// The vector must not be empty. With a NaN in it, or in the request, the results are unspecified.
/// Copies the vector and sorts the copy: O(n log n) on average. The copy is the one allocation,
/// besides those of a request or an expression of dynamic size; std::bad_alloc when it fails. The
/// vector itself is not changed.
template <typename Request>
typename precentile_return_type<Request>::type percentile(const DenseBase<Request>& p) const {
  EIGEN_STATIC_ASSERT_VECTOR_ONLY(Derived)
  eigen_assert(size() > 0 && "percentile of an empty vector");
  typedef typename precentile_return_type<Request>::type Result;

  const Index n = size();
  if (n <= 1) {
    // The evaluator reads any expression, a matrix product too.
    return Result::Constant(p.rows(), p.cols(),
                            internal::evaluator<Derived>(derived()).coeff(0, 0));
  }
  // Not aligned by Eigen: see gait/sample.h.
  Array<Scalar, Dynamic, 1, DontAlign> sorted(n);
  sorted.matrix() = derived().matrix();
  _kalvio_eigen_quicksort(sorted.data(), Index(0), n - 1);
  const Array<double, Result::RowsAtCompileTime, Result::ColsAtCompileTime> percentages(
      p.derived().template cast<double>());
  return percentiles_of_sorted(sorted, percentages);
}

private:
/// The percentiles of at least two values in ascending order, by definition 5: `percentile` without
/// the sort.
template <int Rows, int Cols>
static Array<Scalar, Rows, Cols> percentiles_of_sorted(
    const Array<Scalar, Dynamic, 1, DontAlign>& s, const Array<double, Rows, Cols>& p) {
  // The order of operations, here and below, fixes the last bits.
  const Index half = s.size() / 2;
  const double n = double(s.size());
  const double med = s.size() % 2 != 0 ? s[half] : (s[half] + s[half - 1]) * 0.5;
  const double lo = 50.0 / n;
  const double hi = ((0.5 + n) + (-1.0)) * 100.0 / n;

  // Whole requests first. Their tolerance around the median is relative, that of single percentages
  // below is absolute: deliberately two, which part for requests such as (50 + 2e-11, 50).
  const auto all = [&](double value) {
    return Array<Scalar, Rows, Cols>::Constant(p.rows(), p.cols(), Scalar(value));
  };
  if (((p - 50.0).abs() <= p.abs().min(50.0) * 1e-12).all()) {
    return all(med);
  }
  if ((p <= lo).all()) {
    return all(s[0]);
  }
  if ((p >= hi).all()) {
    return all(s[s.size() - 1]);
  }

  return p.unaryExpr([&](double percentage) {
    if (numext::abs(percentage - 50.0) < 1e-12) {
      return Scalar(med);
    }
    if (percentage <= lo) {
      return s[0];
    }
    if (percentage >= hi) {
      return s[s.size() - 1];
    }
    const double r = gait_detail::rounded_product(percentage / 100.0, n) - 0.5;
    const double k0 = numext::floor(numext::maxi(0.0, r));
    const Index below = Index(k0);
    if (!(numext::abs(r - k0) >= 1e-12)) {
      return s[below];
    }
    // Below `hi` there is always a neighbour above.
    const double f = (percentage + ((k0 + 0.5) * (-100.0)) / n) * (n / 100.0);
    return Scalar(s[below] + gait_detail::rounded_product(s[below + 1] - s[below], f));
  });
}

public:

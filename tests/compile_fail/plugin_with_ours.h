#include <eigen_plugins/dense_base_percentile.h>

Scalar first_coefficient() const { return derived()(0); }

// A caller who attaches the plugin without gait/eigen.h.

#ifndef FAULT
#include <eigen_plugins/quicksort.h>
#include <gait/rounded_product.h>
#endif

#define EIGEN_DENSEBASE_PLUGIN <eigen_plugins/dense_base_percentile.h>
#include <Eigen/Core>

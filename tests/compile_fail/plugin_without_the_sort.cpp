#ifndef FAULT
#include <eigen_plugins/quicksort.h>
#endif

#define EIGEN_DENSEBASE_PLUGIN <eigen_plugins/dense_base_percentile.h>
#include <Eigen/Core>

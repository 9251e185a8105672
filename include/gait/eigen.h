#ifndef GAIT_EIGEN_H
#define GAIT_EIGEN_H

/// \file
/// The one door to Eigen: brings <Eigen/Core> with the library's `percentile` as a member of every
/// vector.
///
/// Eigen takes a plugin in when its headers are first read, and never again in that file. So either
/// include this header before any of Eigen's, or, if you have a plugin of your own for DenseBase,
/// include ours from it:
///
///     // my_plugin.h, named by EIGEN_DENSEBASE_PLUGIN
///     #include <eigen_plugins/dense_base_percentile.h>
///     ... your own members ...
///
/// The figures are the same to the last bit whatever flags you compile with, short of those that
/// let a compiler rearrange arithmetic. -ffast-math does not compile.

#include <eigen_plugins/quicksort.h>
#include <gait/rounded_product.h>

#ifndef EIGEN_DENSEBASE_PLUGIN
#define EIGEN_DENSEBASE_PLUGIN <eigen_plugins/dense_base_percentile.h>
#endif

#include <Eigen/Core>

#ifndef GAIT_EIGEN_HAS_PERCENTILE
#error \
    "Eigen was included before <gait/eigen.h>, or with another EIGEN_DENSEBASE_PLUGIN. \
Include <gait/eigen.h> (or <gait/gait.h>) before any Eigen header, \
or include <eigen_plugins/dense_base_percentile.h> from your own plugin."
#endif

#endif

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
/// What your own compiler flags may change in the functions that these headers bring: where the
/// processor has fused multiply-add (-mfma, -march=haswell, -march=native), g++ and clang++ use it
/// by default, and an interpolated percentile, a standard deviation and what follows from it may
/// differ in their last bits from the compiled library's; -ffp-contract=off keeps them the same. A
/// static library shares inline functions with your program, so that your flags may decide for
/// gait_generate_statistics() too; the shared library keeps its own. NaN must be respected:
/// -ffast-math does not compile.

#include <eigen_plugins/quicksort.h>

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

// What a caller who only fills records and calls the entry includes, and all other headers that
// stand without Eigen.

#include <eigen_plugins/quicksort.h>
#include <gait/catalogue.h>
#include <gait/compute_info.h>
#include <gait/cycle_access.h>
#include <gait/generate_statistics.h>
#include <gait/int32_count.h>
#include <gait/matching_cycles.h>
#include <gait/quality_flags.h>
#include <gait/result.h>
#include <gait/statistics.h>
#include <gait/version.h>

#if __has_include(<Eigen/Core>)
#error "this file must be compiled without Eigen's folder, or it shows nothing"
#endif
#ifdef EIGEN_WORLD_VERSION
#error "a header that is for callers without Eigen brings it"
#endif
#ifdef EIGEN_DENSEBASE_PLUGIN
#error "a header that is for callers without Eigen names a plugin to it"
#endif

#ifndef GAIT_GAIT_H
#define GAIT_GAIT_H

/// \file
/// Everything that gait_statistics offers.
///
/// To fill records and call the entry, <gait/generate_statistics.h> is enough, and does not bring
/// Eigen. This header does: include it before any header of Eigen's (see gait/eigen.h).

#include <gait/eigen.h>

#include <gait/build_parameter.h>
#include <gait/build_parameters.h>
#include <gait/catalogue.h>
#include <gait/compute_info.h>
#include <gait/cycle_access.h>
#include <gait/generate_statistics.h>
#include <gait/int32_count.h>
#include <gait/matching_cycles.h>
#include <gait/quality_flags.h>
#include <gait/result.h>
#include <gait/sample.h>
#include <gait/statistics.h>
#include <gait/version.h>

#endif

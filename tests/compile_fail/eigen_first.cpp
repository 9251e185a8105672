#ifdef FAULT
#include <Eigen/Core>
#endif

#include <gait/eigen.h>

#ifndef FAULT
#include <Eigen/Dense>
#endif

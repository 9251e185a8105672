#ifdef FAULT
#include <Eigen/Dense>
#endif

#include <gait/gait.h>

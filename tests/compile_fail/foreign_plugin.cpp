#ifdef FAULT
#define EIGEN_DENSEBASE_PLUGIN "plugin_of_somebody_else.h"
#else
#define EIGEN_DENSEBASE_PLUGIN "plugin_with_ours.h"
#endif

#include <gait/eigen.h>

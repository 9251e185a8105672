#include <gait/gait.h>

#include <gait/generate_statistics.h>

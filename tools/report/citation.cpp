#include "citation.h"

#include <gait/version.h>

namespace gait_report {

std::string citation() {
  return "The gait_statistics developers. gait_statistics, version " GAIT_STATISTICS_VERSION
         " [computer software].";
}

}  // namespace gait_report

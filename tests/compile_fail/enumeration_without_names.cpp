#include "../../tools/walk_folder/names.h"

enum class season { spring };

int main() {
#ifdef FAULT
  return static_cast<int>(gait_walk::name_of(season::spring).size());
#else
  return static_cast<int>(gait_walk::name_of(gait_walk::side::left).size());
#endif
}

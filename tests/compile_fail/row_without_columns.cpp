#include "../../tools/walk_folder/columns.h"

struct row_of_no_table {
  int index = 0;
};

#ifdef FAULT
using row = row_of_no_table;
#else
using row = gait_walk::recording_row;
#endif

int main() { return gait_walk::columns<row>.empty() ? 1 : 0; }

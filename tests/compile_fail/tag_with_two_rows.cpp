#include <gait/catalogue.h>

#include <tuple>

constexpr auto row = gait_catalogue::row_of<SWING>;

#ifdef FAULT
constexpr auto rows = std::make_tuple(row, row);
#else
constexpr auto rows = std::make_tuple(gait_catalogue::row_of<GCT>, row);
#endif

static_assert(gait_catalogue::find_row<SWING>(rows).decimals == 2);

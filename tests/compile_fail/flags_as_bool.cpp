#include <gait/catalogue.h>

using namespace gait_catalogue;

struct TOE_OUT_ANGLE {};

#ifdef FAULT
constexpr auto row_of_toe_out =
    foot<TOE_OUT_ANGLE>("toeOut", "Toe-out angle", "degree", 1, true, no_cv, &gait_foot_cycle::hsp);
#else
constexpr auto row_of_toe_out = foot<TOE_OUT_ANGLE>("toeOut", "Toe-out angle", "degree", 1, ratio,
                                                    no_cv, &gait_foot_cycle::hsp);
#endif

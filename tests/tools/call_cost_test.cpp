#include "call_cost.h"

#include <gtest/gtest.h>

namespace {

using gait_program::rough_duration;

TEST(RoughDuration, IsInTheUnitThatPeopleUse) {
  EXPECT_EQ(rough_duration(5.2), "5 seconds");
  EXPECT_EQ(rough_duration(119.4), "119 seconds");
  EXPECT_EQ(rough_duration(120.0), "2 minutes");
  EXPECT_EQ(rough_duration(7199.0), "120 minutes");
  EXPECT_EQ(rough_duration(7200.0), "2 hours");
  EXPECT_EQ(rough_duration(172799.0), "48 hours");
  EXPECT_EQ(rough_duration(1e6), "12 days");
  EXPECT_EQ(rough_duration(1.2), "1 second");
  EXPECT_EQ(rough_duration(0.0), "0 seconds");
}

}  // namespace

add_executable(charts_test charts_test.cpp)
target_link_libraries(charts_test PRIVATE gait_charts GTest::gmock_main gait_warnings)
gtest_discover_tests(charts_test)

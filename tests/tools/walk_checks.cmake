add_executable(walk_checks_test walk_checks_test.cpp)
target_link_libraries(walk_checks_test PRIVATE
  gait_walk_checks gait_walk_model GTest::gmock_main gait_warnings)
gtest_discover_tests(walk_checks_test)

# What is said of them and of the walk in every output.
add_executable(report_test report_test.cpp)
target_link_libraries(report_test PRIVATE
  gait_report gait_walk_model nlohmann_json::nlohmann_json GTest::gmock_main gait_warnings)
gtest_discover_tests(report_test)

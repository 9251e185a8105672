find_package(nlohmann_json REQUIRED)

add_executable(html_report_test html_report_test.cpp)
target_include_directories(html_report_test SYSTEM PRIVATE ${MUSTACHE_INCLUDE_DIR})
target_link_libraries(html_report_test PRIVATE
  gait_charts gait_report gait_walk_model nlohmann_json::nlohmann_json GTest::gmock_main
  gait_warnings)
gtest_discover_tests(html_report_test)

# What the program writes: files, hashes, ids. What people see of it is tests/browser's.
find_program(GAIT_PYTHON python3 REQUIRED)
add_test(NAME gait_statistics_program.Pages
  COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/html_report_test.py
    $<TARGET_FILE:gait-statistics>)


add_executable(walk_folder_test
  walk_folder_analysis_test.cpp
  walk_folder_csv_test.cpp
  walk_folder_folders_test.cpp
  walk_folder_input_errors_test.cpp
  walk_folder_hostile_test.cpp
  walk_folder_test.cpp
  walk_folder_walk_errors_test.cpp)
target_include_directories(walk_folder_test PRIVATE ${PROJECT_SOURCE_DIR}/tests/library)
target_link_libraries(walk_folder_test PRIVATE gait_walk_folder gait_warnings GTest::gtest_main)

set(walk_folder_environment "")
if(GAIT_REAL_WALKS)
  set(walk_folder_environment PROPERTIES ENVIRONMENT "GAIT_REAL_WALKS=${GAIT_REAL_WALKS}")
endif()
gtest_discover_tests(walk_folder_test ${walk_folder_environment})

add_executable(make_walk_test make_walk_test.cpp)
target_include_directories(make_walk_test PRIVATE ${PROJECT_SOURCE_DIR}/tests/library)
target_link_libraries(make_walk_test PRIVATE gait_walk_model GTest::gtest_main gait_warnings)
target_compile_definitions(make_walk_test PRIVATE
  GAIT_MAKE_WALK="$<TARGET_FILE:gait-make-walk>"
  GAIT_EXAMPLE_WALKS="${PROJECT_SOURCE_DIR}/examples/walks")
add_dependencies(make_walk_test gait-make-walk)
gtest_discover_tests(make_walk_test)

# The statistics of one parameter, and what they are made of.
add_executable(statistics_test
  quicksort_test.cpp
  percentile_test.cpp
  build_parameter_test.cpp
  catalogue_test.cpp
  build_parameters_test.cpp
  sample_statistics_test.cpp)
target_link_libraries(statistics_test PRIVATE gait_test_library)
gtest_discover_tests(statistics_test)

# The percentile definition and the sums, compared with numpy's.
add_executable(print_statistics numpy_agreement/print_statistics.cpp)
target_link_libraries(print_statistics PRIVATE gait_statistics_objects gait_warnings)
add_python_test(numpy_agreement numpy
  ${CMAKE_CURRENT_SOURCE_DIR}/numpy_agreement/compare.py $<TARGET_FILE:print_statistics>)

# The statistics of one parameter, and what they are made of.
add_executable(statistics_test
  quicksort_test.cpp
  percentile_test.cpp
  build_parameter_test.cpp
  catalogue_test.cpp
  build_parameters_test.cpp)
target_link_libraries(statistics_test PRIVATE gait_test_library)
# The bits that these tests expect are those of separate multiplications and additions.
target_compile_options(statistics_test PRIVATE -ffp-contract=off)
gtest_discover_tests(statistics_test)

# The percentile definition and the sums, compared with numpy's where there is a Python that has it.
add_executable(print_statistics numpy_agreement/print_statistics.cpp)
target_link_libraries(print_statistics PRIVATE gait_statistics_objects gait_warnings)

set(python_with_numpy "")
foreach(python IN ITEMS python3 /usr/bin/python3)
  execute_process(COMMAND ${python} -c "import numpy" RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
  if(failed STREQUAL "0")
    set(python_with_numpy ${python})
    break()
  endif()
endforeach()

if(python_with_numpy)
  add_test(NAME numpy_agreement
    COMMAND ${python_with_numpy} ${CMAKE_CURRENT_SOURCE_DIR}/numpy_agreement/compare.py $<TARGET_FILE:print_statistics>)
else()
  add_test(NAME numpy_agreement COMMAND ${CMAKE_COMMAND} -E echo "skipped: no Python with numpy (package python3-numpy)")
  set_tests_properties(numpy_agreement PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
endif()

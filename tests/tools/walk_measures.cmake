add_executable(walk_measures_test walk_measures_test.cpp)
target_link_libraries(walk_measures_test PRIVATE
  gait_walk_measures GTest::gmock_main gait_warnings)
gtest_discover_tests(walk_measures_test)

# The same of a walk's records.
add_executable(parameter_measures_test parameter_measures_test.cpp)
target_include_directories(parameter_measures_test PRIVATE ${PROJECT_SOURCE_DIR}/tests/library)
target_link_libraries(parameter_measures_test PRIVATE
  gait_report gait_walk_model GTest::gmock_main gait_warnings)
gtest_discover_tests(parameter_measures_test)

# Each figure compared with other programs'.
add_executable(print_measures measures_agreement/print_measures.cpp)
target_link_libraries(print_measures PRIVATE gait_walk_measures gait_warnings)
add_numpy_test(measures_agreement.numpy
  ${CMAKE_CURRENT_LIST_DIR}/measures_agreement/compare.py $<TARGET_FILE:print_measures>)

find_program(GAIT_RSCRIPT Rscript)
if(GAIT_RSCRIPT)
  add_test(NAME measures_agreement.r COMMAND ${GAIT_RSCRIPT} --vanilla
    ${CMAKE_CURRENT_LIST_DIR}/measures_agreement/compare.R $<TARGET_FILE:print_measures>)
  set_tests_properties(measures_agreement.r PROPERTIES SKIP_RETURN_CODE 77)
else()
  add_test(NAME measures_agreement.r COMMAND
    ${CMAKE_COMMAND} -E echo "skipped: no R (packages r-base-core and r-cran-mcmc)")
  set_tests_properties(measures_agreement.r PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
endif()

# The table of docs/measures.md.
add_numpy_test(measures_coverage
  ${CMAKE_CURRENT_LIST_DIR}/measures_agreement/simulate_coverage.py $<TARGET_FILE:print_measures>
  ${PROJECT_SOURCE_DIR}/docs/measures.md)
set_tests_properties(measures_coverage PROPERTIES LABELS long)

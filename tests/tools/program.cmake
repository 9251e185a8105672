find_package(nlohmann_json REQUIRED)
# Its standard library is all that is needed.
find_program(GAIT_PYTHON python3 REQUIRED)

# What the program writes, against the library.
add_executable(gait_statistics_program_test gait_statistics_test.cpp)
target_include_directories(gait_statistics_program_test PRIVATE ${PROJECT_SOURCE_DIR}/tests/library)
target_link_libraries(gait_statistics_program_test PRIVATE
  gait_walk_folder gait::statistics nlohmann_json::nlohmann_json GTest::gmock_main gait_warnings)
target_compile_definitions(gait_statistics_program_test PRIVATE
  GAIT_STATISTICS_PROGRAM="$<TARGET_FILE:gait-statistics>")
add_dependencies(gait_statistics_program_test gait-statistics)
gtest_discover_tests(gait_statistics_program_test NO_PRETTY_VALUES)

# What a user sees of it.
foreach(topic IN ITEMS
    Report Formats CommandLine ExitCode ManyAtOnce DataChecks Terminal OutputFile)
  add_test(NAME gait_statistics_program.${topic}
    COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/gait_statistics_test.py
      $<TARGET_FILE:gait-statistics> ${topic})
endforeach()

add_executable(in_order_test in_order_test.cpp)
target_link_libraries(in_order_test PRIVATE gait_program GTest::gtest_main gait_warnings)
# oneTBB is not built for the thread sanitizer.
set(thread_sanitizer
  "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/thread_sanitizer.suppressions")
gtest_discover_tests(in_order_test PROPERTIES ENVIRONMENT ${thread_sanitizer})
set_tests_properties(gait_statistics_program.ManyAtOnce PROPERTIES ENVIRONMENT ${thread_sanitizer})

add_test(NAME gait_statistics_program.DataChecksTrial
  COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/data_checks_trial.py
    $<TARGET_FILE:gait-statistics> $<TARGET_FILE:gait-make-walk>)

add_python_test(gait_statistics_program.YourOwnTable pandas
  ${CMAKE_CURRENT_LIST_DIR}/your_own_table_test.py $<TARGET_FILE:gait-statistics>
  ${PROJECT_SOURCE_DIR}/docs/your-own-table.md)

# What it does with what it cannot use.
add_test(NAME gait_statistics_program.BrokenWalks
  COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/broken_walks.py $<TARGET_FILE:gait-statistics>)
foreach(topic IN ITEMS
    LongWalk Interruption Tables Output OutputOnAFullDisk OutputWithoutProc)
  add_test(NAME gait_statistics_program.hostile.${topic}
    COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/hostile_input_test.py
      $<TARGET_FILE:gait-statistics> ${topic})
endforeach()

add_test(NAME gait_statistics_program.hostile.MillionStrides
  COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/hostile_input_test.py
    $<TARGET_FILE:gait-statistics> MillionStrides)
set_tests_properties(gait_statistics_program.hostile.MillionStrides PROPERTIES LABELS long)

add_executable(call_cost_test call_cost_test.cpp)
target_link_libraries(call_cost_test PRIVATE gait_program GTest::gtest_main gait_warnings)
gtest_discover_tests(call_cost_test)

# All outputs against each other, the model and the schema.
find_python_with(jsonschema python_with_jsonschema)
if(NOT python_with_jsonschema)
  set(python_with_jsonschema ${GAIT_PYTHON})
endif()
set(outputs_agree ${python_with_jsonschema} ${CMAKE_CURRENT_LIST_DIR}/outputs_agree.py
  $<TARGET_FILE:gait-statistics>)
add_test(NAME outputs_agree
  COMMAND ${outputs_agree} ${PROJECT_SOURCE_DIR}/examples/walks
    ${CMAKE_CURRENT_LIST_DIR}/gait_statistics_walks)
add_python_test(csv_reads pandas ${CMAKE_CURRENT_LIST_DIR}/csv_reads.py
  $<TARGET_FILE:gait-statistics>
  ${PROJECT_SOURCE_DIR}/examples/walks ${CMAKE_CURRENT_LIST_DIR}/gait_statistics_walks)

add_test(NAME real_walks COMMAND ${outputs_agree} "${GAIT_REAL_WALKS}")
add_test(NAME data_checks_real_walks
  COMMAND ${GAIT_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/data_checks_real_walks.py
    $<TARGET_FILE:gait-statistics> "${GAIT_REAL_WALKS}")
set_tests_properties(real_walks data_checks_real_walks PROPERTIES SKIP_RETURN_CODE 77)

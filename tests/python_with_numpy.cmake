# Sets python_with_numpy to a Python that has numpy (package python3-numpy), or to nothing. The one
# that is first on the path may be the user's own, without it.
set(python_with_numpy "")
foreach(python IN ITEMS python3 /usr/bin/python3)
  execute_process(COMMAND ${python} -c "import numpy"
    RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
  if(failed STREQUAL "0")
    set(python_with_numpy ${python})
    break()
  endif()
endforeach()

# A test that is a Python script with its arguments; skipped where no Python has numpy.
function(add_numpy_test name)
  if(python_with_numpy)
    add_test(NAME ${name} COMMAND ${python_with_numpy} ${ARGN})
  else()
    add_test(NAME ${name} COMMAND
      ${CMAKE_COMMAND} -E echo "skipped: no Python with numpy (package python3-numpy)")
    set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
  endif()
endfunction()

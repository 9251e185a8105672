# Sets a variable to a Python that has a package (Debian: python3-PACKAGE), or to nothing. The one
# that is first on the path may be the user's own, without it.
function(find_python_with package variable)
  set(${variable} "" PARENT_SCOPE)
  foreach(python IN ITEMS python3 /usr/bin/python3)
    execute_process(COMMAND ${python} -c "import ${package}"
      RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
    if(failed STREQUAL "0")
      set(${variable} ${python} PARENT_SCOPE)
      return()
    endif()
  endforeach()
endfunction()

find_python_with(numpy python_with_numpy)

# A test that is a Python script with its arguments; skipped where no Python has the package.
function(add_python_test name package)
  find_python_with(${package} python)
  if(python)
    add_test(NAME ${name} COMMAND ${python} ${ARGN})
  else()
    add_test(NAME ${name} COMMAND
      ${CMAKE_COMMAND} -E echo "skipped: no Python with ${package} (package python3-${package})")
    set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
  endif()
endfunction()

function(add_numpy_test name)
  add_python_test(${name} numpy ${ARGN})
endfunction()

# Sets python_with_<module> to a Python that has the module (package python3-<module>), or to nothing.
# The one that is first on the path may be the user's own, without it.
foreach(module IN ITEMS numpy pandas)
  set(python_with_${module} "")
  foreach(python IN ITEMS python3 /usr/bin/python3)
    execute_process(COMMAND ${python} -c "import ${module}"
      RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
    if(failed STREQUAL "0")
      set(python_with_${module} ${python})
      break()
    endif()
  endforeach()
endforeach()

# A test that is a Python script with its arguments; skipped where no Python has the module.
function(add_python_test name module)
  if(python_with_${module})
    add_test(NAME ${name} COMMAND ${python_with_${module}} ${ARGN})
  else()
    add_test(NAME ${name} COMMAND
      ${CMAKE_COMMAND} -E echo "skipped: no Python with ${module} (package python3-${module})")
    set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^skipped")
  endif()
endfunction()

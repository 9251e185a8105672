# Runs COMMAND, a compiler, which must fail and say SENTENCE.
execute_process(COMMAND ${COMMAND}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
  message(FATAL_ERROR "this compiled: ${COMMAND}")
endif()
if(NOT output MATCHES "${SENTENCE}")
  message(FATAL_ERROR "the compiler failed without saying \"${SENTENCE}\":\n${output}")
endif()

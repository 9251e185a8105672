# The warnings of the project's own targets; consumers of the library get none of them.
add_library(gait_warnings INTERFACE)
target_compile_options(gait_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion $<$<NOT:$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wshadow>
  $<$<BOOL:${GAIT_WARNINGS_AS_ERRORS}>:-Werror>)

# Installed programs find a shared library beside themselves, wherever the prefix is moved to. Below
# /usr the system's own search does, and Debian's rules want no path in a program there.
if(BUILD_SHARED_LIBS AND NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  file(RELATIVE_PATH from_programs_to_libraries
    "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set(CMAKE_INSTALL_RPATH "$ORIGIN/${from_programs_to_libraries}")
endif()

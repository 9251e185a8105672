include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/gait_statistics)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS gait_statistics EXPORT gait_statistics
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h")

# The documentation lies as it does in the sources, so that the links between pages hold.
set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc/gait-statistics)
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE
  DESTINATION ${doc_dir} COMPONENT documentation)
install(FILES fuzz/README.md DESTINATION ${doc_dir}/fuzz COMPONENT documentation)
install(DIRECTORY docs examples conformance DESTINATION ${doc_dir} COMPONENT documentation
  PATTERN man EXCLUDE PATTERN site EXCLUDE PATTERN __pycache__ EXCLUDE)
if(GAIT_BUILD_TOOLS)
  install(DIRECTORY docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
endif()

install(EXPORT gait_statistics NAMESPACE gait:: FILE gait_statistics-targets.cmake
  DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(cmake/gait_statistics-config.cmake.in gait_statistics-config.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(gait_statistics-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/gait_statistics-config.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/gait_statistics-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# pkg-config finds the prefix from where the file lies, so that an installed tree can be moved.
# Files below /usr stay, and pkg-config leaves out the system's own folders only where it sees them
# by their plain names.
set(pkgconfig_prefix /usr)
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  file(RELATIVE_PATH to_prefix "/${pkgconfig_dir}" /)
  string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
  set(pkgconfig_prefix "\${pcfiledir}/${to_prefix}")
endif()
configure_file(cmake/gait_statistics.pc.in gait_statistics.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/gait_statistics.pc
  DESTINATION ${pkgconfig_dir} COMPONENT development)

# Debian packages: the shared library, what is needed to compile against it, and the program.
set(runtime_package libgait-statistics${PROJECT_VERSION_MAJOR})
set(development_package libgait-statistics-dev)
set(program_package gait-statistics)

option(GAIT_DEBIAN_FILES "Install what only Debian packages carry" OFF)
mark_as_advanced(GAIT_DEBIAN_FILES)
if(GAIT_DEBIAN_FILES)
  foreach(component runtime development program)
    install(FILES cmake/debian_copyright RENAME copyright
      DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${${component}_package} COMPONENT ${component})
  endforeach()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME gait-statistics)
set(CPACK_PACKAGE_VENDOR "gait_statistics developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Statistics of walks recorded with foot-worn sensors")
set(about "gait_statistics takes the gait cycles found in a walking recording, and computes which
of them count, the descriptive statistics of every gait parameter, left/right
asymmetry, and flags for what is implausible.
.
")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development program)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER
  "gait_statistics developers <developers@gait-statistics.invalid>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${about}This package holds the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${runtime_package} (= ${PROJECT_VERSION}), libeigen3-dev (>= 3.4)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "${about}This package holds the headers, and the files for CMake and pkg-config.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ${program_package})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${runtime_package} (>= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
  "${about}This package holds the program gait-statistics, which reports on walk folders.")

set(packages_tree ${PROJECT_BINARY_DIR}/packages_tree)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${packages_tree}/src)
configure_file(cmake/packages_tree.cmake.in packages_tree.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/packages_tree.cmake)
include(CPack)

#ifndef GAIT_VERSION_H
#define GAIT_VERSION_H

/// \file
/// The version of gait_statistics: this file is its one source, and the build reads it from here.
///
/// The numbers follow semantic versioning. The records of gait/statistics.h and gait/result.h are
/// laid out by the caller's compiler and read by the library's. Any change to a record's members is
/// therefore a change of the binary interface: it raises the major number, and the SONAME with it
/// (`libgait_statistics.so.<major>`). A minor release may add functions, and tags to the catalogue;
/// a patch release changes neither interface. A change that moves a number which the library
/// computes is named in CHANGELOG.md under "Scientific changes", whatever the release.

#define GAIT_STATISTICS_VERSION_MAJOR 1
#define GAIT_STATISTICS_VERSION_MINOR 0
#define GAIT_STATISTICS_VERSION_PATCH 0

#define GAIT_STATISTICS_VERSION_TEXT_2(x) #x
#define GAIT_STATISTICS_VERSION_TEXT(x) GAIT_STATISTICS_VERSION_TEXT_2(x)

// clang-format off
/// The version of the headers that were compiled, for example "1.0.0".
#define GAIT_STATISTICS_VERSION                               \
  GAIT_STATISTICS_VERSION_TEXT(GAIT_STATISTICS_VERSION_MAJOR) \
  "." GAIT_STATISTICS_VERSION_TEXT(GAIT_STATISTICS_VERSION_MINOR) \
  "." GAIT_STATISTICS_VERSION_TEXT(GAIT_STATISTICS_VERSION_PATCH)
// clang-format on

#endif

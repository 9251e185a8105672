#!/usr/bin/env bash
# Tests need the program, but do not bring it into an installation without tools: SOURCE_TREE
# BUILD_TREE [CMAKE_OPTION]...
set -euo pipefail

cmake -S "$1" -B "$2" -DGAIT_BUILD_TESTS=ON -DGAIT_BUILD_TOOLS=OFF "${@:3}"
if grep "file(INSTALL" "$2/tools/program/cmake_install.cmake"; then
  echo "The program would be installed, although GAIT_BUILD_TOOLS is off." >&2
  exit 1
fi

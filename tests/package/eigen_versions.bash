#!/usr/bin/env bash
# Which versions of Eigen the project and the installed package accept: SOURCE_TREE PREFIX FOLDER
# [CMAKE_OPTION]... The Eigens have nothing but the version files, whose rules are those of the real
# ones: 3 gives itself to requests that begin with 3, and 5 to requests that begin with 5, or to
# ranges that end there.
set -euo pipefail
source=$1
prefix=$2
work=$3
options=("${@:4}")
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
rm -rf "$work"

# fake_eigen VERSION: a package of Eigen, in a folder of that name.
fake_eigen() {
  local folder=$work/$1
  mkdir -p "$folder"
  echo 'add_library(Eigen3::Eigen INTERFACE IMPORTED)' >"$folder/Eigen3Config.cmake"
  cat >"$folder/Eigen3ConfigVersion.cmake" <<END
set(PACKAGE_VERSION $1)
set(PACKAGE_VERSION_COMPATIBLE FALSE)
if(PACKAGE_FIND_VERSION_RANGE)
  if(PACKAGE_FIND_VERSION_MAX_MAJOR EQUAL ${1%%.*} AND
      (${1%%.*} EQUAL 5 OR PACKAGE_FIND_VERSION_MIN_MAJOR EQUAL ${1%%.*}))
    set(PACKAGE_VERSION_COMPATIBLE TRUE)
  endif()
elseif(PACKAGE_FIND_VERSION_MAJOR EQUAL ${1%%.*} AND
    PACKAGE_FIND_VERSION VERSION_LESS_EQUAL PACKAGE_VERSION)
  set(PACKAGE_VERSION_COMPATIBLE TRUE)
endif()
END
}

# configure VERSION WHAT [OPTION]...: the project, or a consumer of the installed package.
configure() {
  local tree=$here/by_find_package
  if [[ $2 == project ]]; then
    tree=$source
  fi
  cmake -S "$tree" -B "$work/$1/$2" -DEigen3_DIR="$work/$1" -DCMAKE_PREFIX_PATH="$prefix" \
    -DGAIT_BUILD_TESTS=OFF -DGAIT_BUILD_TOOLS=OFF "${options[@]}" >"$work/$1/$2.txt" 2>&1
}

fail() {
  cat "$work/$1/$2.txt"
  echo "Failed: the $2 with Eigen $1." >&2
  exit 1
}

for what in project consumer; do
  for version in 3.4.0 3.4.90 5.0.1; do
    fake_eigen "$version"
    configure "$version" "$what" || fail "$version" "$what"
  done
  for version in 2.0.17 3.3.9; do
    fake_eigen "$version"
    if configure "$version" "$what" ||
      ! tr -s ' \n' ' ' <"$work/$version/$what.txt" | grep -F "needs Eigen 3.4 or later"; then
      fail "$version" "$what"
    fi
  done
done

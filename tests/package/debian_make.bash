#!/usr/bin/env bash
# Makes the Debian packages, of the version that the headers have: SOURCE_TREE FOLDER VERSION. Exits
# with 77, which CTest counts as skipped, where that cannot be done.
set -euo pipefail

for command in dpkg-buildpackage dh; do
  if ! command -v "$command" >/dev/null; then
    echo "Skipped: there is no $command here."
    exit 77
  fi
done
found=$(dpkg-parsechangelog --file "$1/debian/changelog" --show-field Version)
if [[ $found != "$3"-* ]]; then
  echo "found version $found in debian/changelog, expected $3-1 as in include/gait/version.h" >&2
  exit 1
fi
# Information for debuggers takes longer than all the rest, and nothing here looks at it.
export DEB_BUILD_OPTIONS=noautodbgsym DEB_CXXFLAGS_STRIP=-g
"$1/scripts/make-packages" "$2"

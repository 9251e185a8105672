#!/usr/bin/env bash
# The program runs from wherever it was installed, and finds a shared library by itself: BUILD_TREE
# PREFIX VERSION
set -euo pipefail
rm -rf "$2"
for component in runtime program; do
  cmake --install "$1" --prefix "$2" --component "$component"
done
mv "$2" "$2.moved"
trap 'rm -rf "$2.moved"' EXIT
"$2.moved/bin/gait-statistics" --version | grep -F "$3"

#!/usr/bin/env bash
# Installs a built tree under an empty prefix: BUILD_TREE PREFIX
set -euo pipefail
rm -rf "$2"
cmake --install "$1" --prefix "$2"

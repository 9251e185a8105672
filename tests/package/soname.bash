#!/usr/bin/env bash
# Programs ask for the library by its major number, and find it: PREFIX MAJOR
set -euo pipefail
library=$(find "$1" -name 'libgait_statistics.so')
objdump -p "$library" | grep -q "^ *SONAME *libgait_statistics.so.$2\$"
[[ -e $library.$2 ]]

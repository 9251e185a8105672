#!/usr/bin/env bash
# Whether programs and shared libraries are hardened: FILE...
set -euo pipefail

status=0
# expect FILE WHAT TEXT PATTERN: the text has to match.
expect() {
  if ! grep --quiet --extended-regexp -- "$4" <<<"$3"; then
    echo "$1: $2" >&2
    status=1
  fi
}

for file in "$@"; do
  dynamic=$(readelf --wide --dynamic "$file")
  symbols=$(nm --dynamic --undefined-only "$file")
  expect "$file" "some tables stay writable (no GNU_RELRO)" \
    "$(readelf --wide --segments "$file")" GNU_RELRO
  expect "$file" "functions are bound when first called (no BIND_NOW)" "$dynamic" 'BIND_NOW|\bNOW\b'
  expect "$file" "no function guards the stack" "$symbols" __stack_chk_fail
  if [[ $file != *.so* ]]; then
    expect "$file" "lies at a fixed address (no PIE)" "$dynamic" '\bPIE\b'
  fi
  # Only this program calls functions of libc with sizes that every compiler knows.
  if [[ $file == */gait-statistics ]]; then
    expect "$file" "no call of libc checks sizes" "$symbols" '__[a-z]+_chk\b'
  fi
done
exit "$status"

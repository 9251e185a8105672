#!/usr/bin/env bash
# Everything but the entry is hidden, the instances of other libraries' templates too: PREFIX
set -euo pipefail
library=$(find "$1" -name 'libgait_statistics.so')
exported=$(nm --dynamic --defined-only --demangle --format=posix "$library" |
  sed 's/ [A-Za-z] [0-9a-f ]*$//')
expected='gait_generate_statistics(gait_result&, gait_generate_statistics_settings const&)'
if [[ $exported != "$expected" ]]; then
  printf 'exported:\n%s\nexpected:\n%s\n' "$exported" "$expected"
  exit 1
fi

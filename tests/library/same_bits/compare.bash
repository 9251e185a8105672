#!/usr/bin/env bash
# The results of programs that differ in compiler and flags alone, compared byte by byte with those
# of the first. usage: compare.bash FOLDER PROGRAM... (one whose name says aarch64 is emulated; one
# whose name says haswell is left out where the processor lacks AVX2 or fused multiply-add)
set -euo pipefail

cd "$1"
shift

is_haswell() {
  grep -qw avx2 /proc/cpuinfo && grep -qw fma /proc/cpuinfo
}

# print_bits PROGRAM
print_bits() {
  if [[ $1 == *aarch64* ]]; then
    qemu-aarch64 "./$1"
  else
    "./$1"
  fi
}

first=$1
print_bits "$first" >"$first.txt"
[[ -s $first.txt ]]
compared=1
differ=0
for program in "${@:2}"; do
  if [[ $program == *haswell* ]] && ! is_haswell; then
    echo "$program: skipped, the processor has no AVX2 or no fused multiply-add"
    continue
  fi
  print_bits "$program" >"$program.txt"
  compared=$((compared + 1))
  if ! cmp "$first.txt" "$program.txt"; then
    diff "$first.txt" "$program.txt" | head -n 4 || true
    differ=$((differ + 1))
  fi
done
lines=$(wc -l <"$first.txt")
echo "$compared programs printed $lines lines each, $differ of them others than $first"
[[ $differ == 0 && $compared -gt 1 ]]

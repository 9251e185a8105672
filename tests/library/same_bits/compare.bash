#!/usr/bin/env bash
# The results of programs that differ in compiler and flags alone, compared byte by byte with those
# of the first. usage: compare.bash FOLDER PROGRAM... (one whose name says avx2 is left out where
# the processor lacks it)
set -euo pipefail

cd "$1"
shift
first=$1
"./$first" >"$first.txt"
[[ -s $first.txt ]]
compared=1
differ=0
for program in "${@:2}"; do
  if [[ $program == *avx2* ]] && ! grep -qw avx2 /proc/cpuinfo; then
    echo "$program: skipped, the processor has no AVX2"
    continue
  fi
  "./$program" >"$program.txt"
  compared=$((compared + 1))
  if ! cmp "$first.txt" "$program.txt"; then
    diff "$first.txt" "$program.txt" | head -n 4 || true
    differ=$((differ + 1))
  fi
done
echo "$compared programs printed $(wc -l <"$first.txt") lines each, $differ of them others than $first"
[[ $differ == 0 && $compared -gt 1 ]]

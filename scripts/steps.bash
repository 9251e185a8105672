# Sourced by the scripts that build and test: builds, runs, counts what passed and failed, and says
# so at the end.
# shellcheck shell=bash

passed=0
failed=0
skipped=0
failed_steps=()
failed_ends=()

# What a step prints. The end of it comes again at the end of everything, where the step fails.
step_log=build/step-of-${0##*/}.txt

jobs=$(getconf _NPROCESSORS_ONLN)
if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

# takes_no_arguments USAGE ARGUMENT...: ends a script that is given any, with its usage.
takes_no_arguments() {
  if [[ ${2-} == --help ]]; then
    echo "$1"
    exit 0
  elif [[ $# -gt 1 ]]; then
    echo "$1" >&2
    exit 2
  fi
}

heading() {
  printf '\n==== %s ====\n' "$1"
}

# logged COMMAND...: keeps what the command prints as the step's.
logged() {
  mkdir -p build
  "$@" 2>&1 | tee "$step_log"
}

# fail_step NAME: remembers the name, and the end of what the step printed.
fail_step() {
  printf '\n"%s" failed.\n' "$1"
  failed_steps+=("$1")
  failed_ends+=("$(tail -n 40 "$step_log")")
}

# step NAME COMMAND...: runs the command under a heading, and counts it as one thing passed or
# failed.
step() {
  heading "$1"
  if logged "${@:2}"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    fail_step "$1"
  fi
}

# step_or_skip NAME COMMAND...: as step, for a command that exits with 77 where it cannot run.
step_or_skip() {
  local status=0
  heading "$1"
  logged "${@:2}" || status=$?
  case $status in
    0) passed=$((passed + 1)) ;;
    77) skipped=$((skipped + 1)) ;;
    *)
      failed=$((failed + 1))
      fail_step "$1"
      ;;
  esac
}

# build PRESET [ARGUMENT...]: configures the preset and builds it, or the targets that the arguments
# name.
build() {
  cmake --preset "$1" && cmake --build --preset "$1" --parallel "$jobs" "${@:2}"
}

# count_tests REPORT: adds the numbers in the first element of ctest's JUnit report, an attribute a
# line.
count_tests() {
  local attribute
  local -A count
  for attribute in tests failures disabled skipped; do
    count[$attribute]=$(grep --max-count=1 "^[[:space:]]*$attribute=\"[0-9]" "$1" | tr -dc 0-9)
  done
  passed=$((passed + count[tests] - count[failures] - count[disabled] - count[skipped]))
  failed=$((failed + count[failures]))
  skipped=$((skipped + count[disabled] + count[skipped]))
}

# run_tests PRESET [ARGUMENT...]: runs the preset's tests, or those that ctest's arguments choose.
run_tests() {
  local report=$PWD/build/tests-of-$1.xml
  rm -f "$report"
  ctest --preset "$1" --parallel "$jobs" --output-junit "$report" "${@:2}"
}

# build_and_test NAME PRESET [TESTS]: both under one heading; the tests may have a preset of their
# own. Each test counts; a build or a run without results counts as one failure.
build_and_test() {
  local tests=${3-$2} status=0
  heading "$1"
  rm -f "build/tests-of-$tests.xml"
  if logged build "$2"; then
    logged run_tests "$tests" || status=$?
  fi
  if [[ -f build/tests-of-$tests.xml ]]; then
    count_tests "build/tests-of-$tests.xml"
  else
    failed=$((failed + 1))
    status=1
  fi
  if [[ $status -ne 0 ]]; then
    fail_step "$1"
  fi
}

# finish: names the steps that failed, prints the closing line, and exits accordingly.
finish() {
  local i
  for i in "${!failed_steps[@]}"; do
    heading "the end of ${failed_steps[$i]}"
    echo "${failed_ends[$i]}"
  done
  echo
  if [[ ${#failed_steps[@]} -gt 0 ]]; then
    printf 'Failed: %s\n' "${failed_steps[@]}"
    # A step that fails without a failed test to show for it is a failure all the same.
    failed=$((failed > 0 ? failed : ${#failed_steps[@]}))
  fi
  echo "$passed passed, $failed failed, $skipped skipped"
  exit $((failed > 0))
}

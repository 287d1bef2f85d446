#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the tests with sanitizers, each kind in a build directory of its own, and runs them; any
# finding fails the run (-fno-sanitize-recover, halt_on_error).
#   address   AddressSanitizer + UndefinedBehaviorSanitizer (and LeakSanitizer), every test
#   thread    ThreadSanitizer, the tests that run work on other threads (CTest label "threads")
# usage: sanitizers.sh [address] [thread]     (both by default)
# Tests labelled "desktop" (they need a real display server) or "crash" (they kill processes on
# purpose) are left out. Build directories: build-asan/, build-tsan/ (or $CORVANE_BUILD_DIR-asan, -tsan).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
base=${CORVANE_BUILD_DIR:-$top/build}
kinds=("$@")
((${#kinds[@]})) || kinds=(address thread)

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
jobs=$(nproc)

# kind, build directory, compiler flags, CTest options choosing the tests. Builds what those tests
# run: the test programs of the same names, or everything when a chosen test is no program of its own
# (the package test installs the whole build).
build() {
  local kind=$1 dir=$2 flags=$3
  shift 3
  echo "sanitizers.sh: building with $kind sanitizer in $dir"
  cmake -S "$top" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Sanitize \
    -DCMAKE_CXX_FLAGS_SANITIZE="$flags" -DCMAKE_EXE_LINKER_FLAGS_SANITIZE="$flags" \
    -DCMAKE_SHARED_LINKER_FLAGS_SANITIZE="$flags" -DCMAKE_MODULE_LINKER_FLAGS_SANITIZE="$flags" \
    -DBUILD_TESTING=ON -DCORVANE_BUILD_EXAMPLES=OFF -DCORVANE_BUILD_BENCHMARKS=OFF -DCORVANE_BUILD_FUZZERS=OFF \
    "${launcher[@]}" >/dev/null
  local tests known test targets=()
  mapfile -t tests < <(ctest --test-dir "$dir" -N "$@" | sed -n 's/^ *Test *#[0-9]*: //p')
  known=$(cmake --build "$dir" --target help)
  for test in "${tests[@]}"; do
    if ! grep -q "^$test: " <<<"$known"; then
      targets=()
      break
    fi
    targets+=(--target "$test")
  done
  cmake --build "$dir" --parallel "$jobs" "${targets[@]}"
}

common="-O1 -g -fno-omit-frame-pointer -fno-sanitize-recover=all"
status=0
for kind in "${kinds[@]}"; do
  case $kind in
  address)
    dir=$base-asan
    flags="$common -fsanitize=address,undefined"
    build "$kind" "$dir" "$flags" -LE 'desktop|crash'
    # The package test builds a small host against the installed library: with the same flags.
    if ! CXXFLAGS="$flags" LDFLAGS="$flags" \
      ASAN_OPTIONS="halt_on_error=1:abort_on_error=1:detect_stack_use_after_return=1:strict_string_checks=1" \
      LSAN_OPTIONS="suppressions=$top/scripts/sanitizers/leaks.supp:print_suppressions=0" \
      UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1" \
      ctest --test-dir "$dir" --output-on-failure --parallel "$jobs" -LE 'desktop|crash'; then
      status=1
    fi
    ;;
  thread)
    dir=$base-tsan
    flags="$common -fsanitize=thread"
    build "$kind" "$dir" "$flags" -L threads -LE 'desktop|crash'
    # die_after_fork=0: the tests start git and corvane through QProcess from a process that already
    # runs threads; the child only execs.
    if ! TSAN_OPTIONS="halt_on_error=1:die_after_fork=0:second_deadlock_stack=1:suppressions=$top/scripts/sanitizers/threads.supp:print_suppressions=0" \
      ctest --test-dir "$dir" --output-on-failure --parallel "$jobs" -L threads -LE 'desktop|crash'; then
      status=1
    fi
    ;;
  *)
    echo "sanitizers.sh: unknown kind $kind (address, thread)" >&2
    exit 2
    ;;
  esac
done
exit $status

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the fuzz targets with clang into build-fuzz/ (or $CORVANE_BUILD_DIR-fuzz) and runs each for
# CORVANE_FUZZ_SECONDS seconds (60 by default) on a copy of its corpus, so the corpus in the tree
# stays as it is. Exits non-zero on any finding; the inputs that found something are kept in the
# build directory's fuzz-findings/ for reproducing: `build-fuzz/fuzz/<Target> <file>`.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
if [ -n "${CORVANE_BUILD_DIR:-}" ]; then
  build="$CORVANE_BUILD_DIR-fuzz"
else
  build="$top/build-fuzz"
fi
seconds=${CORVANE_FUZZ_SECONDS:-60}
compiler=${CORVANE_FUZZ_CXX:-clang++}

if ! command -v "$compiler" >/dev/null; then
  echo "fuzz.sh: $compiler is needed for the fuzz targets (Debian: apt-get install clang)" >&2
  exit 1
fi

cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER="$compiler" \
  -DCORVANE_BUILD_FUZZERS=ON -DBUILD_TESTING=OFF -DCORVANE_BUILD_TOOLS=OFF -DCORVANE_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target VersionFuzzer ThemeDecodingFuzzer HttpResponseFuzzer

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
findings="$build/fuzz-findings"
status=0

# target, corpus folder, extra options
run() {
  local target=$1 corpus=$2
  shift 2
  mkdir -p "$work/$corpus" "$work/artifacts-$target"
  cp "$top/fuzz/corpus/$corpus/"* "$work/$corpus/"
  echo "fuzz.sh: $target for ${seconds}s"
  if "$build/fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
       -artifact_prefix="$work/artifacts-$target/" -print_final_stats=1 "$@" "$work/$corpus" \
       >"$work/$target.log" 2>&1; then
    grep -E '^Done|stat::number_of_executed_units' "$work/$target.log" | head -2 || true
  else
    status=1
    echo "fuzz.sh: $target found a fault:" >&2
    tail -n 60 "$work/$target.log" >&2
    mkdir -p "$findings/$target"
    cp "$work/artifacts-$target/"* "$findings/$target/" 2>/dev/null || true
    echo "fuzz.sh: inputs kept in $findings/$target" >&2
  fi
}

run VersionFuzzer version -max_len=256
run ThemeDecodingFuzzer theme -max_len=16384 -dict="$top/fuzz/theme.dict"
run HttpResponseFuzzer http-response -max_len=65536 -dict="$top/fuzz/http.dict"
exit $status

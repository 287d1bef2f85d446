#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds Corvane and runs every test: the Qt Test programs through CTest, then the fuzzers for a
# bounded time (CORVANE_FUZZ_SECONDS each, 60 by default), then the tests again in builds of their
# own under AddressSanitizer + UndefinedBehaviorSanitizer (every test) and ThreadSanitizer (the tests
# labelled "threads"); see scripts/sanitizers.sh. CORVANE_SANITIZERS=0 leaves the sanitizer builds out.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-dependencies.sh"
"$top/scripts/build.sh"
build=${CORVANE_BUILD_DIR:-$top/build}
ctest --test-dir "$build" --output-on-failure --parallel "$(nproc)"
if [ -x "$top/scripts/fuzz.sh" ]; then
  "$top/scripts/fuzz.sh"
fi
if [ "${CORVANE_SANITIZERS:-1}" != 0 ]; then
  "$top/scripts/sanitizers.sh" address thread
fi

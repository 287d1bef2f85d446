#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Configures and builds Corvane into build/ (or $CORVANE_BUILD_DIR) with the tests.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${CORVANE_BUILD_DIR:-$top/build}
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=ON "$@" >/dev/null
cmake --build "$build" --parallel "$(nproc)"

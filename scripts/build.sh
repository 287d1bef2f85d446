#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Configures and builds Corvane into build/ (or $CORVANE_BUILD_DIR) with the tests, through ccache
# when it is installed.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${CORVANE_BUILD_DIR:-$top/build}
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=ON "${launcher[@]}" "$@" >/dev/null
cmake --build "$build" --parallel "$(nproc)"

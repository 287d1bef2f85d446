#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the desktop benchmark and runs it on a desktop of its own (Xvfb + openbox).
# usage: bench/desktop-figures.sh [BUILD_DIR] [--settle]
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$top/build-bench}
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCORVANE_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build" --target DesktopBenchmark
"$top/tests/desktop/on-desktop.sh" "$build/bench/DesktopBenchmark" "${@:2}"

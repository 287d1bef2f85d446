#!/usr/bin/env bash
# Builds Corvane and checks the sample theme files the project ships.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-dependencies.sh"
"$top/scripts/build.sh"
build=${CORVANE_BUILD_DIR:-$top/build}
"$build/tools/corvane/corvane" lint "$top/examples/sample-repository/Themes"

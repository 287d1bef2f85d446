#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# usage: build-consumer.sh BUILD_DIR SOURCE_DIR WORK_DIR
set -euo pipefail
build=$1 source=$2 work=$3
rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/prefix" >/dev/null
cmake -S "$source/tests/package/consumer" -B "$work/consumer" -G Ninja \
  -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
repository=$("$source/examples/make-sample-repository.sh" "$work/remote")
"$work/consumer/consumer" "$repository" "$work/clone" "$work/installed"

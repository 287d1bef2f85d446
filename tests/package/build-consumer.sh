#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# usage: build-consumer.sh BUILD_DIR SOURCE_DIR WORK_DIR
set -euo pipefail
build=$1 source=$2 work=$3
rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/prefix" >/dev/null
prefix=$work/prefix
fail() { echo "build-consumer: $*" >&2; exit 1; }

# The CMake package, with the compiler's default standard: the package carries what its headers need.
cmake -S "$source/tests/package/consumer" -B "$work/consumer" -G Ninja \
  -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
repository=$("$source/examples/make-sample-repository.sh" "$work/remote")
"$work/consumer/consumer" "$repository" "$work/clone" "$work/installed"

# The pkg-config file, wherever the tree was installed.
pcdir=$(dirname "$(find "$prefix" -name corvane.pc -print -quit)")
[ -n "$pcdir" ] || fail "no corvane.pc installed"
version=$(sed -n 's/^#define CORVANE_VERSION "\(.*\)"$/\1/p' "$prefix/include/Corvane/corvane_version.h")
[ "$(PKG_CONFIG_PATH=$pcdir pkg-config --modversion corvane)" = "$version" ] || fail "corvane.pc names another version"
cat > "$work/pkg-config-host.cpp" <<'CPP'
#include <Corvane/Version/Version.h>
#include <Corvane/module/CorvaneModule.h>
int main() { return corvane::Version::fromString(QStringLiteral("1")) ? 0 : 1; }
CPP
# shellcheck disable=SC2046
c++ -std=c++23 -fPIC ${CXXFLAGS:-} "$work/pkg-config-host.cpp" -o "$work/pkg-config-host" ${LDFLAGS:-} \
  $(PKG_CONFIG_PATH=$pcdir pkg-config --cflags --libs corvane) -Wl,-rpath,"$pcdir/.."
"$work/pkg-config-host" || fail "the host built with pkg-config failed"

# The shared library leaves the Version library's symbols to the static library hosts link.
library=$(find "$prefix" -name 'libCorvane.so.*' -type f -print -quit)
if nm -D --defined-only "$library" | c++filt | grep -q 'corvane::Version::fromString'; then
  fail "libCorvane exports Version::fromString again"
fi
# Installed binaries hold no path of the build tree (debug information aside), in 8-bit or in UTF-16
# text (QStringLiteral), nor a run path into it.
for binary in "$prefix/bin/corvane" "$library"; do
  objcopy --strip-debug "$binary" "$work/stripped"
  if { strings -a "$work/stripped"; strings -a -el "$work/stripped"; } | grep -qF "$build"; then
    fail "$binary names the build tree $build"
  fi
done

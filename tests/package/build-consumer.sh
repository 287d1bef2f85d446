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
"$work/consumer/core-host" "$repository" "$work/clone" "$work/installed"
"$work/consumer/widgets-host" "$repository" "$work/clone" "$work/installed" "$work/host-settings.ini"
# The installed tool hands show over to its window program under libexec.
show_help=$("$prefix/bin/corvane" show --help)
[[ $show_help == "usage: corvane show"* ]] || fail "corvane show does not reach corvane-show"
# A host of the core alone, and the tool's scripting commands, never load the window's libraries.
if readelf -d "$prefix/bin/corvane" | grep -E 'NEEDED.*(Qt6Gui|Qt6Widgets|CorvaneWidgets)'; then
  fail "corvane needs a library of the window"
fi
# (Outputs are read whole before matching: grep -q would end the pipe early and pipefail hide the match.)
loaded=$(LD_DEBUG=files "$prefix/bin/corvane" lint "$work/installed" 2>&1 >/dev/null || true)
if [[ $loaded == *libQt6Gui* ]]; then
  fail "corvane lint loaded QtGui"
fi
if readelf -d "$work/consumer/core-host" | grep -E 'NEEDED.*(Qt6Gui|Qt6Widgets|CorvaneWidgets)'; then
  fail "core-host needs a library of the window"
fi

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
PKG_CONFIG_PATH=$pcdir pkg-config --libs corvane-core | grep -q -- '-lCorvaneCore' || fail "corvane-core.pc does not link the core"
if PKG_CONFIG_PATH=$pcdir pkg-config --libs corvane-core | grep -q Widgets; then fail "corvane-core.pc pulls in the window"; fi

# The shared library leaves the Version library's symbols to the static library hosts link.
library=$(find "$prefix" -name 'libCorvaneCore.so.*' -type f -print -quit)
widgets=$(find "$prefix" -name 'libCorvaneWidgets.so.*' -type f -print -quit)
exported=$(nm -D --defined-only "$library" | c++filt)
if [[ $exported == *'corvane::Version::fromString'* ]]; then
  fail "libCorvaneCore exports Version::fromString again"
fi
# Installed binaries hold no path of the build tree (debug information aside), in 8-bit or in UTF-16
# text (QStringLiteral), nor a run path into it.
for binary in "$prefix/bin/corvane" "$prefix/libexec/corvane/corvane-show" "$library" "$widgets"; do
  objcopy --strip-debug "$binary" "$work/stripped"
  if { strings -a "$work/stripped"; strings -a -el "$work/stripped"; } | grep -qF "$build"; then
    fail "$binary names the build tree $build"
  fi
done

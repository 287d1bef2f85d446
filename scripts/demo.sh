#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets everything up and runs the demo host against the sample theme repository the project ships.
# With a display the demo opens its window; without one it runs the same flow off screen, writes
# screenshots of the demo and of the updater window, and prints what the updater offers.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-dependencies.sh"
"$top/scripts/build.sh"
build=${CORVANE_BUILD_DIR:-$top/build}
demo=$build/demo

# A fresh sample: the repository with its two commits, no clone yet, a few older themes installed.
"$top/examples/make-sample-repository.sh" "$demo/remote" >/dev/null
rm -rf "$demo/clone" "$demo/installed" "$demo/settings.ini"
mkdir -p "$demo/installed"
cp "$top"/examples/sample-installed/*.theme.json "$demo/installed/"

locations=(--remote "$demo/remote" --clone "$demo/clone" --installed "$demo/installed")
corvane=$build/tools/corvane/corvane
host=$build/examples/demo-host/corvane-demo

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$host" "${locations[@]}" --settings "$demo/settings.ini" "$@"
fi

echo "No display: running the demo off screen." >&2
export QT_QPA_PLATFORM=offscreen
# The off-screen platform notes each window operation it cannot do; those notes are no news here.
export QT_LOGGING_RULES="qt.qpa.*=false"
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
  XDG_RUNTIME_DIR=$(mktemp -d)
  export XDG_RUNTIME_DIR
fi
mkdir -p "$demo/screenshots"
"$host" "${locations[@]}" --settings "$demo/settings.ini" --screenshot "$demo/screenshots/demo-host.png" "$@" \
  2> >(grep -v 'does not support propagateSizeHints' >&2)
"$corvane" show "${locations[@]}" --screenshot "$demo/screenshots/updater.png"
echo "wrote $demo/screenshots/updater.png"
echo
echo "What the updater offers for the sample (corvane list):"
"$corvane" list "${locations[@]}"
